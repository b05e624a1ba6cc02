// Maps under random changes: look-ups against a linear search, requests for associations that a map answers
// from its index of ends against a look at every instance, and which instances they touch.
#include "Scripted.h"
#include <cimple/Provider_Handle.h>
#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace cimple;

namespace
{
const size_t kNone = size_t(-1);
typedef std::vector<const Instance*> Found;
typedef Instance_Map<Demo_Dependency> Map;

Registration* registrations = nullptr;
Registration registration("Test",
                          "Demo_Dependency_Provider",
                          Association_Provider_Proc_T<demo::Scripted<Demo_Dependency>>::proc,
                          &Demo_Dependency::static_meta_class,
                          registrations);

template <class INSTANCE, class STATUS>
bool keep(INSTANCE* instance, STATUS, void* client_data)
{
    if (instance)
        static_cast<Found*>(client_data)->push_back(instance);
    unref(instance);
    return true;
}

Found associators(const Instance* source, const char* role, const char* result_role)
{
    Found found;
    Provider_Handle handle(&registration);
    EXPECT_EQ(handle.enum_associator_names(
                  source, "", role, result_role, keep<const Instance, Enum_Associator_Names_Status>, &found),
              ENUM_ASSOCIATOR_NAMES_OK);
    return found;
}

Found references(const Instance* source, const char* role)
{
    Found found;
    Provider_Handle handle(&registration);
    const Ref<Demo_Dependency> model(Demo_Dependency::create());
    EXPECT_EQ(
        handle.enum_references(source, model.ptr(), role, keep<Instance, Enum_References_Status>, &found),
        ENUM_REFERENCES_OK);
    return found;
}

// Of one of several classes and few different keys. Elements and sensors have keys of one name, so that
// either may stand for the other; the empty set of keys of a Demo_Limits is part of every other.
Instance* random_end(std::mt19937& random, bool with_keyless)
{
    const uint32 n = static_cast<uint32>(random() % 12);
    switch (random() % (with_keyless ? 5 : 4))
    {
    case 0:
        return demo::rack(std::to_string(n).c_str()).steal();
    case 1:
        return demo::sensor(n).steal();
    case 2:
        return demo::element(n).steal();
    case 3:
        return nullptr;
    default:
        return reinterpret_cast<Instance*>(Demo_Limits::create());
    }
}

Ref<Demo_Dependency> random_link(std::mt19937& random, bool with_keyless)
{
    Instance* const antecedent = random_end(random, with_keyless);
    const bool itself = antecedent && random() % 8 == 0; // one object in both roles
    if (itself)
        ref(antecedent);
    return demo::dependency(antecedent, itself ? antecedent : random_end(random, with_keyless));
}

size_t linear_find(const Map& map, const Instance* model)
{
    size_t pos = 0;
    while (pos < map.size() && !key_eq(map[pos], model))
        pos++;
    return pos < map.size() ? pos : kNone;
}

// The same on the map and on the list of what should be in it.
void change(Map& map, Found& content, std::mt19937& random, Ref<Demo_Dependency> link)
{
    const size_t what = content.empty() ? 0 : random() % 1000;
    if (what < 620)
    {
        const size_t expected = linear_find(map, link.ptr()) == kNone ? content.size() : kNone;
        ASSERT_EQ(map.insert(link.ptr()), expected);
        if (expected != kNone)
            content.push_back(link.steal());
    }
    else if (what < 900)
    {
        // Often the first, so that most of the index's numbers are gone at times.
        const size_t pos = what < 750 ? 0 : random() % content.size();
        Instance* const removed = map[pos];
        map.remove(pos);
        unref(removed);
        content.erase(content.begin() + static_cast<std::ptrdiff_t>(pos));
    }
    else if (what < 998)
    {
        const size_t pos = random() % content.size();
        const Ref<Demo_Dependency> changed(map[pos]->clone());
        EXPECT_EQ(map.modify_instance(changed.ptr(), changed.ptr()), MODIFY_INSTANCE_OK);
        content[pos] = map[pos];
    }
    else
    {
        map.clear();
        content.clear();
    }
}

TEST(MapIndexTest, AnswersAsALookAtEveryInstanceDoes)
{
    const char* const roles[] = {"", "Antecedent", "dependent", "Neither"};
    for (const bool with_keyless : {false, true})
    {
        std::mt19937 random(with_keyless ? 3 : 4);
        Map map;
        Found content;
        bool indexed = true;
        demo::Script& script = demo::script<Demo_Dependency>();
        script.reset();
        script.keepModels = false;
        script.enumerate = [&](const Instance* model, const demo::Script::Hand& hand)
        { demo::handOutOf(map, indexed ? model : nullptr, hand); };
        size_t found = 0;
        for (int step = 0; step < 4000; step++)
        {
            const Ref<Demo_Dependency> model = random_link(random, with_keyless);
            const size_t pos = linear_find(map, model.ptr());
            ASSERT_EQ(map.find(model.ptr()), pos) << step << " " << demo::text_of(model.ptr());
            ASSERT_EQ(map.lookup(model.ptr()), pos == kNone ? nullptr : map[pos]) << step;
            ASSERT_NO_FATAL_FAILURE(
                change(map, content, random, random() % 2 ? model : random_link(random, with_keyless)));
            ASSERT_EQ(map.size(), content.size());
            for (size_t i = 0; i < content.size(); i++)
                ASSERT_EQ(map[i], content[i]) << step;

            const Ref<Instance> source(random_end(random, false));
            if (!source)
                continue;
            const char* const role = roles[random() % 4];
            const char* const result_role = roles[random() % 4];
            indexed = false;
            const Found expected_associators = associators(source.ptr(), role, result_role);
            const Found expected_references = references(source.ptr(), role);
            indexed = true;
            ASSERT_EQ(associators(source.ptr(), role, result_role), expected_associators) << step;
            script.handed = 0;
            ASSERT_EQ(references(source.ptr(), role), expected_references)
                << step << " " << demo::path_of(source.ptr()) << " " << role;
            if (!with_keyless && *role != 'N')
                ASSERT_EQ(size_t(script.handed), expected_references.size()) << "only what is returned";
            found += expected_references.size();
        }
        EXPECT_GT(found, 300u) << "the comparisons are about something";
        script.reset();
    }
}

TEST(MapIndexTest, AModelAsksForLessOnlyByItsReferences)
{
    Instance_Map<Demo_SensorInRack> map;
    for (uint32 id = 0; id < 6; id++)
        map.insert(demo::sensor_in_rack(id < 3 ? "r1" : "r2", id).steal());
    Ref<Demo_SensorInRack> plain = demo::sensor_in_rack("r1", 0);
    unref(std::exchange(plain->Rack, nullptr));
    unref(std::exchange(plain->Sensor, nullptr));
    const auto positions = [&map](const Ref<Demo_SensorInRack>& model)
    {
        std::string text;
        const auto add = [&](Instance* instance)
        {
            text += std::to_string(map.find(static_cast<const Demo_SensorInRack*>(instance)));
            unref(instance);
            return true;
        };
        demo::handOutOf(map, model.ptr(), add);
        return text;
    };
    EXPECT_EQ(positions(plain), "012345");
    Ref<Demo_SensorInRack> either = demo::sensor_in_rack("r2", 1);
    EXPECT_EQ(positions(either), "1345") << "in the order of the map";
    unref(std::exchange(either->Sensor, nullptr));
    EXPECT_EQ(positions(either), "345");
    either->Rack->Name.set("r3");
    EXPECT_EQ(positions(either), "");

    // Instances of classes that have no keys to hash and no index of ends are all handed out.
    Instance_Map<Demo_Sensor> sensors;
    Ref<Demo_Sensor> sensor = demo::sensor(1);
    sensors.insert(demo::sensor(2).steal());
    sensor->Limits = Demo_Limits::create();
    size_t found = 0;
    const auto count = [&](Instance* instance)
    {
        unref(instance);
        return ++found != 0;
    };
    demo::handOutOf(sensors, sensor.ptr(), count);
    EXPECT_EQ(found, 1u);
}
} // namespace
