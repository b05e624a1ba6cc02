// The association interface: which ends are found from where, under which filters, and what it costs.
#include "adapter_fixture.h"

#include <algorithm>

namespace adapter_test
{
namespace
{

using test_broker::Filters;

// The keys of the paths, in order: "r1 u32:7".
std::string shortOf(const Outcome& outcome)
{
    if (!outcome.ok())
        return outcome.texts().at(0);
    std::string result;
    for (const std::string& path : outcome.paths)
        result += (result.empty() ? "" : " ") + path.substr(path.find('=') + 1);
    result.erase(std::remove(result.begin(), result.end(), '"'), result.end());
    return result;
}

class AssociationMi : public AdapterTest
{
  protected:
    // All four requests.
    std::vector<Outcome> askAll(Client& asked, const std::string& source, const Filters& filters = {})
    {
        return {asked.associators(source, filters),
                asked.associatorNames(source, filters),
                asked.references(source, filters),
                asked.referenceNames(source, filters)};
    }

    Script& links = script<Demo_SensorInRack>();
    Client& provider = client(sensorInRackProvider);
};

TEST_F(AssociationMi, EndsAndReferencesAreFoundUnderAllFilters)
{
    links.instances = shared(sensor_in_rack("r1", 7), sensor_in_rack("r1", 8), sensor_in_rack("r2", 9));
    script<Demo_RackAboveRack>().instances =
        shared(rack_above_rack("top", "mid"), rack_above_rack("mid", "low"), rack_above_rack("ring", "ring"));
    script<Demo_Dependency>().instances = shared(dependency(rack("r1").steal(), sensor(7).steal()),
                                                 dependency(sensor(7).steal(), rack("r2").steal()));
    Client& stack = client(rackAboveRackProvider);
    Client& dependencies = client(dependencyProvider);
    const std::string r1 = rackPath("r1");
    constexpr const char* kAny = nullptr;
    const struct
    {
        Client& asked;
        std::string source;
        Filters filters;
        const char* associators;
        size_t references;
    } cases[] = {
        {provider, r1, {}, "u32:7 u32:8", 2},
        {provider, rackPath("r3"), {}, "", 0},
        {provider, sensorPath(9), {}, "r2", 1},
        {provider, r1, {"demo_sensorinrack", "demo_sensor", "RACK", "sensor"}, "u32:7 u32:8", 2},
        {provider, r1, {"", "", "", ""}, "u32:7 u32:8", 2},
        {provider, r1, {kAny, "Demo_Thing", kAny, kAny}, "u32:7 u32:8", 2},
        {provider, r1, {kAny, "Demo_Rack", kAny, kAny}, "", 2},
        {provider, r1, {kAny, "Demo_Unknown", kAny, kAny}, "", 2},
        {provider, r1, {"Demo_Dependency", kAny, kAny, kAny}, "", 0}, // not this association
        {provider, r1, {kAny, kAny, "Sensor", kAny}, "", 0},          // the source has another role
        {provider, r1, {kAny, kAny, kAny, "Rack"}, "", 2},            // the result has another role
        // Both ends of one class.
        {stack, rackPath("mid"), {}, "top low", 2},
        {stack, rackPath("mid"), {kAny, kAny, "Upper", kAny}, "low", 1},
        {stack, rackPath("mid"), {kAny, kAny, "Lower", kAny}, "top", 1},
        {stack, rackPath("mid"), {kAny, kAny, kAny, "Upper"}, "top", 2},
        {stack, rackPath("mid"), {kAny, kAny, "Upper", "Upper"}, "", 1},
        {stack, rackPath("ring"), {}, "ring", 1}, // an object's association with itself
        {stack, rackPath("ring"), {kAny, kAny, "Upper", "Lower"}, "ring", 1},
        // Ends of any class, told apart by it.
        {dependencies, sensorPath(7), {}, "r1 r2", 2},
        {dependencies, sensorPath(7), {kAny, kAny, "Antecedent", kAny}, "r2", 1},
        {dependencies, r1, {kAny, "Demo_Rack", kAny, kAny}, "", 1},
        {dependencies, r1, {kAny, "Demo_Element", kAny, kAny}, "u32:7", 1},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(&c - cases);
        EXPECT_EQ(shortOf(c.asked.associatorNames(c.source, c.filters)), c.associators);
        EXPECT_EQ(shortOf(c.asked.associators(c.source, c.filters)), c.associators);
        const Outcome names = c.asked.referenceNames(c.source, c.filters);
        const Outcome instances = c.asked.references(c.source, c.filters);
        ASSERT_EQ(names.paths.size(), c.references) << names.message;
        EXPECT_EQ(names.paths, instances.paths); // the same associations under the same names
    }
    EXPECT_EQ(provider.referenceNames(sensorPath(9)).texts(),
              Texts{"root/demo:Demo_SensorInRack.Rack=<root/demo:Demo_Rack.Name=\"r2\">,"
                    "Sensor=<root/demo:Demo_Sensor.Id=u32:9>"});
}

TEST_F(AssociationMi, OnlyPairsOfTheSourceAreTouched)
{
    Script& racks = script<Demo_RackAboveRack>();
    Instance_Map<Demo_RackAboveRack> map;
    for (int i = 0; i < 20; i++)
        map.insert(rack_above_rack(std::to_string(i).c_str(), std::to_string(i + 1).c_str()).steal());
    racks.enumerate = [&](const Instance* model, const Script::Hand& hand) { handOutOf(map, model, hand); };
    Client& stack = client(rackAboveRackProvider);
    const Filters upper = {nullptr, nullptr, "Upper", nullptr};
    for (const auto& [filters, pairs] : {std::pair(Filters{}, 2), std::pair(upper, 1)})
    {
        racks.handed = 0;
        for (const Outcome& outcome : askAll(stack, rackPath("7"), filters))
            EXPECT_TRUE(outcome.ok()) << outcome.message;
        EXPECT_EQ(racks.handed, 4 * pairs);
    }
}

TEST_F(AssociationMi, AssociatorsAreTheInstancesThatTheAssociationCarries)
{
    Ref<Demo_SensorInRack> link = sensor_in_rack("r1", 7);
    Demo_Sensor* const end = link->Sensor;
    end->Label.set("inlet");
    end->Health.set(2);
    links.instances = shared(link);
    EXPECT_EQ(provider.associators(rackPath("r1")).texts(),
              Texts{"Demo_Sensor{Id=u32:7,Label=\"inlet\",Enabled=true,Health=u16:2}"});
    EXPECT_EQ(provider.associators(rackPath("r1"), {}, {{"health"}}).texts(),
              Texts{"Demo_Sensor{Id=u32:7,Health=u16:2}"});
    // NULL stays NULL, and keys that are references survive a list.
    EXPECT_EQ(provider.references(rackPath("r1"), {}, {{"Slot"}}).texts(),
              Texts{"Demo_SensorInRack{Rack=<root/demo:Demo_Rack.Name=\"r1\">,"
                    "Sensor=<root/demo:Demo_Sensor.Id=u32:7>}"});
    // Nothing was kept or changed.
    EXPECT_EQ(link.count(), 2u);
    EXPECT_EQ(Atomic_get(&end->__refs), 1);
}

TEST_F(AssociationMi, SourcesThatCannotBeAnEndCostNothing)
{
    links.instances = shared(sensor_in_rack("r1", 7));
    for (const char* source : {"root/demo:Demo_Limits", "root/demo:Demo_Unknown.Name=\"x\""})
        for (const Outcome& outcome : askAll(provider, source))
            EXPECT_EQ(outcome.texts(), Texts());
    EXPECT_EQ(provider.associatorNames("root/demo:Demo_Rack").texts(),
              Texts{"4: Demo_SensorInRack: associator names: key Name is missing"});
    EXPECT_EQ(provider.references("root/demo:Demo_Rack.Nmae=\"x\"").texts(),
              Texts{"4: Demo_SensorInRack: references: class Demo_Rack has no key Nmae"});
    EXPECT_EQ(links.enumerations, 0);
}

TEST_F(AssociationMi, AProvidersOwnAnswerComesFirst)
{
    const Instances own = shared(rack("own"));
    const Instances ownLinks = shared(sensor_in_rack("own", 1));
    links.instances = shared(sensor_in_rack("r1", 7));
    links.nativeAssociators = &own;
    links.nativeReferences = &ownLinks;
    const Filters filters = {nullptr, "Demo_Rack", "Rack", "Sensor"};
    EXPECT_EQ(shortOf(provider.associators(rackPath("r1"), filters)), "own");
    EXPECT_EQ(std::exchange(links.filters, ""), "Demo_Rack;Rack;Sensor;");
    EXPECT_EQ(shortOf(provider.associatorNames(rackPath("r1"), filters)), "own");
    EXPECT_EQ(links.filters, "Demo_Rack;Rack;Sensor;");
    provider.referenceNames(rackPath("r1"), filters);
    EXPECT_EQ(links.filters, "Rack;");
    EXPECT_EQ(provider.references(rackPath("r1")).texts(),
              Texts{"Demo_SensorInRack{Rack=<root/demo:Demo_Rack.Name=\"own\">,"
                    "Sensor=<root/demo:Demo_Sensor.Id=u32:1>}"});
    EXPECT_EQ(links.enumerations, 0);

    links.answers = {{OPERATION_ENUM_ASSOCIATOR_NAMES, ENUM_ASSOCIATOR_NAMES_ACCESS_DENIED},
                     {OPERATION_ENUM_REFERENCES, ENUM_REFERENCES_ACCESS_DENIED},
                     {OPERATION_ENUM_ASSOCIATORS, ENUM_ASSOCIATORS_ACCESS_DENIED}};
    for (const Outcome& outcome : askAll(provider, rackPath("r1")))
        EXPECT_EQ(outcome.rc, CMPI_RC_ERR_ACCESS_DENIED);
    // Nor is an enumeration that fails an empty answer.
    links.reset();
    links.status = ENUM_INSTANCES_ACCESS_DENIED;
    for (const Outcome& outcome : askAll(provider, rackPath("r1")))
        EXPECT_EQ(outcome.rc, CMPI_RC_ERR_ACCESS_DENIED);
}

TEST_F(AssociationMi, EndsThatAreNullArePassedOverAndThoseWithoutKeysStopTheSearch)
{
    Ref<Demo_SensorInRack> half = sensor_in_rack("r1", 7);
    unref(std::exchange(half->Sensor, nullptr));
    links.instances = shared(half, sensor_in_rack("r1", 8));
    EXPECT_EQ(shortOf(provider.associatorNames(rackPath("r1"))), "u32:8");
    EXPECT_EQ(shortOf(provider.associatorNames(sensorPath(7))), "");

    Ref<Demo_SensorInRack> broken = sensor_in_rack("r1", 7);
    broken->Sensor->Id.null = 1;
    links.instances = shared(broken, sensor_in_rack("r1", 8), sensor_in_rack("r1", 9));
    links.handed = 0;
    EXPECT_EQ(provider.associators(rackPath("r1")).texts(),
              Texts{"1: Demo_SensorInRack: associators: key Id has no value"});
    EXPECT_EQ(links.handed, 1);
    EXPECT_EQ(provider.references(rackPath("r1")).texts(),
              Texts{"1: Demo_SensorInRack: references: Sensor: key Id has no value"});
}

} // namespace
} // namespace adapter_test
