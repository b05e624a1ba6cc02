// The operation codes of a provider: which each kind has, what they answer, and the closing calls.
#include "demo_objects.h"
#include <gtest/gtest.h>
#include <set>
#include <vector>

using namespace cimple;

namespace
{
int answer = 0; // the status of every operation
int live_providers = 0;

struct Answer
{
    template <class Status>
    operator Status() const
    {
        return static_cast<Status>(answer);
    }
};

// Enumerations hand over one instance: their first argument or a copy of the model.
template <class CLASS>
struct Provider
{
    typedef CLASS Class;

    Provider() { live_providers++; }
    ~Provider() { live_providers--; }
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;

    Answer load() { return Answer(); }
    Answer unload() { return Answer(); }
    Answer get_instance(const Class*, Class*&) { return Answer(); }
    Answer create_instance(Class*) { return Answer(); }
    Answer delete_instance(const Class*) { return Answer(); }
    Answer modify_instance(const Class*, const Class*) { return Answer(); }
    Answer disable_indications() { return Answer(); }
    Answer enum_instances(const Class* model, Enum_Instances_Handler<Class>* handler)
    {
        handler->handle(model->clone());
        return Answer();
    }
    template <class Handler>
    Answer enum_associator_names(
        const Instance* source, const String&, const String&, const String&, Handler* handler)
    {
        handler->handle(clone(source));
        return Answer();
    }
    template <class Handler>
    Answer
    enum_associators(const Instance* source, const String&, const String&, const String&, Handler* handler)
    {
        handler->handle(clone(source));
        return Answer();
    }
    template <class Handler>
    Answer enum_references(const Instance*, const Class* model, const String&, Handler* handler)
    {
        handler->handle(model->clone());
        return Answer();
    }
    Answer enable_indications(Indication_Handler<Class>* handler)
    {
        handler->handle(Class::create());
        delete handler;
        return Answer();
    }
};

typedef Instance_Provider_Proc_T<Provider<Demo_Rack>> Instance_Kind;
typedef Association_Provider_Proc_T<Provider<Demo_SensorInRack>> Association_Kind;
typedef Indication_Provider_Proc_T<Provider<Demo_SensorAlert>> Indication_Kind;

// Called as the adapter does, through a pointer: inlined, the arguments of other codes look wrong.
int call(Provider_Proc volatile proc, int operation, std::vector<void*> args)
{
    args.resize(8);
    return proc(nullptr, operation, args[0], args[1], args[2], args[3], args[4], args[5], args[6], args[7]);
}

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

TEST(ProviderProcTest, EnumerationsEndWithOneClosingCall)
{
    const Ref<Demo_Rack> rack = demo::rack("a");
    Demo_Rack* const source = const_cast<Demo_Rack*>(rack.ptr());
    const Ref<Demo_SensorInRack> link = demo::sensor_in_rack("a", 1);
    Demo_SensorInRack* const model = const_cast<Demo_SensorInRack*>(link.ptr());
    String none;
    Receiver receiver;
    Provider<Demo_Rack> racks;
    Provider<Demo_SensorInRack> links;
    void* const instances = to_arg<Enum_Instances_Proc>(receive<Instance, Enum_Instances_Status>);
    const struct
    {
        Provider_Proc proc;
        int operation;
        std::vector<void*> args;
        int unsupported; // the status that leaves the closing call out
    } rows[] = {
        {Instance_Kind::proc, OPERATION_ENUM_INSTANCES, {&racks, source, instances, &receiver}, -1},
        {Association_Kind::proc, OPERATION_ENUM_INSTANCES, {&links, model, instances, &receiver}, -1},
        {Association_Kind::proc,
         OPERATION_ENUM_ASSOCIATOR_NAMES,
         {&links,
          source,
          &none,
          &none,
          &none,
          to_arg<Enum_Associator_Names_Proc>(receive<const Instance, Enum_Associator_Names_Status>),
          &receiver},
         ENUM_ASSOCIATOR_NAMES_UNSUPPORTED},
        {Association_Kind::proc,
         OPERATION_ENUM_REFERENCES,
         {&links,
          source,
          model,
          &none,
          to_arg<Enum_References_Proc>(receive<Instance, Enum_References_Status>),
          &receiver},
         ENUM_REFERENCES_UNSUPPORTED},
        {Association_Kind::proc,
         OPERATION_ENUM_ASSOCIATORS,
         {&links,
          source,
          &none,
          &none,
          &none,
          to_arg<Enum_Associators_Proc>(receive<const Instance, Enum_Associators_Status>),
          &receiver},
         ENUM_ASSOCIATORS_UNSUPPORTED},
    };
    for (const auto& row : rows)
    {
        for (const int status : {0, 7, row.unsupported})
        {
            answer = status;
            receiver = Receiver();
            EXPECT_EQ(call(row.proc, row.operation, row.args), status) << row.operation;
            EXPECT_EQ(receiver.results, 1) << row.operation;
            const bool closed = status != row.unsupported || row.operation == OPERATION_ENUM_INSTANCES;
            EXPECT_EQ(receiver.closing, closed ? std::vector<int>({status}) : std::vector<int>())
                << "operation " << row.operation << " status " << status;
        }
    }

    // The handler of indications is the provider's to delete.
    Provider<Demo_SensorAlert> alerts;
    answer = ENABLE_INDICATIONS_FAILED;
    receiver = Receiver();
    EXPECT_EQ(call(Indication_Kind::proc,
                   OPERATION_ENABLE_INDICATIONS,
                   {&alerts, to_arg<Indication_Proc>(receive_indication), &receiver}),
              ENABLE_INDICATIONS_FAILED);
    EXPECT_EQ(receiver.results, 1);
    EXPECT_EQ(receiver.closing.size(), 1u);
}

template <class KIND, class CLASS>
void expect_kind(const std::set<int>& foreign_operations)
{
    const Meta_Class* mc = nullptr;
    const Meta_Repository* repository = nullptr;
    Provider<CLASS>* provider = nullptr;
    EXPECT_EQ(call(KIND::proc, OPERATION_GET_META_CLASS, {&mc}), 0);
    EXPECT_EQ(mc, &CLASS::static_meta_class);
    EXPECT_EQ(call(KIND::proc, OPERATION_GET_REPOSITORY, {&repository}), 0);
    EXPECT_EQ(repository, CLASS::static_meta_class.meta_repository);
    EXPECT_EQ(call(KIND::proc, OPERATION_CREATE_PROVIDER, {&provider}), 0);
    EXPECT_EQ(live_providers, 1);
    answer = 7;
    for (const int operation : foreign_operations)
        EXPECT_EQ(call(KIND::proc, operation, {provider}), -1) << operation;
    for (const int operation : {OPERATION_LOAD, OPERATION_UNLOAD})
        EXPECT_EQ(call(KIND::proc, operation, {provider}), 7) << operation;
    EXPECT_EQ(call(KIND::proc, OPERATION_DESTROY_PROVIDER, {provider}), 0);
    EXPECT_EQ(live_providers, 0);
    EXPECT_EQ(call(KIND::proc, OPERATION_DESTROY_PROVIDER, {nullptr}), 0);
}

TEST(ProviderProcTest, EveryKindHasTheCommonOperationsAndNoForeignOnes)
{
    const std::set<int> indications = {
        OPERATION_INVOKE_METHOD, OPERATION_ENABLE_INDICATIONS, OPERATION_DISABLE_INDICATIONS, 17, -1};
    const std::set<int> associations = {
        OPERATION_ENUM_ASSOCIATOR_NAMES, OPERATION_ENUM_REFERENCES, OPERATION_ENUM_ASSOCIATORS};
    std::set<int> both = indications;
    both.insert(associations.begin(), associations.end());
    std::set<int> instances = associations;
    instances.insert({OPERATION_GET_INSTANCE,
                      OPERATION_ENUM_INSTANCES,
                      OPERATION_CREATE_INSTANCE,
                      OPERATION_DELETE_INSTANCE,
                      OPERATION_MODIFY_INSTANCE,
                      OPERATION_INVOKE_METHOD});
    expect_kind<Instance_Kind, Demo_Rack>(both);
    expect_kind<Association_Kind, Demo_SensorInRack>(indications);
    expect_kind<Indication_Kind, Demo_SensorAlert>(instances);
}
} // namespace
