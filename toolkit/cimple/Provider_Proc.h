// Turns operation codes into calls of a provider class's methods; included by Provider.h.
#ifndef CIMPLE_PROVIDER_PROC_H
#define CIMPLE_PROVIDER_PROC_H

#include <cimple/Provider.h>

CIMPLE_NAMESPACE_BEGIN

// The arguments of an operation under their position.
struct __Provider_Args
{
    void* arg[8];

    template <class T>
    T* as(size_t i) const
    {
        return static_cast<T*>(arg[i]);
    }

    // Callbacks travel as data pointers, which POSIX lets a function pointer be turned into and back.
    template <class Proc>
    Proc proc(size_t i) const
    {
        return reinterpret_cast<Proc>(arg[i]);
    }
};

#define CIMPLE_PROVIDER_PROC_PARAMETERS                                                                      \
    const Registration *registration, int operation, void *arg0, void *arg1, void *arg2, void *arg3,         \
        void *arg4, void *arg5, void *arg6, void *arg7
#define CIMPLE_PROVIDER_PROC_ARGUMENTS registration, operation, arg0, arg1, arg2, arg3, arg4, arg5, arg6, arg7

// Codes 0 to 4 and 13.
template <class PROVIDER>
struct Provider_Proc_Common_T
{
    static int proc(CIMPLE_PROVIDER_PROC_PARAMETERS)
    {
        typedef typename PROVIDER::Class Class;
        const __Provider_Args args = {{arg0, arg1, arg2, arg3, arg4, arg5, arg6, arg7}};
        static_cast<void>(registration);

        switch (operation)
        {
        case OPERATION_GET_META_CLASS:
            *args.as<const Meta_Class*>(0) = &Class::static_meta_class;
            return GET_META_CLASS_OK;
        case OPERATION_CREATE_PROVIDER:
            *args.as<PROVIDER*>(0) = new PROVIDER;
            return CREATE_PROVIDER_OK;
        case OPERATION_DESTROY_PROVIDER:
            delete args.as<PROVIDER>(0);
            return DESTROY_PROVIDER_OK;
        case OPERATION_LOAD:
            return args.as<PROVIDER>(0)->load();
        case OPERATION_UNLOAD:
            return args.as<PROVIDER>(0)->unload();
        case OPERATION_GET_REPOSITORY:
            *args.as<const Meta_Repository*>(0) = Class::static_meta_class.meta_repository;
            return GET_REPOSITORY_OK;
        default:
            return -1;
        }
    }
};

// Codes 0 to 9 and 13.
template <class PROVIDER>
struct Provider_Proc_T
{
    static int proc(CIMPLE_PROVIDER_PROC_PARAMETERS)
    {
        typedef typename PROVIDER::Class Class;
        const __Provider_Args args = {{arg0, arg1, arg2, arg3, arg4, arg5, arg6, arg7}};
        PROVIDER* const provider = args.as<PROVIDER>(0);

        switch (operation)
        {
        case OPERATION_GET_INSTANCE:
            return provider->get_instance(args.as<const Class>(1), *args.as<Class*>(2));
        case OPERATION_ENUM_INSTANCES:
        {
            Enum_Instances_Handler<Class> handler(args.proc<Enum_Instances_Proc>(2), arg3);
            const Enum_Instances_Status status = provider->enum_instances(args.as<const Class>(1), &handler);
            handler._proc(nullptr, status, arg3);
            return status;
        }
        case OPERATION_CREATE_INSTANCE:
            return provider->create_instance(args.as<Class>(1));
        case OPERATION_DELETE_INSTANCE:
            return provider->delete_instance(args.as<const Class>(1));
        case OPERATION_MODIFY_INSTANCE:
            return provider->modify_instance(args.as<const Class>(1), args.as<const Class>(2));
        default:
            return Provider_Proc_Common_T<PROVIDER>::proc(CIMPLE_PROVIDER_PROC_ARGUMENTS);
        }
    }
};

template <class PROVIDER>
struct Instance_Provider_Proc_T : Provider_Proc_T<PROVIDER>
{
};

// Codes 0 to 9, 13 and 14 to 16. The closing call is left out when the provider leaves the operation to its
// caller.
template <class PROVIDER>
struct Association_Provider_Proc_T
{
    static int proc(CIMPLE_PROVIDER_PROC_PARAMETERS)
    {
        typedef typename PROVIDER::Class Class;
        const __Provider_Args args = {{arg0, arg1, arg2, arg3, arg4, arg5, arg6, arg7}};
        PROVIDER* const provider = args.as<PROVIDER>(0);
        const Instance* const instance = args.as<const Instance>(1);

        switch (operation)
        {
        case OPERATION_ENUM_ASSOCIATOR_NAMES:
        {
            Enum_Associator_Names_Handler<Instance> handler(args.proc<Enum_Associator_Names_Proc>(5), arg6);
            const Enum_Associator_Names_Status status =
                provider->enum_associator_names(instance,
                                                *args.as<const String>(2),
                                                *args.as<const String>(3),
                                                *args.as<const String>(4),
                                                &handler);
            if (status != ENUM_ASSOCIATOR_NAMES_UNSUPPORTED)
                handler._proc(nullptr, status, arg6);
            return status;
        }
        case OPERATION_ENUM_REFERENCES:
        {
            Enum_References_Handler<Class> handler(args.proc<Enum_References_Proc>(4), arg5);
            const Enum_References_Status status = provider->enum_references(
                instance, args.as<const Class>(2), *args.as<const String>(3), &handler);
            if (status != ENUM_REFERENCES_UNSUPPORTED)
                handler._proc(nullptr, status, arg5);
            return status;
        }
        case OPERATION_ENUM_ASSOCIATORS:
        {
            Enum_Associators_Handler<Instance> handler(args.proc<Enum_Associators_Proc>(5), arg6);
            const Enum_Associators_Status status = provider->enum_associators(instance,
                                                                              *args.as<const String>(2),
                                                                              *args.as<const String>(3),
                                                                              *args.as<const String>(4),
                                                                              &handler);
            if (status != ENUM_ASSOCIATORS_UNSUPPORTED)
                handler._proc(nullptr, status, arg6);
            return status;
        }
        default:
            return Provider_Proc_T<PROVIDER>::proc(CIMPLE_PROVIDER_PROC_ARGUMENTS);
        }
    }
};

// Codes 0 to 4, 11, 12 and 13.
template <class PROVIDER>
struct Indication_Provider_Proc_T
{
    static int proc(CIMPLE_PROVIDER_PROC_PARAMETERS)
    {
        typedef typename PROVIDER::Class Class;
        const __Provider_Args args = {{arg0, arg1, arg2, arg3, arg4, arg5, arg6, arg7}};
        PROVIDER* const provider = args.as<PROVIDER>(0);

        switch (operation)
        {
        case OPERATION_ENABLE_INDICATIONS:
            return provider->enable_indications(
                new Indication_Handler<Class>(args.proc<Indication_Proc>(1), arg2));
        case OPERATION_DISABLE_INDICATIONS:
            return provider->disable_indications();
        default:
            return Provider_Proc_Common_T<PROVIDER>::proc(CIMPLE_PROVIDER_PROC_ARGUMENTS);
        }
    }
};

#undef CIMPLE_PROVIDER_PROC_PARAMETERS
#undef CIMPLE_PROVIDER_PROC_ARGUMENTS

CIMPLE_NAMESPACE_END

#endif
