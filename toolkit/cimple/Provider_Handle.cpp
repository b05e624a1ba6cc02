// Calls to providers: passing arguments, checking statuses, and answering what a provider leaves to its
// caller.
#include <algorithm>
#include <cimple/Features.h>
#include <cimple/Narrowing.h>
#include <cimple/Provider_Handle.h>
#include <cimple/Ref.h>
#include <initializer_list>
#include <stdexcept>
#include <string>

CIMPLE_NAMESPACE_BEGIN

namespace
{
template <class T>
void* to_arg(T* arg)
{
    if constexpr (std::is_function_v<T>)
        return reinterpret_cast<void*>(arg);
    else
        return const_cast<void*>(static_cast<const void*>(arg));
}

// What a provider's answer means: itself if it is one of the operation's statuses, `missing` if the provider
// does not have the operation, otherwise `failed`.
template <class Status>
Status checked(int rc, std::initializer_list<Status> valid, Status missing, Status failed)
{
    if (rc == -1)
        return missing;
    const auto* const status =
        std::find_if(valid.begin(), valid.end(), [rc](Status s) { return int(s) == rc; });
    return status != valid.end() ? *status : failed;
}

// The instance as one that nobody else holds.
Instance* make_own(Ref<Instance> held)
{
    return held.count() == 1 ? held.steal() : clone(held.ptr());
}

struct Search
{
    const Instance* model;
    Ref<Instance> found;
};

bool search_one(Instance* instance, Enum_Instances_Status, void* client_data)
{
    Search& search = *static_cast<Search*>(client_data);
    Ref<Instance> held(instance);
    if (held && !search.found && key_eq(search.model, instance))
        search.found = held;
    return !search.found;
}

struct Associator_Names
{
    const Instance* instance;
    const String& result_class;
    const String& role;
    const String& result_role;
    Enum_Associator_Names_Proc proc;
    void* client_data;
    bool wanted;
};

bool deliver_associator_names(Instance* association, Enum_Instances_Status, void* client_data)
{
    Associator_Names& request = *static_cast<Associator_Names*>(client_data);
    const Ref<Instance> held(association);
    if (!held || !request.wanted)
        return false;
    const Instance* ends[CIMPLE_MAX_REFERENCES_PER_CLASS];
    const ssize_t n = get_associators(request.instance,
                                      association,
                                      request.result_class.c_str(),
                                      request.role.c_str(),
                                      request.result_role.c_str(),
                                      ends);
    for (ssize_t i = 0; i < n && request.wanted; i++)
    {
        ref(ends[i]);
        request.wanted = request.proc(ends[i], ENUM_ASSOCIATOR_NAMES_OK, request.client_data);
    }
    return request.wanted;
}

// Whether an association refers to the object in a role that the object may play.
bool refers_to(const Instance* association, const Instance* instance, const char* role)
{
    for (const Meta_Feature* mf : features_of(association->meta_class))
    {
        const Meta_Reference* const mr = as_reference(mf);
        if (mr && may_play(mr, instance->meta_class, role) && __ref_of(association, mr) &&
            key_eq(instance, __ref_of(association, mr)))
            return true;
    }
    return false;
}

struct References
{
    const Instance* instance;
    const String& role;
    Enum_References_Proc proc;
    void* client_data;
    bool wanted;
};

bool deliver_references(Instance* association, Enum_Instances_Status, void* client_data)
{
    References& request = *static_cast<References*>(client_data);
    Ref<Instance> held(association);
    if (held && request.wanted && refers_to(association, request.instance, request.role.c_str()))
        request.wanted = request.proc(held.steal(), ENUM_REFERENCES_OK, request.client_data);
    return request.wanted;
}

bool is_association(const Registration* registration)
{
    return (registration->meta_class->flags & CIMPLE_FLAG_ASSOCIATION) != 0;
}
} // namespace

template <class... Args>
int Provider_Handle::call(int operation, Args... args) const
{
    void* const all[8] = {to_arg(args)...};
    return _registration->provider_proc(
        _registration, operation, all[0], all[1], all[2], all[3], all[4], all[5], all[6], all[7]);
}

Provider_Handle::Provider_Handle(const Registration* registration)
    : _registration(registration), _provider(nullptr)
{
    if (call(OPERATION_CREATE_PROVIDER, &_provider) != CREATE_PROVIDER_OK || !_provider)
        throw std::runtime_error(std::string("cannot create a provider object of ") +
                                 registration->provider_name);
}

Provider_Handle::~Provider_Handle()
{
    call(OPERATION_DESTROY_PROVIDER, _provider);
}

Get_Meta_Class_Status Provider_Handle::get_meta_class(const Meta_Class*& meta_class) const
{
    meta_class = _registration->meta_class;
    return GET_META_CLASS_OK;
}

Get_Repository_Status Provider_Handle::get_repository(const Meta_Repository*& repository) const
{
    repository = nullptr;
    call(OPERATION_GET_REPOSITORY, &repository);
    return GET_REPOSITORY_OK;
}

