// Provider handles on providers of every kind: answers for what a provider leaves out, and closing calls.
#include "Scripted.h"
#include <cimple/Provider_Handle.h>
#include <gtest/gtest.h>

using namespace cimple;
using demo::Script;
using demo::Scripted;

namespace
{
Registration* head = nullptr;
Registration rack_provider("Demo",
                           "Demo_Rack_Provider",
                           Instance_Provider_Proc_T<Scripted<Demo_Rack>>::proc,
                           &Demo_Rack::static_meta_class,
                           head);
Registration link_provider("Demo",
                           "Demo_RackAboveRack_Provider",
                           Association_Provider_Proc_T<Scripted<Demo_RackAboveRack>>::proc,
                           &Demo_RackAboveRack::static_meta_class,
                           head);
Registration alert_provider("Demo",
                            "Demo_SensorAlert_Provider",
                            Indication_Provider_Proc_T<Scripted<Demo_SensorAlert>>::proc,
                            &Demo_SensorAlert::static_meta_class,
                            head);

class ProviderHandleTest : public testing::Test
{
  protected:
    ProviderHandleTest() { demo::resetScripts(); }
    ~ProviderHandleTest() override { demo::resetScripts(); }
};

TEST_F(ProviderHandleTest, TellsWhatItIs)
{
    const Provider_Handle handle(&rack_provider);
    const Meta_Class* mc = nullptr;
    EXPECT_EQ(handle.get_meta_class(mc), GET_META_CLASS_OK);
    EXPECT_EQ(mc, &Demo_Rack::static_meta_class);
    const Meta_Repository* repository = nullptr;
    EXPECT_EQ(handle.get_repository(repository), GET_REPOSITORY_OK);
    EXPECT_EQ(repository, mc->meta_repository);
    EXPECT_EQ(head, &alert_provider) << "registrations go to the front";
    EXPECT_EQ(head->next, &link_provider);

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
        {"enumeration fails", 61, 70, "z", GET_INSTANCE_NOT_FOUND},
        {"enumeration fails after the match", 61, 70, "b", GET_INSTANCE_NOT_FOUND},
        {"enumeration denied", 61, 71, "b", GET_INSTANCE_NOT_FOUND},
        {"enumeration missing", 61, -1, "z", GET_INSTANCE_NOT_FOUND},
        {"not found by the provider itself", 60, 0, "b", GET_INSTANCE_NOT_FOUND},
        {"unknown status", 99, 0, "b", GET_INSTANCE_FAILED},
        {"OK without an instance", 0, 0, "z", GET_INSTANCE_FAILED},
    };
    Provider_Handle handle(&rack_provider);
    Script& script = demo::script<Demo_Rack>();
    for (const auto& row : rows)
    {
        script.reset();
        script.instances = demo::shared(demo::rack("a"), demo::rack("b"), demo::rack("c"));
        script.answers = {{OPERATION_GET_INSTANCE, row.get}, {OPERATION_ENUM_INSTANCES, row.enumerate}};
        Instance* found = reinterpret_cast<Instance*>(&script); // must not be left as it is
        EXPECT_EQ(handle.get_instance(demo::rack(row.key).ptr(), found), row.expected) << row.what;
        EXPECT_EQ(found != nullptr, row.expected == GET_INSTANCE_OK) << row.what;
        for (const Ref<Instance>& instance : script.instances)
            EXPECT_EQ(instance.count(), 1u) << row.what;
        if (row.expected == GET_INSTANCE_OK)
        {
            EXPECT_EQ(script.handed, 2) << "stops at the match";
            EXPECT_NE(found, script.instances[1].ptr()) << "shared instances are copied";
            destroy(found);
        }
    }
}

struct Receiver
{
    int results = 0;
    std::vector<int> closing;
    int wanted = 1000;
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
    return receiver.results < receiver.wanted;
}

