// How a module lists its providers, and its entry points for a CMPI server.
#ifndef CIMPLE_REGISTRATION_H
#define CIMPLE_REGISTRATION_H

#include <cimple/Provider.h>

CIMPLE_NAMESPACE_BEGIN

struct Registration
{
    const char* module_name;
    const char* provider_name;
    Provider_Proc provider_proc;
    const Meta_Class* meta_class;
    Registration* next;
    bool reads_load = false; // see CIMPLE_READS_LOAD

    // Goes to the front of the list.
    Registration(const char* module,
                 const char* provider,
                 Provider_Proc proc,
                 const Meta_Class* mc,
                 Registration*& head)
        : module_name(module), provider_name(provider), provider_proc(proc), meta_class(mc), next(head)
    {
        head = this;
    }
};

typedef Registration* (*Module_Proc)();

CIMPLE_NAMESPACE_END

// The macros below stand at global scope of one source file, CIMPLE_MODULE first. A semicolon may follow.

#define CIMPLE_MODULE(MODULE)                                                                                \
    static cimple::Registration* _cimple_registration_head = nullptr;                                        \
    static const char* _cimple_module_name = #MODULE;                                                        \
    CIMPLE_ENTRY_POINT CIMPLE_EXPORT cimple::Registration* cimple_module()                                   \
    {                                                                                                        \
        return _cimple_registration_head;                                                                    \
    }

#define CIMPLE_REGISTER_PROVIDER(PROVIDER, PROC)                                                             \
    static cimple::Registration _cimple_registration_##PROVIDER(_cimple_module_name,                         \
                                                                #PROVIDER,                                   \
                                                                PROC,                                        \
                                                                &cimple::PROVIDER::Class::static_meta_class, \
                                                                _cimple_registration_head);

// The provider class is cimple::PROVIDER; its Provider_Proc is the function __cimple_<PROVIDER>_proc.
#define CIMPLE_INSTANCE_PROVIDER(PROVIDER) CIMPLE_REGISTER_PROVIDER(PROVIDER, __cimple_##PROVIDER##_proc)
#define CIMPLE_ASSOCIATION_PROVIDER(PROVIDER) CIMPLE_REGISTER_PROVIDER(PROVIDER, __cimple_##PROVIDER##_proc)
#define CIMPLE_INDICATION_PROVIDER(PROVIDER) CIMPLE_REGISTER_PROVIDER(PROVIDER, __cimple_##PROVIDER##_proc)

// The same with the provider's static member `proc`.
#define CIMPLE_PROVIDER(PROVIDER) CIMPLE_REGISTER_PROVIDER(PROVIDER, cimple::PROVIDER::proc)

// For a registered provider whose reading operations load what they need. The adapter then does not call load
// before them, so that a load that fails is made once and fails the operation in the provider's words.
// An extension of this toolkit.
#define CIMPLE_READS_LOAD(PROVIDER)                                                                          \
    static const bool _cimple_reads_load_##PROVIDER = _cimple_registration_##PROVIDER.reads_load = true;

#define CIMPLE_CLASS_DEPENDENCY(CLASS)                                                                       \
    extern const char* const __class_##CLASS;                                                                \
    const char* const __class_##CLASS = "@(#)CLASS=" #CLASS;

// Room for what the CMPI adapter keeps for one provider. It is static because a server may look at function
// tables after cleanup. Zero: not in use.
struct __CMPI_Static_Data
{
    union
    {
        double align;
        char data[2048];
    };
};

// The CMPI adapter. arg0 (void*)'C'; arg1 __CMPI_Static_Data*; arg2 const Registration*; arg3 CMPIBroker*;
// arg4 CMPIContext*; arg5 const char* provider name; arg6 (void*) of 'I' instance, 'M' method, 'A'
// association or 'N' indication; arg7 void** that receives the management interface, null if there is none.
// 0, or -1.
extern "C" int cimple_cmpi_adapter(
    void* arg0, void* arg1, void* arg2, void* arg3, void* arg4, void* arg5, void* arg6, void* arg7);

// The layout of CMPIStatus, in which a broker may or may not ask an entry point how it went: 0, or 1 if there
// is no interface.
struct __CMPI_Entry_Status
{
    int rc;
    void* msg;
};

