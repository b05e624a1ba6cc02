// The module's entry points: registration of every provider, and its CMPI factories.
//
// cimple_module returns the list of registrations. Each class of providers.def has the CMPI factories of its
// kind under two names, <Class>_Provider_Create_<Type>MI and <Class>_Create_<Type>MI. Indications are not
// delivered through the server, which only says when to begin and to end.
#include "common/Dispatch.h"
#include "common/indications.h"
#include "providers_includes.h"

using namespace cimple;

// The toolkit's registration macros look for a function of this name.
#define VRAX_PROC_INSTANCE(provider) Instance_Provider_Proc_T<provider>
#define VRAX_PROC_ASSOCIATION(provider) Association_Provider_Proc_T<provider>
#define VRAX_PROC_INDICATION(provider) Indication_Provider_Proc_T<provider>
#define VRAX_PROVIDER(kind, folder, cls)                                                                     \
    static int __cimple_##cls##_Provider_proc(const Registration* registration,                              \
                                              int operation,                                                 \
                                              void* arg0,                                                    \
                                              void* arg1,                                                    \
                                              void* arg2,                                                    \
                                              void* arg3,                                                    \
                                              void* arg4,                                                    \
                                              void* arg5,                                                    \
                                              void* arg6,                                                    \
                                              void* arg7)                                                    \
    {                                                                                                        \
        return Dispatch<cls##_Provider, VRAX_PROC_##kind(cls##_Provider)>::proc(                             \
            registration, operation, arg0, arg1, arg2, arg3, arg4, arg5, arg6, arg7);                        \
    }
#include "common/providers.def"
#undef VRAX_PROVIDER

CIMPLE_MODULE(VRAX_Module);

#define VRAX_PROVIDER(kind, folder, cls) CIMPLE_##kind##_PROVIDER(cls##_Provider);
#include "common/providers.def"
#undef VRAX_PROVIDER

// Every operation that reads begins with the provider's load.
#ifdef CIMPLE_READS_LOAD
#define VRAX_PROVIDER(kind, folder, cls) CIMPLE_READS_LOAD(cls##_Provider)
#include "common/providers.def"
#undef VRAX_PROVIDER
#endif

#define VRAX_PROVIDER(kind, folder, cls)                                                                     \
    CIMPLE_CMPI_##kind##_PROVIDER(cls##_Provider);                                                           \
    CIMPLE_CMPI_##kind##_PROVIDER2(cls##_Provider, cls);
#include "common/providers.def"
#undef VRAX_PROVIDER

extern "C"
{
    // To be called by the server once it serves requests: from here on the switch's events are sent to those
    // who subscribed to them. 0, or another value when that cannot be. Nothing, and 0, when called again.
    CIMPLE_EXPORT int vrax_start_indications()
    {
        return startIndications() ? 0 : 1;
    }

    // To be called before the server ends or unloads the module, at any moment and any number of times: ends
    // the module's own threads, which takes some seconds at most. Always 0.
    CIMPLE_EXPORT int vrax_stop_indications()
    {
        stopIndications();
        return 0;
    }

    // What became of indications, counter by counter (common/indications.h). At any moment, from any thread.
    CIMPLE_EXPORT void vrax_indication_counters(cimple::Counter_Sink sink, void* context)
    {
        indicationCounters(sink, context);
    }
}
