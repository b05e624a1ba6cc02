// The operation codes of a provider: what each calls, what it answers, and the closing calls.
#include "demo_objects.h"
#include <gtest/gtest.h>
#include <vector>

using namespace cimple;

namespace
{
// What the provider under test answers and what it was called with.
struct Script
{
    int status = 0;
    std::vector<std::string> calls;
    int live_providers = 0;
};
Script script;

template <class Status>
Status record(const std::string& call)
{
    script.calls.push_back(call);
    return static_cast<Status>(script.status);
}

template <class CLASS>
class Recorder
{
  public:
    typedef CLASS Class;

    Recorder() { script.live_providers++; }
    ~Recorder() { script.live_providers--; }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    Load_Status load() { return record<Load_Status>("load"); }
    Unload_Status unload() { return record<Unload_Status>("unload"); }
    Get_Instance_Status get_instance(const Class* model, Class*& instance)
    {
        instance = model->clone();
        return record<Get_Instance_Status>("get " + demo::path_of(model));
    }
    Enum_Instances_Status enum_instances(const Class* model, Enum_Instances_Handler<Class>* handler)
    {
        handler->handle(model->clone());
        return record<Enum_Instances_Status>("enum " + demo::path_of(model));
    }
    Create_Instance_Status create_instance(Class* instance)
    {
        return record<Create_Instance_Status>("create " + demo::path_of(instance));
    }
    Delete_Instance_Status delete_instance(const Class* instance)
    {
        return record<Delete_Instance_Status>("delete " + demo::path_of(instance));
    }
    Modify_Instance_Status modify_instance(const Class* model, const Class* instance)
    {
        return record<Modify_Instance_Status>("modify " + demo::path_of(instance) + " by " +
                                              demo::path_of(model));
    }
    Enum_Associator_Names_Status enum_associator_names(const Instance* instance,
                                                       const String& result_class,
                                                       const String& role,
                                                       const String& result_role,
                                                       Enum_Associator_Names_Handler<Instance>* handler)
    {
        handler->handle(clone(instance));
        return record<Enum_Associator_Names_Status>("names " +
                                                    filters(instance, result_class, role, result_role));
    }
    Enum_Associators_Status enum_associators(const Instance* instance,
                                             const String& result_class,
                                             const String& role,
                                             const String& result_role,
                                             Enum_Associators_Handler<Instance>* handler)
    {
        handler->handle(clone(instance));
        return record<Enum_Associators_Status>("associators " +
                                               filters(instance, result_class, role, result_role));
    }
    Enum_References_Status enum_references(const Instance* instance,
                                           const Class* model,
                                           const String& role,
                                           Enum_References_Handler<Class>* handler)
    {
        handler->handle(model->clone());
        return record<Enum_References_Status>("references " + demo::path_of(instance) + " " + role.c_str());
    }
    Enable_Indications_Status enable_indications(Indication_Handler<Class>* handler)
    {
        handler->handle(Class::create());
        delete handler;
        return record<Enable_Indications_Status>("enable");
    }
    Disable_Indications_Status disable_indications() { return record<Disable_Indications_Status>("disable"); }