// Statuses of the three association requests differ by tens; those of this table are less the FAILED of each.
TEST_F(ProviderHandleTest, EveryEnumerationEndsWithOneClosingCall)
{
    Provider_Handle handle(&link_provider);
    const Ref<Demo_Rack> source = demo::rack("b");
    const Ref<Demo_RackAboveRack> model(Demo_RackAboveRack::create());
    Script& script = demo::script<Demo_RackAboveRack>();
    const auto names = [&](Receiver& to)
    {
        return int(handle.enum_associator_names(
            source.ptr(), "", "", "", receive<const Instance, Enum_Associator_Names_Status>, &to));
    };
    const struct
    {
        int own;
        int enumerate;
        int expected;
        int results;
    } rows[] = {
        {2, 0, 2, 0},                     // denied by the provider itself
        {1, ENUM_INSTANCES_FAILED, 0, 2}, // left to the caller
        {1, ENUM_INSTANCES_ACCESS_DENIED, 2, 2},
    };
    for (const auto& row : rows)
    {
        script.instances = demo::shared(demo::rack_above_rack("a", "b"),
                                        demo::rack_above_rack("c", "d"),
                                        demo::rack_above_rack("b", "c"));
        script.answers = {{OPERATION_ENUM_INSTANCES, row.enumerate},
                          {OPERATION_ENUM_ASSOCIATOR_NAMES, ENUM_ASSOCIATOR_NAMES_FAILED + row.own},
                          {OPERATION_ENUM_REFERENCES, ENUM_REFERENCES_FAILED + row.own},
                          {OPERATION_ENUM_ASSOCIATORS, ENUM_ASSOCIATORS_FAILED + row.own}};
        Receiver received[4];
        const int statuses[] = {
            names(received[0]) - ENUM_ASSOCIATOR_NAMES_FAILED,
            handle.enum_references(
                source.ptr(), model.ptr(), "", receive<Instance, Enum_References_Status>, &received[1]) -
                ENUM_REFERENCES_FAILED,
            handle.enum_associators(
                source.ptr(), "", "", "", receive<const Instance, Enum_Associators_Status>, &received[2]) -
                ENUM_ASSOCIATORS_FAILED,
            handle.enum_instances(model.ptr(), receive<Instance, Enum_Instances_Status>, &received[3])};
        // Associators are looked for by the caller when the provider does not.
        const int expected[] = {row.expected, row.expected, row.own, row.enumerate};
        const int failed[] = {
            ENUM_ASSOCIATOR_NAMES_FAILED, ENUM_REFERENCES_FAILED, ENUM_ASSOCIATORS_FAILED, 0};
        for (int i = 0; i < 4; i++)
        {
            EXPECT_EQ(statuses[i], expected[i]) << i;
            const bool open = i == 2 && row.own == 1;
            EXPECT_EQ(received[i].closing, std::vector<int>(open ? 0 : 1, failed[i] + expected[i])) << i;
            EXPECT_EQ(received[i].results, i < 2 ? row.results : i == 2 ? 0 : 3) << i;
        }
        for (Ref<Instance>& instance : script.instances)
        {
            const Demo_RackAboveRack* const link = cast<Demo_RackAboveRack*>(instance.ptr());
            EXPECT_EQ(instance.count(), 1u);
            EXPECT_EQ(Atomic_get(&link->Upper->__refs) + Atomic_get(&link->Lower->__refs), 2);
        }
    }
    Receiver one;
    one.wanted = 1;
    script.handed = 0;
    names(one);
    EXPECT_EQ(one.closing.size(), 1u);
    EXPECT_EQ(script.handed, 1) << "stops when nothing more is wanted";
}

TEST_F(ProviderHandleTest, AHandlerOfIndicationsSaysThatItIsGone)
{
    Provider_Handle handle(&alert_provider);
    demo::script<Demo_SensorAlert>().answers = {{OPERATION_ENABLE_INDICATIONS, -1}};
    int calls = 0;
    const auto count = [](Instance* indication, void* client_data)
    {
        EXPECT_EQ(indication, nullptr);
        return ++*static_cast<int*>(client_data) == 0;
    };
    EXPECT_EQ(handle.enable_indications(count, &calls), ENABLE_INDICATIONS_FAILED);
    EXPECT_EQ(calls, 1);
}

TEST_F(ProviderHandleTest, OnlyAssociationsHaveEnds)
{
    Provider_Handle handle(&rack_provider);
    const Ref<Demo_Rack> rack = demo::rack("a");
    EXPECT_EQ(handle.enum_associator_names(rack.ptr(), "", "", "", nullptr, nullptr),
              ENUM_ASSOCIATOR_NAMES_FAILED);
    EXPECT_EQ(handle.enum_references(rack.ptr(), rack.ptr(), "", nullptr, nullptr), ENUM_REFERENCES_FAILED);
}
} // namespace
