// The contract between providers and whoever calls them: statuses, handlers, operation codes.
#ifndef CIMPLE_PROVIDER_H
#define CIMPLE_PROVIDER_H

#include <cimple/Instance.h>

CIMPLE_NAMESPACE_BEGIN

enum Get_Meta_Class_Status
{
    GET_META_CLASS_OK = 0
};

enum Create_Provider_Status
{
    CREATE_PROVIDER_OK = 0
};

enum Destroy_Provider_Status
{
    DESTROY_PROVIDER_OK = 0
};

enum Get_Repository_Status
{
    GET_REPOSITORY_OK = 0
};

enum Load_Status
{
    LOAD_OK = 0,
    LOAD_FAILED = 30
};

enum Unload_Status
{
    UNLOAD_OK = 0,
    UNLOAD_FAILED = 40
};

enum Timer_Status
{
    TIMER_RESCHEDULE = 0,
    TIMER_CANCEL = 50
};

enum Get_Instance_Status
{
    GET_INSTANCE_OK = 0,
    GET_INSTANCE_NOT_FOUND = 60,
    GET_INSTANCE_UNSUPPORTED = 61,
    GET_INSTANCE_INVALID_PARAMETER = 62,
    GET_INSTANCE_ACCESS_DENIED = 63,
    GET_INSTANCE_FAILED = 64
};

enum Enum_Instances_Status
{
    ENUM_INSTANCES_OK = 0,
    ENUM_INSTANCES_FAILED = 70,
    ENUM_INSTANCES_ACCESS_DENIED = 71
};

enum Create_Instance_Status
{
    CREATE_INSTANCE_OK = 0,
    CREATE_INSTANCE_DUPLICATE = 80,
    CREATE_INSTANCE_UNSUPPORTED = 81,
    CREATE_INSTANCE_INVALID_PARAMETER = 82,
    CREATE_INSTANCE_ACCESS_DENIED = 83,
    CREATE_INSTANCE_FAILED = 84
};

enum Delete_Instance_Status
{
    DELETE_INSTANCE_OK = 0,
    DELETE_INSTANCE_NOT_FOUND = 90,
    DELETE_INSTANCE_UNSUPPORTED = 91,
    DELETE_INSTANCE_ACCESS_DENIED = 92,
    DELETE_INSTANCE_FAILED = 93
};

enum Modify_Instance_Status
{
    MODIFY_INSTANCE_OK = 0,
    MODIFY_INSTANCE_NOT_FOUND = 100,
    MODIFY_INSTANCE_UNSUPPORTED = 101,
    MODIFY_INSTANCE_INVALID_PARAMETER = 102,
    MODIFY_INSTANCE_ACCESS_DENIED = 103,
    MODIFY_INSTANCE_FAILED = 104
};

enum Enum_Associator_Names_Status
{
    ENUM_ASSOCIATOR_NAMES_OK = 0,
    ENUM_ASSOCIATOR_NAMES_FAILED = 110,
    ENUM_ASSOCIATOR_NAMES_UNSUPPORTED = 111,
    ENUM_ASSOCIATOR_NAMES_ACCESS_DENIED = 112
};

enum Enum_References_Status
{
    ENUM_REFERENCES_OK = 0,
    ENUM_REFERENCES_FAILED = 120,
    ENUM_REFERENCES_UNSUPPORTED = 121,
    ENUM_REFERENCES_ACCESS_DENIED = 122
};

enum Invoke_Method_Status
{
    INVOKE_METHOD_OK = 0,
    INVOKE_METHOD_FAILED = 130,
    INVOKE_METHOD_UNSUPPORTED = 131,
    INVOKE_METHOD_ACCESS_DENIED = 132
};

enum Enable_Indications_Status
{
    ENABLE_INDICATIONS_OK = 0,
    ENABLE_INDICATIONS_FAILED = 140
};

enum Disable_Indications_Status
{
    DISABLE_INDICATIONS_OK = 0,
    DISABLE_INDICATIONS_FAILED = 150
};

enum Enum_Associators_Status
{
    ENUM_ASSOCIATORS_OK = 0,
    ENUM_ASSOCIATORS_FAILED = 170,
    ENUM_ASSOCIATORS_UNSUPPORTED = 171,
    ENUM_ASSOCIATORS_ACCESS_DENIED = 172
};

// Receivers of results. Each call hands over one count on the instance, whatever is returned; the receiver
// gives it back with unref() and must not change the instance, which may be shared. False: no more results
// are wanted. The last call has a null instance and the operation's status. The indication receiver's last
// call (null instance) says that its handler is gone.
typedef bool (*Enum_Instances_Proc)(Instance* instance, Enum_Instances_Status status, void* client_data);
typedef bool (*Enum_Associator_Names_Proc)(const Instance* associator_name,
                                           Enum_Associator_Names_Status status,
                                           void* client_data);