// What every entry point does; `status` may be null.
inline void* __cimple_cmpi_create(__CMPI_Static_Data* data,
                                  cimple::Registration* registration,
                                  void* broker,
                                  void* context,
                                  const char* provider,
                                  int code,
                                  void* status)
{
    void* mi = nullptr;
    cimple_cmpi_adapter(reinterpret_cast<void*>('C'),
                        data,
                        registration,
                        broker,
                        context,
                        const_cast<char*>(provider),
                        reinterpret_cast<void*>(static_cast<size_t>(code)),
                        &mi);
    if (status)
        *static_cast<__CMPI_Entry_Status*>(status) = {mi ? 0 : 1, nullptr};
    return mi;
}

#define CIMPLE_CMPI_ENTRY_POINT(PROVIDER, TYPE, CODE)                                                        \
    CIMPLE_ENTRY_POINT CIMPLE_EXPORT void* PROVIDER##_Create_##TYPE##MI(                                     \
        void* cmpi_broker, void* cmpi_context, void* cmpi_status)                                            \
    {                                                                                                        \
        return __cimple_cmpi_create(&_cmpi_static_data##PROVIDER,                                            \
                                    &_cimple_registration_##PROVIDER,                                        \
                                    cmpi_broker,                                                             \
                                    cmpi_context,                                                            \
                                    #PROVIDER,                                                               \
                                    CODE,                                                                    \
                                    cmpi_status);                                                            \
    }

#define CIMPLE_CMPI_FORWARD(PROVIDER, CLASS, TYPE)                                                           \
    CIMPLE_ENTRY_POINT CIMPLE_EXPORT void* CLASS##_Create_##TYPE##MI(                                        \
        void* cmpi_broker, void* cmpi_context, void* cmpi_status)                                            \
    {                                                                                                        \
        return PROVIDER##_Create_##TYPE##MI(cmpi_broker, cmpi_context, cmpi_status);                         \
    }

// Entry points named after the provider.
#define CIMPLE_CMPI_INSTANCE_PROVIDER(PROVIDER)                                                              \
    static __CMPI_Static_Data _cmpi_static_data##PROVIDER;                                                   \
    CIMPLE_CMPI_ENTRY_POINT(PROVIDER, Instance, 'I')                                                         \
    CIMPLE_CMPI_ENTRY_POINT(PROVIDER, Method, 'M')

#define CIMPLE_CMPI_ASSOCIATION_PROVIDER(PROVIDER)                                                           \
    CIMPLE_CMPI_INSTANCE_PROVIDER(PROVIDER)                                                                  \
    CIMPLE_CMPI_ENTRY_POINT(PROVIDER, Association, 'A')

#define CIMPLE_CMPI_INDICATION_PROVIDER(PROVIDER)                                                            \
    static __CMPI_Static_Data _cmpi_static_data##PROVIDER;                                                   \
    CIMPLE_CMPI_ENTRY_POINT(PROVIDER, Method, 'M')                                                           \
    CIMPLE_CMPI_ENTRY_POINT(PROVIDER, Indication, 'N')

// Entry points named after the class, which pass on to those named after the provider.
#define CIMPLE_CMPI_INSTANCE_PROVIDER2(PROVIDER, CLASS)                                                      \
    CIMPLE_CMPI_FORWARD(PROVIDER, CLASS, Instance)                                                           \
    CIMPLE_CMPI_FORWARD(PROVIDER, CLASS, Method)

#define CIMPLE_CMPI_ASSOCIATION_PROVIDER2(PROVIDER, CLASS)                                                   \
    CIMPLE_CMPI_INSTANCE_PROVIDER2(PROVIDER, CLASS)                                                          \
    CIMPLE_CMPI_FORWARD(PROVIDER, CLASS, Association)

#define CIMPLE_CMPI_INDICATION_PROVIDER2(PROVIDER, CLASS)                                                    \
    CIMPLE_CMPI_FORWARD(PROVIDER, CLASS, Method)                                                             \
    CIMPLE_CMPI_FORWARD(PROVIDER, CLASS, Indication)

#endif