  private:
    static std::string filters(const Instance* instance,
                               const String& result_class,
                               const String& role,
                               const String& result_role)
    {
        return demo::path_of(instance) + " " + result_class.c_str() + " " + role.c_str() + " " +
               result_role.c_str();
    }
};

// What a receiver got: the statuses of its closing calls and the number of other calls.
struct Receiver
{
    std::vector<int> closing;
    int results = 0;
};

template <class INSTANCE, class STATUS>
bool receive(INSTANCE* instance, STATUS status, void* client_data)
{
    Receiver& receiver = *static_cast<Receiver*>(client_data);
    if (instance)
        receiver.results++;
    else
        receiver.closing.push_back(status);
    unref(instance);
    return true;
}

bool receive_indication(Instance* instance, void* client_data)
{
    return receive<Instance, int>(instance, -1, client_data);
}

template <class PROC>
void* to_arg(PROC proc)
{
    return reinterpret_cast<void*>(proc);
}

// One operation on a provider object: its arguments after the provider, what is called and what comes back.
struct Row
{
    int operation;
    std::vector<void*> args;
    std::string call; // "": -1 and no call
    int results = 0;
    bool closes = false;
    int unsupported = 0; // the status that leaves the closing call out
};

template <class PROC>
void expect_rows(const std::vector<Row>& rows, Receiver& receiver)
{
    for (const Row& row : rows)
    {
        for (const int status : {0, 7, row.unsupported})
        {
            script = Script();
            script.status = status;
            receiver = Receiver();
            typename PROC::Provider provider;
            void* args[8] = {&provider};
            std::copy(row.args.begin(), row.args.end(), args + 1);
            // Called as the adapter does, through a pointer: inlined, the arguments of other codes look
            // wrong.
            const Provider_Proc volatile proc = PROC::Proc::proc;
            const int rc = proc(nullptr,
                                row.operation,
                                args[0],
                                args[1],
                                args[2],
                                args[3],
                                args[4],
                                args[5],
                                args[6],
                                args[7]);
            const bool known = !row.call.empty();
            EXPECT_EQ(rc, known ? status : -1) << row.operation;
            EXPECT_EQ(script.calls,
                      known ? std::vector<std::string>({row.call}) : std::vector<std::string>());
            EXPECT_EQ(receiver.results, row.results) << row.operation;
            const bool closed = row.closes && (row.unsupported == 0 || status != row.unsupported);
            EXPECT_EQ(receiver.closing, closed ? std::vector<int>({status}) : std::vector<int>())
                << "operation " << row.operation << " status " << status;
        }
    }
}

struct Instance_Kind
{
    typedef Recorder<Demo_Rack> Provider;
    typedef Instance_Provider_Proc_T<Provider> Proc;
};
struct Association_Kind
{
    typedef Recorder<Demo_SensorInRack> Provider;
    typedef Association_Provider_Proc_T<Provider> Proc;
};
struct Indication_Kind
{
    typedef Recorder<Demo_SensorAlert> Provider;
    typedef Indication_Provider_Proc_T<Provider> Proc;
};

TEST(ProviderProcTest, InstanceProviders)
{
    Ref<Demo_Rack> a = demo::rack("a");
    Ref<Demo_Rack> b = demo::rack("b");
    Demo_Rack* out = nullptr;
    Receiver receiver;
    void* const proc = to_arg<Enum_Instances_Proc>(receive<Instance, Enum_Instances_Status>);
    const std::string path_a = "Demo_Rack.Name=\"a\"";
    const std::string path_b = "Demo_Rack.Name=\"b\"";
    expect_rows<Instance_Kind>(
        {
            {OPERATION_LOAD, {}, "load"},
            {OPERATION_UNLOAD, {}, "unload"},
            {OPERATION_ENUM_INSTANCES, {a.ptr(), proc, &receiver}, "enum " + path_a, 1, true},
            {OPERATION_CREATE_INSTANCE, {a.ptr()}, "create " + path_a},
            {OPERATION_DELETE_INSTANCE, {a.ptr()}, "delete " + path_a},
            {OPERATION_MODIFY_INSTANCE, {a.ptr(), b.ptr()}, "modify " + path_b + " by " + path_a},
            {OPERATION_INVOKE_METHOD, {a.ptr(), b.ptr()}, ""},
            {OPERATION_ENABLE_INDICATIONS, {proc, &receiver}, ""},
            {OPERATION_DISABLE_INDICATIONS, {}, ""},
            {OPERATION_ENUM_ASSOCIATOR_NAMES, {}, ""},
            {OPERATION_ENUM_REFERENCES, {}, ""},
            {OPERATION_ENUM_ASSOCIATORS, {}, ""},
            {17, {}, ""},
            {-1, {}, ""},
        },
        receiver);

    script = Script();
    Recorder<Demo_Rack> provider;
    Instance_Kind::Proc::proc(nullptr,
                              OPERATION_GET_INSTANCE,
                              &provider,
                              a.ptr(),
                              &out,
                              nullptr,
                              nullptr,
                              nullptr,
                              nullptr,
                              nullptr);
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(key_eq(out, a.ptr()));
    Demo_Rack::destroy(out);
}

TEST(ProviderProcTest, AssociationProviders)
{
    Ref<Demo_Rack> source = demo::rack("a");
    Ref<Demo_SensorInRack> model = demo::sensor_in_rack("a", 1);
    String result_class("Result");
    String role("Role");
    String result_role("ResultRole");
    Receiver receiver;
    void* const names =
        to_arg<Enum_Associator_Names_Proc>(receive<const Instance, Enum_Associator_Names_Status>);
    void* const associators = to_arg<Enum_Associators_Proc>(receive<const Instance, Enum_Associators_Status>);
    void* const references = to_arg<Enum_References_Proc>(receive<Instance, Enum_References_Status>);
    const std::string filters = "Demo_Rack.Name=\"a\" Result Role ResultRole";
    expect_rows<Association_Kind>(
        {
            {OPERATION_LOAD, {}, "load"},
            {OPERATION_CREATE_INSTANCE, {model.ptr()}, "create " + demo::path_of(model.ptr())},
            {OPERATION_ENUM_ASSOCIATOR_NAMES,
             {source.ptr(), &result_class, &role, &result_role, names, &receiver},
             "names " + filters,
             1,
             true,
             ENUM_ASSOCIATOR_NAMES_UNSUPPORTED},
            {OPERATION_ENUM_REFERENCES,
             {source.ptr(), model.ptr(), &role, references, &receiver},
             "references Demo_Rack.Name=\"a\" Role",
             1,
             true,
             ENUM_REFERENCES_UNSUPPORTED},
            {OPERATION_ENUM_ASSOCIATORS,
             {source.ptr(), &result_class, &role, &result_role, associators, &receiver},
             "associators " + filters,
             1,
             true,
             ENUM_ASSOCIATORS_UNSUPPORTED},
            {OPERATION_INVOKE_METHOD, {}, ""},
            {OPERATION_ENABLE_INDICATIONS, {}, ""},
            {OPERATION_DISABLE_INDICATIONS, {}, ""},
            {17, {}, ""},
        },
        receiver);
}

TEST(ProviderProcTest, IndicationProviders)
{
    Receiver receiver;
    void* const proc = to_arg<Indication_Proc>(receive_indication);
    std::vector<Row> rows = {
        {OPERATION_LOAD, {}, "load"},
        {OPERATION_UNLOAD, {}, "unload"},
        {OPERATION_DISABLE_INDICATIONS, {}, "disable"},
    };
    for (const int operation : {OPERATION_GET_INSTANCE,
                                OPERATION_ENUM_INSTANCES,
                                OPERATION_CREATE_INSTANCE,
                                OPERATION_DELETE_INSTANCE,
                                OPERATION_MODIFY_INSTANCE,
                                OPERATION_INVOKE_METHOD,
                                OPERATION_ENUM_ASSOCIATOR_NAMES,
                                OPERATION_ENUM_REFERENCES,
                                OPERATION_ENUM_ASSOCIATORS})
        rows.push_back({operation, {}, ""});
    expect_rows<Indication_Kind>(rows, receiver);

    script = Script();
    script.status = ENABLE_INDICATIONS_FAILED;
    receiver = Receiver();
    Indication_Kind::Provider provider;
    EXPECT_EQ(Indication_Kind::Proc::proc(nullptr,
                                          OPERATION_ENABLE_INDICATIONS,
                                          &provider,
                                          proc,
                                          &receiver,
                                          nullptr,
                                          nullptr,
                                          nullptr,
                                          nullptr,
                                          nullptr),
              ENABLE_INDICATIONS_FAILED);
    EXPECT_EQ(receiver.results, 1);
    EXPECT_EQ(receiver.closing.size(), 1u) << "the handler is the provider's to delete";
}

template <class KIND>
void expect_common(const Meta_Class* mc)
{
    const auto call = [](int operation, void* arg)
    {
        return KIND::Proc::proc(
            nullptr, operation, arg, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    };
    script = Script();
    const Meta_Class* got_class = nullptr;
    const Meta_Repository* got_repository = nullptr;
    typename KIND::Provider* provider = nullptr;
    EXPECT_EQ(call(OPERATION_GET_META_CLASS, &got_class), 0);
    EXPECT_EQ(got_class, mc);
    EXPECT_EQ(call(OPERATION_GET_REPOSITORY, &got_repository), 0);
    EXPECT_EQ(got_repository, &demo_repository);
    EXPECT_EQ(call(OPERATION_CREATE_PROVIDER, &provider), 0);
    EXPECT_EQ(script.live_providers, 1);
    EXPECT_EQ(call(OPERATION_DESTROY_PROVIDER, provider), 0);
    EXPECT_EQ(script.live_providers, 0);
    EXPECT_EQ(call(OPERATION_DESTROY_PROVIDER, nullptr), 0);
}

TEST(ProviderProcTest, AllProvidersHaveTheCommonOperations)
{
    expect_common<Instance_Kind>(&Demo_Rack::static_meta_class);
    expect_common<Association_Kind>(&Demo_SensorInRack::static_meta_class);
    expect_common<Indication_Kind>(&Demo_SensorAlert::static_meta_class);
}
} // namespace
