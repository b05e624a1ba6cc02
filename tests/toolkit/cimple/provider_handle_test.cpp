// Provider handles: statuses that come out, and the answers given for operations that a provider leaves out.
#include "demo_objects.h"
#include <cimple/Provider_Handle.h>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <vector>

using namespace cimple;

namespace
{
int provider_object;

// A provider of which every operation can be told what to answer; others answer -1.
struct Script
{
    std::map<int, int> answers;
    std::vector<Ref<Instance>> instances; // what an enumeration hands out, shared
    Instance* result = nullptr;           // what get_instance hands out
    size_t enumerated = 0;
};
Script script;

int scripted_proc(
    const Registration*, int operation, void* arg0, void*, void* arg2, void* arg3, void*, void*, void*, void*)
{
    if (operation == OPERATION_CREATE_PROVIDER)
        *static_cast<void**>(arg0) = &provider_object;
    if (operation == OPERATION_GET_INSTANCE)
        *static_cast<Instance**>(arg2) = script.result;
    if (operation == OPERATION_CREATE_PROVIDER || operation == OPERATION_DESTROY_PROVIDER)
        return 0;
    const auto found = script.answers.find(operation);
    const int status = found == script.answers.end() ? -1 : found->second;
    if (operation == OPERATION_ENUM_INSTANCES)
    {
        const Enum_Instances_Proc proc = reinterpret_cast<Enum_Instances_Proc>(arg2);
        for (Ref<Instance>& instance : script.instances)
        {
            script.enumerated++;
            ref(instance.ptr());
            if (!proc(instance.ptr(), ENUM_INSTANCES_OK, arg3))
                break;
        }
        proc(nullptr, static_cast<Enum_Instances_Status>(status), arg3);
    }
    return status;
}

Registration* head = nullptr;
Registration sensor_provider(
    "Demo", "Demo_SensorInRack_Provider", scripted_proc, &Demo_SensorInRack::static_meta_class, head);
Registration rack_provider("Demo", "Demo_Rack_Provider", scripted_proc, &Demo_Rack::static_meta_class, head);
Registration link_provider(
    "Demo", "Demo_RackAboveRack_Provider", scripted_proc, &Demo_RackAboveRack::static_meta_class, head);

class ProviderHandleTest : public testing::Test
{
  protected:
    void SetUp() override { script = Script(); }
    void TearDown() override { script = Script(); }
};

TEST_F(ProviderHandleTest, PassesKnownStatusesOnAndNoOthers)
{
    Provider_Handle handle(&link_provider);
    Ref<Demo_RackAboveRack> instance = demo::rack_above_rack("a", "b");
    const String none;
    const auto ignore = [](Instance*, Enum_Instances_Status, void*) { return true; };
    Instance* const x = instance.ptr();
    const struct
    {
        int operation;
        std::function<int()> call;
        int first; // those from here to `last` and 0 are known
        int last;
        int missing; // what -1 comes out as
        int failed;
    } rows[] = {
        {OPERATION_LOAD, [&] { return handle.load(); }, 30, 30, 30, 30},
        {OPERATION_UNLOAD, [&] { return handle.unload(); }, 40, 40, 40, 40},
        {OPERATION_ENUM_INSTANCES, [&] { return handle.enum_instances(x, ignore, 0); }, 70, 71, 70, 70},
        {OPERATION_CREATE_INSTANCE, [&] { return handle.create_instance(x); }, 80, 84, 81, 84},
        {OPERATION_DELETE_INSTANCE, [&] { return handle.delete_instance(x); }, 90, 93, 91, 93},
        {OPERATION_MODIFY_INSTANCE, [&] { return handle.modify_instance(x, x); }, 100, 104, 101, 104},
        {OPERATION_INVOKE_METHOD, [&] { return handle.invoke_method(x, x); }, 130, 132, 131, 130},
        {OPERATION_ENABLE_INDICATIONS, [&] { return handle.enable_indications(0, 0); }, 140, 140, 140, 140},
        {OPERATION_DISABLE_INDICATIONS, [&] { return handle.disable_indications(); }, 150, 150, 150, 150},
        {OPERATION_ENUM_ASSOCIATORS,
         [&] { return handle.enum_associators(x, none, none, none, nullptr, nullptr); },
         170,
         172,
         171,
         170},
    };
    for (const auto& row : rows)
    {
        for (int status = 0; status <= 200; status++)
        {
            script.answers[row.operation] = status;
            const bool known = status == 0 || (row.first <= status && status <= row.last);
            EXPECT_EQ(row.call(), known ? status : row.failed) << row.operation << " " << status;
        }
        for (const int status : {-2, 1000000})
        {
            script.answers[row.operation] = status;
            EXPECT_EQ(row.call(), row.failed) << row.operation << " " << status;
        }
        script.answers.erase(row.operation);
        EXPECT_EQ(row.call(), row.missing) << row.operation;
    }
}

TEST_F(ProviderHandleTest, TellsWhatItIs)
{
    const Provider_Handle handle(&rack_provider);
    const Meta_Class* mc = nullptr;
    EXPECT_EQ(handle.get_meta_class(mc), GET_META_CLASS_OK);
    EXPECT_EQ(mc, &Demo_Rack::static_meta_class);
    EXPECT_EQ(handle.registration(), &rack_provider);
    EXPECT_EQ(head, &link_provider) << "registrations go to the front";
    EXPECT_EQ(head->next, &rack_provider);

    Registration* unused = nullptr;
    const Registration broken(
        "Demo",
        "Broken_Provider",
        [](const Registration*, int, void*, void*, void*, void*, void*, void*, void*, void*) { return 0; },
        &Demo_Rack::static_meta_class,
        unused);
    EXPECT_THROW(Provider_Handle{&broken}, std::runtime_error);
}

TEST_F(ProviderHandleTest, GetInstanceFallsBackToEnumeration)
{
    const struct
    {
        const char* what;
        int get;
        int enumerate;
        const char* key;
        int expected;
    } rows[] = {
        {"found", 61, 0, "b", GET_INSTANCE_OK},
        {"not among them", 61, 0, "z", GET_INSTANCE_NOT_FOUND},
        {"operation missing", -1, 0, "b", GET_INSTANCE_OK},
        {"enumeration fails", 61, 70, "z", GET_INSTANCE_FAILED},
        {"enumeration fails after the match", 61, 70, "b", GET_INSTANCE_FAILED},
        {"enumeration denied", 61, 71, "b", GET_INSTANCE_ACCESS_DENIED},
        {"enumeration missing", 61, -1, "z", GET_INSTANCE_FAILED},
        {"not found by the provider itself", 60, 0, "b", GET_INSTANCE_NOT_FOUND},
        {"denied by the provider itself", 63, 0, "b", GET_INSTANCE_ACCESS_DENIED},
        {"unknown status", 99, 0, "b", GET_INSTANCE_FAILED},
        {"OK without an instance", 0, 0, "b", GET_INSTANCE_FAILED},
    };
    Provider_Handle handle(&rack_provider);
    for (const auto& row : rows)
    {
        script = Script();
        for (const char* name : {"a", "b", "c"})
            script.instances.push_back(Ref<Instance>(demo::rack(name).steal()));
        script.answers = {{OPERATION_GET_INSTANCE, row.get}, {OPERATION_ENUM_INSTANCES, row.enumerate}};
        Instance* found = reinterpret_cast<Instance*>(&script); // must not be left as it is
        EXPECT_EQ(handle.get_instance(demo::rack(row.key).ptr(), found), row.expected) << row.what;
        EXPECT_EQ(found != nullptr, row.expected == GET_INSTANCE_OK) << row.what;
        for (const Ref<Instance>& instance : script.instances)
            EXPECT_EQ(instance.count(), 1u) << row.what;
        if (row.expected == GET_INSTANCE_OK)
        {
            EXPECT_EQ(script.enumerated, 2u) << "stops at the match";
            EXPECT_NE(found, script.instances[1].ptr()) << "shared instances are copied";
            destroy(found);
        }
    }
}

TEST_F(ProviderHandleTest, GetInstanceTakesWhatNobodyShares)
{
    Instance* only = demo::rack("a").steal();
    script.answers = {{OPERATION_GET_INSTANCE, 0}};
    script.result = only;
    Instance* found = nullptr;
    Provider_Handle handle(&rack_provider);
    EXPECT_EQ(handle.get_instance(only, found), GET_INSTANCE_OK);
    EXPECT_EQ(found, only);
    destroy(found);
}

struct Receiver
{
    std::vector<std::string> results;
    std::vector<int> closing;
    size_t wanted = 1000;
};

template <class INSTANCE, class STATUS>
bool receive(INSTANCE* instance, STATUS status, void* client_data)
{
    Receiver& receiver = *static_cast<Receiver*>(client_data);
    if (instance)
        receiver.results.push_back(demo::path_of(instance));
    else
        receiver.closing.push_back(status);
    unref(instance);
    return receiver.results.size() < receiver.wanted;
}

void hold_three_links()
{
    script.instances.push_back(Ref<Instance>(demo::rack_above_rack("a", "b").steal()));
    script.instances.push_back(Ref<Instance>(demo::rack_above_rack("c", "d").steal()));
    script.instances.push_back(Ref<Instance>(demo::rack_above_rack("b", "c").steal()));
}

void expect_released()
{
    for (Ref<Instance>& instance : script.instances)
    {
        const Demo_RackAboveRack* const link = cast<Demo_RackAboveRack*>(instance.ptr());
        EXPECT_EQ(instance.count(), 1u);
        EXPECT_EQ(Atomic_get(&link->Upper->__refs) + Atomic_get(&link->Lower->__refs), 2);
    }
}

// The statuses of the fallback for associator names and references, whose codes differ only by ten.
const struct
{
    int own;       // what the provider answers itself, less 110 or 120
    int enumerate; // what its enumeration answers
    int expected;
    bool falls_back;
} kAssociationRows[] = {
    {1, 0, 0, true},
    {-1, 0, 0, true},
    {1, 70, 0, true}, // expected is filled in below: FAILED
    {1, 71, 2, true},
    {0, 0, 0, false},
    {2, 0, 2, false},
};

TEST_F(ProviderHandleTest, AssociatorNamesAndReferencesFallBackToEnumeration)
{
    Provider_Handle handle(&link_provider);
    const Ref<Demo_Rack> source = demo::rack("b");
    const Ref<Demo_RackAboveRack> model(Demo_RackAboveRack::create());
    for (const bool names : {true, false})
    {
        for (const auto& row : kAssociationRows)
        {
            script = Script();
            hold_three_links();
            const int base = names ? int(ENUM_ASSOCIATOR_NAMES_FAILED) : int(ENUM_REFERENCES_FAILED);
            script.answers = {{OPERATION_ENUM_INSTANCES, row.enumerate}};
            if (row.own >= 0)
                script.answers[names ? OPERATION_ENUM_ASSOCIATOR_NAMES : OPERATION_ENUM_REFERENCES] =
                    base + row.own;
            const int expected = row.falls_back && row.enumerate == 0 ? 0 : base + row.expected;

            Receiver receiver;
            const int status =
                names
                    ? int(handle.enum_associator_names(source.ptr(),
                                                       "",
                                                       "",
                                                       "",
                                                       receive<const Instance, Enum_Associator_Names_Status>,
                                                       &receiver))
                    : int(handle.enum_references(source.ptr(),
                                                 model.ptr(),
                                                 "",
                                                 receive<Instance, Enum_References_Status>,
                                                 &receiver));
            EXPECT_EQ(status, expected) << names << " " << row.own << " " << row.enumerate;
            if (row.falls_back)
            {
                EXPECT_EQ(receiver.results.size(), 2u);
                if (names)
                {
                    EXPECT_EQ(receiver.results,
                              std::vector<std::string>({"Demo_Rack.Name=\"a\"", "Demo_Rack.Name=\"c\""}));
                }
                EXPECT_EQ(receiver.closing, std::vector<int>({expected})) << "exactly one closing call";
            }
            expect_released();
        }
    }
}

TEST_F(ProviderHandleTest, FallbacksStopWhenNothingMoreIsWanted)
{
    Provider_Handle handle(&link_provider);
    hold_three_links();
    script.answers = {{OPERATION_ENUM_INSTANCES, 0}};
    Receiver one;
    one.wanted = 1;
    handle.enum_associator_names(
        demo::rack("b").ptr(), "", "", "", receive<const Instance, Enum_Associator_Names_Status>, &one);
    EXPECT_EQ(one.results.size(), 1u);
    EXPECT_EQ(one.closing.size(), 1u);
    EXPECT_EQ(script.enumerated, 1u);
    expect_released();

    Receiver filtered;
    handle.enum_associator_names(demo::rack("b").ptr(),
                                 "Demo_Thing",
                                 "lower",
                                 "Upper",
                                 receive<const Instance, Enum_Associator_Names_Status>,
                                 &filtered);
    EXPECT_EQ(filtered.results, std::vector<std::string>({"Demo_Rack.Name=\"a\""}));

    Receiver above; // links in which b is the upper one
    const Ref<Demo_RackAboveRack> model(Demo_RackAboveRack::create());
    handle.enum_references(
        demo::rack("b").ptr(), model.ptr(), "upper", receive<Instance, Enum_References_Status>, &above);
    EXPECT_EQ(above.results,
              std::vector<std::string>({demo::path_of(demo::rack_above_rack("b", "c").ptr())}));
}

TEST_F(ProviderHandleTest, ASourceIsOfTheEndsClass)
{
    Provider_Handle handle(&sensor_provider);
    script.instances.push_back(Ref<Instance>(demo::sensor_in_rack("r", 1).steal()));
    script.answers = {{OPERATION_ENUM_INSTANCES, 0}};
    const Enum_Associator_Names_Proc proc = receive<const Instance, Enum_Associator_Names_Status>;
    Receiver receiver;
    handle.enum_associator_names(demo::element(1).ptr(), "", "", "", proc, &receiver); // the sensor's keys
    EXPECT_TRUE(receiver.results.empty());
    handle.enum_associator_names(demo::sensor(1).ptr(), "", "", "", proc, &receiver);
    EXPECT_EQ(receiver.results, std::vector<std::string>({"Demo_Rack.Name=\"r\""}));
}

TEST_F(ProviderHandleTest, OnlyAssociationsHaveEnds)
{
    Provider_Handle handle(&rack_provider);
    const Ref<Demo_Rack> rack = demo::rack("a");
    Receiver receiver;
    EXPECT_EQ(handle.enum_associator_names(
                  rack.ptr(), "", "", "", receive<const Instance, Enum_Associator_Names_Status>, &receiver),
              ENUM_ASSOCIATOR_NAMES_FAILED);
    EXPECT_EQ(handle.enum_references(
                  rack.ptr(), rack.ptr(), "", receive<Instance, Enum_References_Status>, &receiver),
              ENUM_REFERENCES_FAILED);
    EXPECT_TRUE(receiver.closing.empty());
}
} // namespace