Load_Status Provider_Handle::load()
{
    return checked(call(OPERATION_LOAD, _provider), {LOAD_OK, LOAD_FAILED}, LOAD_FAILED, LOAD_FAILED);
}

Unload_Status Provider_Handle::unload()
{
    return checked(
        call(OPERATION_UNLOAD, _provider), {UNLOAD_OK, UNLOAD_FAILED}, UNLOAD_FAILED, UNLOAD_FAILED);
}

Get_Instance_Status Provider_Handle::get_instance(const Instance* model, Instance*& instance)
{
    instance = nullptr;
    const Get_Instance_Status status = checked(call(OPERATION_GET_INSTANCE, _provider, model, &instance),
                                               {GET_INSTANCE_OK,
                                                GET_INSTANCE_NOT_FOUND,
                                                GET_INSTANCE_UNSUPPORTED,
                                                GET_INSTANCE_INVALID_PARAMETER,
                                                GET_INSTANCE_ACCESS_DENIED,
                                                GET_INSTANCE_FAILED},
                                               GET_INSTANCE_UNSUPPORTED,
                                               GET_INSTANCE_FAILED);
    if (status == GET_INSTANCE_OK)
        return instance ? GET_INSTANCE_OK : GET_INSTANCE_FAILED;
    if (status != GET_INSTANCE_UNSUPPORTED)
        return status;

    Search search = {model, Ref<Instance>()};
    if (enum_instances(model, search_one, &search) != ENUM_INSTANCES_OK || !search.found)
        return GET_INSTANCE_NOT_FOUND;
    instance = make_own(std::move(search.found));
    return GET_INSTANCE_OK;
}

Enum_Instances_Status
Provider_Handle::enum_instances(const Instance* model, Enum_Instances_Proc proc, void* client_data)
{
    return checked(call(OPERATION_ENUM_INSTANCES, _provider, model, proc, client_data),
                   {ENUM_INSTANCES_OK, ENUM_INSTANCES_FAILED, ENUM_INSTANCES_ACCESS_DENIED},
                   ENUM_INSTANCES_FAILED,
                   ENUM_INSTANCES_FAILED);
}

Create_Instance_Status Provider_Handle::create_instance(Instance* instance)
{
    return checked(call(OPERATION_CREATE_INSTANCE, _provider, instance),
                   {CREATE_INSTANCE_OK,
                    CREATE_INSTANCE_DUPLICATE,
                    CREATE_INSTANCE_UNSUPPORTED,
                    CREATE_INSTANCE_INVALID_PARAMETER,
                    CREATE_INSTANCE_ACCESS_DENIED,
                    CREATE_INSTANCE_FAILED},
                   CREATE_INSTANCE_UNSUPPORTED,
                   CREATE_INSTANCE_FAILED);
}

Delete_Instance_Status Provider_Handle::delete_instance(const Instance* instance)
{
    return checked(call(OPERATION_DELETE_INSTANCE, _provider, instance),
                   {DELETE_INSTANCE_OK,
                    DELETE_INSTANCE_NOT_FOUND,
                    DELETE_INSTANCE_UNSUPPORTED,
                    DELETE_INSTANCE_ACCESS_DENIED,
                    DELETE_INSTANCE_FAILED},
                   DELETE_INSTANCE_UNSUPPORTED,
                   DELETE_INSTANCE_FAILED);
}

Modify_Instance_Status Provider_Handle::modify_instance(const Instance* model, const Instance* instance)
{
    return checked(call(OPERATION_MODIFY_INSTANCE, _provider, model, instance),
                   {MODIFY_INSTANCE_OK,
                    MODIFY_INSTANCE_NOT_FOUND,
                    MODIFY_INSTANCE_UNSUPPORTED,
                    MODIFY_INSTANCE_INVALID_PARAMETER,
                    MODIFY_INSTANCE_ACCESS_DENIED,
                    MODIFY_INSTANCE_FAILED},
                   MODIFY_INSTANCE_UNSUPPORTED,
                   MODIFY_INSTANCE_FAILED);
}

Invoke_Method_Status Provider_Handle::invoke_method(const Instance* instance, Instance* method, bool* known)
{
    const int rc = call(OPERATION_INVOKE_METHOD, _provider, instance, method);
    if (known)
        *known = rc != -1;
    return checked(
        rc,
        {INVOKE_METHOD_OK, INVOKE_METHOD_FAILED, INVOKE_METHOD_UNSUPPORTED, INVOKE_METHOD_ACCESS_DENIED},
        INVOKE_METHOD_UNSUPPORTED,
        INVOKE_METHOD_FAILED);
}

Enable_Indications_Status Provider_Handle::enable_indications(Indication_Proc proc, void* client_data)
{
    return checked(call(OPERATION_ENABLE_INDICATIONS, _provider, proc, client_data),
                   {ENABLE_INDICATIONS_OK, ENABLE_INDICATIONS_FAILED},
                   ENABLE_INDICATIONS_FAILED,
                   ENABLE_INDICATIONS_FAILED);
}

