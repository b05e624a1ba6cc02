// Instance maps: models of related classes, parallel readers, and who owns what.
#include "demo_objects.h"
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace cimple;

namespace
{
const size_t kNone = size_t(-1);

// Takes models of any class.
template <class CLASS>
struct Open_Map : Instance_Map<CLASS>
{
    using Instance_Map_Base::_find;
};

TEST(InstanceMapTest, FindsByModelsOfRelatedClasses)
{
    Open_Map<Demo_Sensor> map;
    map.insert(demo::sensor(1).steal());
    map.insert(demo::sensor(2).steal());
    EXPECT_EQ(map._find(demo::element(2).ptr()), 1u);
    EXPECT_EQ(map._find(demo::element(3).ptr()), kNone);
    EXPECT_EQ(map._find(demo::rack("1").ptr()), kNone);
    EXPECT_EQ(map._find(Ref<Demo_Thing>(Demo_Thing::create()).ptr()), kNone)
        << "a model without keys names nothing";

    Open_Map<Demo_SensorInRack> links;
    links.insert(demo::sensor_in_rack("r", 1).steal());
    Ref<Demo_SensorInRack> model = demo::sensor_in_rack("r", 1);
    unref(model->Sensor);
    model->Sensor = reinterpret_cast<Demo_Sensor*>(demo::element(1).steal()); // as a request may name the end
    EXPECT_EQ(links._find(model.ptr()), 0u);
}

TEST(InstanceMapTest, OwnsWhatItHolds)
{
    Instance_Map<Demo_Sensor> map;
    Ref<Demo_Sensor> sensor = demo::sensor(1);
    ref(sensor.ptr());
    ASSERT_EQ(map.insert(sensor.ptr()), 0u);
    const Ref<Demo_Sensor> duplicate = demo::sensor(1);
    EXPECT_EQ(map.insert(const_cast<Demo_Sensor*>(duplicate.ptr())), kNone);
    EXPECT_EQ(duplicate.count(), 1u) << "still the caller's";
    EXPECT_TRUE(map.lookup(duplicate.ptr()) == sensor.ptr() && map[0] == sensor.ptr() && map.size() == 1);

    map.remove(7); // out of range
    map.remove(0);
    EXPECT_EQ(sensor.count(), 2u) << "taken out, not released";
    unref(sensor.ptr());
    EXPECT_EQ(map.find(duplicate.ptr()), kNone);

    for (const bool clear : {true, false})
    {
        ref(sensor.ptr());
        map.insert(sensor.ptr());
        if (clear)
            map.clear();
        else
            EXPECT_EQ(map.delete_instance(duplicate.ptr()), DELETE_INSTANCE_OK);
        EXPECT_EQ(sensor.count(), 1u) << "alive in other hands";
        EXPECT_EQ(map.size(), 0u);
    }
    EXPECT_EQ(map.delete_instance(duplicate.ptr()), DELETE_INSTANCE_NOT_FOUND);
}

TEST(InstanceMapTest, GetsAndCreatesCopies)
{
    Instance_Map<Demo_Sensor> map;
    Ref<Demo_Sensor> sensor = demo::sensor(1);
    sensor->Label.set("one");
    EXPECT_EQ(map.create_instance(sensor.ptr()), CREATE_INSTANCE_OK);
    EXPECT_EQ(map.create_instance(sensor.ptr()), CREATE_INSTANCE_DUPLICATE);
    EXPECT_EQ(sensor.count(), 1u);
    EXPECT_NE(map[0], sensor.ptr());

    Demo_Sensor* found = nullptr;
    EXPECT_EQ(map.get_instance(demo::sensor(2).ptr(), found), GET_INSTANCE_NOT_FOUND);
    EXPECT_EQ(found, nullptr);
    ASSERT_EQ(map.get_instance(demo::sensor(1).ptr(), found), GET_INSTANCE_OK);
    EXPECT_TRUE(found != map[0] && identical(found, sensor.ptr()));
    found->Label.set("changed");
    EXPECT_EQ(map[0]->Label.value, "one");
    Demo_Sensor::destroy(found);
}

struct Received
{
    size_t wanted = kNone;
    std::vector<Ref<Instance>> instances;
};

bool receive(Instance* instance, Enum_Instances_Status status, void* client_data)
{
    Received& received = *static_cast<Received*>(client_data);
    EXPECT_EQ(status, ENUM_INSTANCES_OK);
    EXPECT_NE(instance, nullptr) << "the closing call is not the map's";
    received.instances.push_back(Ref<Instance>(instance));
    return received.instances.size() < received.wanted;
}

TEST(InstanceMapTest, EnumeratesSharedInstances)
{
    Instance_Map<Demo_Sensor> map;
    for (uint32 id = 0; id < 5; id++)
        map.insert(demo::sensor(id).steal());
    Received all;
    Received two;
    two.wanted = 2;
    for (Received* received : {&two, &all})
    {
        Enum_Instances_Handler<Demo_Sensor> handler(receive, received);
        EXPECT_EQ(map.enum_instances(nullptr, &handler), ENUM_INSTANCES_OK);
    }
    EXPECT_EQ(two.instances.size(), 2u);
    two.instances.clear();
    ASSERT_EQ(all.instances.size(), 5u);
    for (size_t i = 0; i < 5; i++)
    {
        EXPECT_EQ(all.instances[i].ptr(), map[i]) << "in order and not copied";
        EXPECT_EQ(all.instances[i].count(), 2u);
    }
    map.clear();
    EXPECT_EQ(all.instances[4].count(), 1u);
    EXPECT_EQ(demo::path_of(all.instances[4].ptr()), "Demo_Sensor.Id=4");
}

TEST(InstanceMapTest, ModifyLeavesHandedOutInstancesAlone)
{
    Instance_Map<Demo_Sensor> map;
    map.insert(demo::sensor(1).steal());
    Received held;
    Enum_Instances_Handler<Demo_Sensor> handler(receive, &held);
    map.enum_instances(nullptr, &handler);

    Ref<Demo_Sensor> request = demo::sensor(1);
    request->Label.set("new");
    request->Health.set(3);
    Ref<Demo_Sensor> model(Demo_Sensor::create());
    nullify_properties(model.ptr());
    model->Label.null = 0;
    EXPECT_EQ(map.modify_instance(model.ptr(), request.ptr()), MODIFY_INSTANCE_OK);
    EXPECT_TRUE(map[0]->Label.value == "new" && map[0]->Health.null) << "only what the model has";
    EXPECT_EQ(cast<Demo_Sensor*>(held.instances[0].ptr())->Label.value, "unnamed");
    EXPECT_EQ(map.find(request.ptr()), 0u);
    EXPECT_EQ(map.modify_instance(model.ptr(), demo::sensor(2).ptr()), MODIFY_INSTANCE_NOT_FOUND);
}

TEST(InstanceMapTest, ServesReadersInParallel)
{
    Instance_Map<Demo_SensorInRack> map;
    for (uint32 i = 0; i < 50; i++)
        map.insert(demo::sensor_in_rack("shared", i).steal());
    std::vector<std::thread> readers;
    for (int t = 0; t < 4; t++)
    {
        readers.emplace_back(
            [&map]
            {
                for (uint32 i = 0; i < 50; i++)
                {
                    const Ref<Demo_SensorInRack> model = demo::sensor_in_rack("shared", i);
                    Demo_SensorInRack* found = nullptr;
                    ASSERT_EQ(map.get_instance(model.ptr(), found), GET_INSTANCE_OK);
                    unref(found);
                    Received received;
                    Enum_Instances_Handler<Demo_SensorInRack> handler(receive, &received);
                    map.enum_instances(i % 2 == 0 ? nullptr : model.ptr(), &handler); // by its rack, or all
                    ASSERT_EQ(received.instances.size(), 50u);
                }
            });
    }
    for (std::thread& reader : readers)
        reader.join();
}
} // namespace
