// A provider as its callers see it: one object behind typed calls, with the fallbacks that all callers share.
#ifndef CIMPLE_PROVIDER_HANDLE_H
#define CIMPLE_PROVIDER_HANDLE_H

#include <cimple/Provider.h>
#include <cimple/Registration.h>

CIMPLE_NAMESPACE_BEGIN

// Statuses that a provider must not return come out as the operation's *_FAILED; an operation that it does
// not have as *_UNSUPPORTED where that exists, otherwise as *_FAILED. Exceptions of the provider pass
// through.
//
// Calls may run in parallel as far as the provider allows.
class CIMPLE_CIMPLE_LINKAGE Provider_Handle
{
  public:
    // Creates the provider object; throws what its constructor throws, or std::runtime_error if there is
    // none.
    explicit Provider_Handle(const Registration* registration);
    ~Provider_Handle();
    Provider_Handle(const Provider_Handle&) = delete;
    Provider_Handle& operator=(const Provider_Handle&) = delete;

    Get_Meta_Class_Status get_meta_class(const Meta_Class*& meta_class) const;
    Get_Repository_Status get_repository(const Meta_Repository*& repository) const;
    const Registration* registration() const { return _registration; }

    Load_Status load();
    Unload_Status unload();

    // On OK the caller owns `instance`, which nobody shares; otherwise it is null. A provider without the
    // operation is enumerated; what it cannot enumerate is not found.
    Get_Instance_Status get_instance(const Instance* model, Instance*& instance);

    // The provider makes the closing call; there is none if it does not have the operation.
    Enum_Instances_Status enum_instances(const Instance* model, Enum_Instances_Proc proc, void* client_data);

    Create_Instance_Status create_instance(Instance* instance);
    Delete_Instance_Status delete_instance(const Instance* instance);
    Modify_Instance_Status modify_instance(const Instance* model, const Instance* instance);

    // `known`, unless null, tells whether the provider has the method at all.
    Invoke_Method_Status invoke_method(const Instance* instance, Instance* method, bool* known = nullptr);

    Enable_Indications_Status enable_indications(Indication_Proc proc, void* client_data);
    Disable_Indications_Status disable_indications();

    // Without the operation in the provider these two look through its association instances and finish with
    // the closing call themselves; each result delivered is a count on the association instance's own (clone
    // of an) end, or on the association instance. FAILED at once, without any call, for a class that is no
    // association.
    Enum_Associator_Names_Status enum_associator_names(const Instance* instance,
                                                       const String& result_class,
                                                       const String& role,
                                                       const String& result_role,
                                                       Enum_Associator_Names_Proc proc,
                                                       void* client_data);
    Enum_References_Status enum_references(const Instance* instance,
                                           const Instance* model,
                                           const String& role,
                                           Enum_References_Proc proc,
                                           void* client_data);

    // No fallback; UNSUPPORTED comes without a closing call.
    Enum_Associators_Status enum_associators(const Instance* instance,
                                             const String& result_class,
                                             const String& role,
                                             const String& result_role,
                                             Enum_Associators_Proc proc,
                                             void* client_data);

  private:
    template <class... Args>
    int call(int operation, Args... args) const;

    const Registration* _registration;
    void* _provider;
};

CIMPLE_NAMESPACE_END

#endif