typedef bool (*Enum_Associators_Proc)(const Instance* associator,
                                      Enum_Associators_Status status,
                                      void* client_data);
typedef bool (*Enum_References_Proc)(Instance* reference, Enum_References_Status status, void* client_data);
typedef bool (*Indication_Proc)(Instance* instance, void* client_data);

// Handlers: how a provider passes results to a receiver. After handle(x) the provider has nothing to do with
// x any more. False means that no more results are wanted.
template <class CLASS>
class Enum_Instances_Handler
{
  public:
    Enum_Instances_Handler(Enum_Instances_Proc proc, void* client_data)
        : _proc(proc), _client_data(client_data)
    {
    }
    bool handle(CLASS* instance) { return _proc(instance, ENUM_INSTANCES_OK, _client_data); }

    Enum_Instances_Proc _proc;
    void* _client_data;
};

template <class CLASS>
class Enum_Associator_Names_Handler
{
  public:
    Enum_Associator_Names_Handler(Enum_Associator_Names_Proc proc, void* client_data)
        : _proc(proc), _client_data(client_data)
    {
    }
    bool handle(CLASS* name) { return _proc(name, ENUM_ASSOCIATOR_NAMES_OK, _client_data); }

    Enum_Associator_Names_Proc _proc;
    void* _client_data;
};

template <class CLASS>
class Enum_Associators_Handler
{
  public:
    Enum_Associators_Handler(Enum_Associators_Proc proc, void* client_data)
        : _proc(proc), _client_data(client_data)
    {
    }
    bool handle(CLASS* associator) { return _proc(associator, ENUM_ASSOCIATORS_OK, _client_data); }

    Enum_Associators_Proc _proc;
    void* _client_data;
};

template <class CLASS>
class Enum_References_Handler
{
  public:
    Enum_References_Handler(Enum_References_Proc proc, void* client_data)
        : _proc(proc), _client_data(client_data)
    {
    }
    bool handle(CLASS* reference) { return _proc(reference, ENUM_REFERENCES_OK, _client_data); }

    Enum_References_Proc _proc;
    void* _client_data;
};

// Belongs to the provider from enable_indications() on; deleting it tells the receiver.
template <class CLASS>
class Indication_Handler
{
  public:
    Indication_Handler(Indication_Proc proc, void* client_data) : _proc(proc), _client_data(client_data) {}
    ~Indication_Handler() { _proc(nullptr, _client_data); }
    Indication_Handler(const Indication_Handler&) = delete;
    Indication_Handler& operator=(const Indication_Handler&) = delete;
    bool handle(CLASS* instance) { return _proc(instance, _client_data); }

  private:
    Indication_Proc _proc;
    void* _client_data;
};

// What arg0 to arg7 of a Provider_Proc mean stands with each code; unnamed arguments are not used.
enum Provider_Operation
{
    OPERATION_GET_META_CLASS,      // const Meta_Class** out
    OPERATION_CREATE_PROVIDER,     // PROVIDER** out
    OPERATION_DESTROY_PROVIDER,    // provider
    OPERATION_LOAD,                // provider
    OPERATION_UNLOAD,              // provider
    OPERATION_GET_INSTANCE,        // provider, const CLASS* model, CLASS** out
    OPERATION_ENUM_INSTANCES,      // provider, const CLASS* model, Enum_Instances_Proc, client data
    OPERATION_CREATE_INSTANCE,     // provider, CLASS*
    OPERATION_DELETE_INSTANCE,     // provider, const CLASS*
    OPERATION_MODIFY_INSTANCE,     // provider, const CLASS* model, const CLASS*
    OPERATION_INVOKE_METHOD,       // provider, const CLASS* self, Instance* method
    OPERATION_ENABLE_INDICATIONS,  // provider, Indication_Proc, client data
    OPERATION_DISABLE_INDICATIONS, // provider
    OPERATION_GET_REPOSITORY,      // const Meta_Repository** out
    // Provider, const Instance*, const String* result class, role and result role,
    // Enum_Associator_Names_Proc, data.
    OPERATION_ENUM_ASSOCIATOR_NAMES,
    // Provider, const Instance*, const CLASS* model, const String* role, Enum_References_Proc, client data.
    OPERATION_ENUM_REFERENCES,
    // Provider, const Instance*, const String* result class, role and result role, Enum_Associators_Proc,
    // data.
    OPERATION_ENUM_ASSOCIATORS
};

struct Registration;

// The one entry of a provider. Returns the operation's status, or -1 for an operation that it does not have.
typedef int (*Provider_Proc)(const Registration* registration,
                             int operation,
                             void* arg0,
                             void* arg1,
                             void* arg2,
                             void* arg3,
                             void* arg4,
                             void* arg5,
                             void* arg6,
                             void* arg7);

CIMPLE_NAMESPACE_END

#include <cimple/Provider_Proc.h>

#endif
