// The entry that the entry-point macros of a module call to get a management interface.
#include "Call.h"

#include <cmpimacs.h>

using namespace cimple;
using namespace cimple_cmpi;

namespace
{

bool kindOf(const void* letter, MiKind& kind)
{
    switch (reinterpret_cast<size_t>(letter))
    {
    case 'I':
        kind = kInstanceMi;
        return true;
    case 'M':
        kind = kMethodMi;
        return true;
    case 'A':
        kind = kAssociationMi;
        return true;
    case 'N':
        kind = kIndicationMi;
        return true;
    default:
        return false;
    }
}

} // namespace

// Without a provider object there is no interface. A provider that does not load gets one: what keeps it from
// loading may pass, and until then its operations say so.
extern "C" CIMPLE_EXPORT int cimple_cmpi_adapter(void* caller,
                                                 void* block,
                                                 void* registration,
                                                 void* broker,
                                                 void* context,
                                                 void* /* provider name, known from the registration */,
                                                 void* letter,
                                                 void* mi)
{
    MiKind kind;
    if (reinterpret_cast<size_t>(caller) != 'C' || !block || !registration || !broker || !mi ||
        !kindOf(letter, kind))
        return -1;
    *static_cast<void**>(mi) = nullptr;
    try
    {
        StaticData& data = StaticData::in(*static_cast<__CMPI_Static_Data*>(block),
                                          static_cast<const Registration*>(registration));
        data.broker = static_cast<const CMPIBroker*>(broker);
        const CMPIStatus status = guarded(data,
                                          "create",
                                          [&]
                                          {
                                              Call call(data, static_cast<const CMPIContext*>(context));
                                              call.adapter().loadToRead();
                                              *static_cast<void**>(mi) = data.interface(kind);
                                          });
        return status.rc == CMPI_RC_OK ? 0 : -1;
    }
    catch (...)
    {
        return -1;
    }
}