Disable_Indications_Status Provider_Handle::disable_indications()
{
    return checked(call(OPERATION_DISABLE_INDICATIONS, _provider),
                   {DISABLE_INDICATIONS_OK, DISABLE_INDICATIONS_FAILED},
                   DISABLE_INDICATIONS_FAILED,
                   DISABLE_INDICATIONS_FAILED);
}

Enum_Associator_Names_Status Provider_Handle::enum_associator_names(const Instance* instance,
                                                                    const String& result_class,
                                                                    const String& role,
                                                                    const String& result_role,
                                                                    Enum_Associator_Names_Proc proc,
                                                                    void* client_data)
{
    if (!is_association(_registration))
        return ENUM_ASSOCIATOR_NAMES_FAILED;

    Enum_Associator_Names_Status status = checked(call(OPERATION_ENUM_ASSOCIATOR_NAMES,
                                                       _provider,
                                                       instance,
                                                       &result_class,
                                                       &role,
                                                       &result_role,
                                                       proc,
                                                       client_data),
                                                  {ENUM_ASSOCIATOR_NAMES_OK,
                                                   ENUM_ASSOCIATOR_NAMES_FAILED,
                                                   ENUM_ASSOCIATOR_NAMES_UNSUPPORTED,
                                                   ENUM_ASSOCIATOR_NAMES_ACCESS_DENIED},
                                                  ENUM_ASSOCIATOR_NAMES_UNSUPPORTED,
                                                  ENUM_ASSOCIATOR_NAMES_FAILED);
    if (status != ENUM_ASSOCIATOR_NAMES_UNSUPPORTED)
        return status;

    Ref<Instance> model(create(_registration->meta_class));
    nullify_non_keys(model.ptr());
    narrow(model.ptr(), instance, role.c_str());
    Associator_Names request = {instance, result_class, role, result_role, proc, client_data, true};
    switch (enum_instances(model.ptr(), deliver_associator_names, &request))
    {
    case ENUM_INSTANCES_OK:
        status = ENUM_ASSOCIATOR_NAMES_OK;
        break;
    case ENUM_INSTANCES_ACCESS_DENIED:
        status = ENUM_ASSOCIATOR_NAMES_ACCESS_DENIED;
        break;
    case ENUM_INSTANCES_FAILED:
        status = ENUM_ASSOCIATOR_NAMES_FAILED;
        break;
    }
    proc(nullptr, status, client_data);
    return status;
}

Enum_References_Status Provider_Handle::enum_references(const Instance* instance,
                                                        const Instance* model,
                                                        const String& role,
                                                        Enum_References_Proc proc,
                                                        void* client_data)
{
    if (!is_association(_registration))
        return ENUM_REFERENCES_FAILED;

    Enum_References_Status status =
        checked(call(OPERATION_ENUM_REFERENCES, _provider, instance, model, &role, proc, client_data),
                {ENUM_REFERENCES_OK,
                 ENUM_REFERENCES_FAILED,
                 ENUM_REFERENCES_UNSUPPORTED,
                 ENUM_REFERENCES_ACCESS_DENIED},
                ENUM_REFERENCES_UNSUPPORTED,
                ENUM_REFERENCES_FAILED);
    if (status != ENUM_REFERENCES_UNSUPPORTED)
        return status;

    Ref<Instance> narrowed(clone(model));
    narrow(narrowed.ptr(), instance, role.c_str());
    References request = {instance, role, proc, client_data, true};
    switch (enum_instances(narrowed.ptr(), deliver_references, &request))
    {
    case ENUM_INSTANCES_OK:
        status = ENUM_REFERENCES_OK;
        break;
    case ENUM_INSTANCES_ACCESS_DENIED:
        status = ENUM_REFERENCES_ACCESS_DENIED;
        break;
    case ENUM_INSTANCES_FAILED:
        status = ENUM_REFERENCES_FAILED;
        break;
    }
    proc(nullptr, status, client_data);
    return status;
}

Enum_Associators_Status Provider_Handle::enum_associators(const Instance* instance,
                                                          const String& result_class,
                                                          const String& role,
                                                          const String& result_role,
                                                          Enum_Associators_Proc proc,
                                                          void* client_data)
{
    return checked(call(OPERATION_ENUM_ASSOCIATORS,
                        _provider,
                        instance,
                        &result_class,
                        &role,
                        &result_role,
                        proc,
                        client_data),
                   {ENUM_ASSOCIATORS_OK,
                    ENUM_ASSOCIATORS_FAILED,
                    ENUM_ASSOCIATORS_UNSUPPORTED,
                    ENUM_ASSOCIATORS_ACCESS_DENIED},
                   ENUM_ASSOCIATORS_UNSUPPORTED,
                   ENUM_ASSOCIATORS_FAILED);
}

CIMPLE_NAMESPACE_END
