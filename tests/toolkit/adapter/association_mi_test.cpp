// The association interface: which ends are found from where, under which filters, and what it costs.
#include "adapter_fixture.h"

#include <algorithm>

namespace adapter_test
{
namespace
{

using test_broker::Filters;

// Paths without namespace and class, in order: "r1 r2".
std::string shortOf(const Outcome& outcome)
{
    if (!outcome.ok())
        return outcome.texts().at(0);
    std::string result;
    const auto add = [&](const Path& path)
    {
        for (const Named& key : path.keys)
            result += (result.empty() ? "" : " ") +
                      (key.second.type == CMPI_string ? key.second.text : test_broker::textOf(key.second));
    };
    for (const Path& path : outcome.paths)
        add(path);
    for (const Inst& inst : outcome.instances)
        add(inst.path);
    return result;
}

class AssociationMi : public AdapterTest
{
};

TEST_F(AssociationMi, EndsAndReferencesAreFoundUnderAllFilters)
{
    const auto dependency = [](Ref<Instance> antecedent, Ref<Instance> dependent)
    { return Ref<Instance>(demo::dependency(antecedent.steal(), dependent.steal()).steal()); };
    script<Demo_SensorInRack>().instances = {
        sensorInRack("r1", 7), sensorInRack("r1", 8), sensorInRack("r2", 9)};
    script<Demo_RackAboveRack>().instances = {
        rackAboveRack("top", "mid"), rackAboveRack("mid", "low"), rackAboveRack("ring", "ring")};
    script<Demo_Dependency>().instances = {dependency(rack("r1"), sensor(7)),
                                           dependency(sensor(7), rack("r2"))};
    Client& links = client(sensorInRackProvider);
    Client& stack = client(rackAboveRackProvider);
    Client& dependencies = client(dependencyProvider);
    const struct
    {
        Client& provider;
        Path source;
        Filters filters;
        const char* associators;
        size_t references;
    } cases[] = {
        {links, rackPath("r1"), {}, "u32:7 u32:8", 2},
        {links, rackPath("r3"), {}, "", 0},
        {links, sensorPath(9), {}, "r2", 1},
        {links, rackPath("r1"), {"demo_sensorinrack", "demo_sensor", "RACK", "sensor"}, "u32:7 u32:8", 2},
        {links, rackPath("r1"), {"", "", "", ""}, "u32:7 u32:8", 2},
        {links, rackPath("r1"), {nullptr, "Demo_Thing", nullptr, nullptr}, "u32:7 u32:8", 2},
        {links, rackPath("r1"), {nullptr, "Demo_Rack", nullptr, nullptr}, "", 2},
        {links, rackPath("r1"), {nullptr, "Demo_Unknown", nullptr, nullptr}, "", 2},
        {links,
         rackPath("r1"),
         {"Demo_Dependency", nullptr, nullptr, nullptr},
         "",
         0},                                                                   // not this association
        {links, rackPath("r1"), {nullptr, nullptr, "Sensor", nullptr}, "", 0}, // the source has another role
        {links, rackPath("r1"), {nullptr, nullptr, nullptr, "Rack"}, "", 2},   // the result has another role
        // Both ends of one class.
        {stack, rackPath("mid"), {}, "top low", 2},
        {stack, rackPath("mid"), {nullptr, nullptr, "Upper", nullptr}, "low", 1},
        {stack, rackPath("mid"), {nullptr, nullptr, "Lower", nullptr}, "top", 1},
        {stack, rackPath("mid"), {nullptr, nullptr, nullptr, "Upper"}, "top", 2},
        {stack, rackPath("mid"), {nullptr, nullptr, "Upper", "Upper"}, "", 1},
        {stack, rackPath("ring"), {}, "ring", 1}, // an object's association with itself
        {stack, rackPath("ring"), {nullptr, nullptr, "Upper", "Lower"}, "ring", 1},
        // Ends of any class, told apart by it.
        {dependencies, sensorPath(7), {}, "r1 r2", 2},
        {dependencies, sensorPath(7), {nullptr, nullptr, "Antecedent", nullptr}, "r2", 1},
        {dependencies, rackPath("r1"), {nullptr, "Demo_Rack", nullptr, nullptr}, "", 1},
        {dependencies, rackPath("r1"), {nullptr, "Demo_Element", nullptr, nullptr}, "u32:7", 1},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(&c - cases);
        EXPECT_EQ(shortOf(c.provider.associatorNames(c.source, c.filters)), c.associators);
        EXPECT_EQ(shortOf(c.provider.associators(c.source, c.filters)), c.associators);
        const Outcome names = c.provider.referenceNames(c.source, c.filters);
        const Outcome instances = c.provider.references(c.source, c.filters);
        ASSERT_EQ(names.paths.size(), c.references) << names.message;
        ASSERT_EQ(instances.instances.size(), c.references) << instances.message;
        for (size_t i = 0; i < c.references; i++) // the same associations under the same names
            EXPECT_EQ(test_broker::textOf(names.paths[i]), test_broker::textOf(instances.instances[i].path));
    }
    EXPECT_EQ(links.referenceNames(sensorPath(9)).texts(),
              Texts{"root/demo:Demo_SensorInRack.Rack=<root/demo:Demo_Rack.Name=\"r2\">,"
                    "Sensor=<root/demo:Demo_Sensor.Id=u32:9>"});
}

TEST_F(AssociationMi, OnlyPairsOfTheSourceAreTouched)
{
    Script& racks = script<Demo_RackAboveRack>();
    racks.inMap = true;
    for (int i = 0; i < 20; i++)
        racks.instances.push_back(rackAboveRack(std::to_string(i).c_str(), std::to_string(i + 1).c_str()));
    Client& stack = client(rackAboveRackProvider);
    const auto touched = [&](const Outcome& outcome)
    {
        EXPECT_TRUE(outcome.ok());
        return racks.handed.exchange(0);
    };
    const Filters upper = {nullptr, nullptr, "Upper", nullptr};
    const Path source = rackPath("7");
    for (const auto& [filters, pairs] : {std::pair(Filters{}, 2), std::pair(upper, 1)})
    {
        EXPECT_EQ(touched(stack.associators(source, filters)), pairs);
        EXPECT_EQ(touched(stack.associatorNames(source, filters)), pairs);
        EXPECT_EQ(touched(stack.references(source, filters)), pairs);
        EXPECT_EQ(touched(stack.referenceNames(source, filters)), pairs);
    }
}

TEST_F(AssociationMi, AssociatorsAreTheInstancesThatTheAssociationCarries)
{
    Ref<Instance> link = sensorInRack("r1", 7);
    Demo_Sensor* end = cast<Demo_SensorInRack*>(link.ptr())->Sensor;
    end->Label.set("inlet");
    end->Health.set(2);
    script<Demo_SensorInRack>().instances = {link};
    Client& links = client(sensorInRackProvider);
    EXPECT_EQ(links.associators(rackPath("r1")).texts(),
              Texts{"Demo_Sensor{Id=u32:7,Label=\"inlet\",Enabled=true,Health=u16:2}"});
    EXPECT_EQ(links.associators(rackPath("r1"), {}, {{"health"}}).texts(),
              Texts{"Demo_Sensor{Id=u32:7,Health=u16:2}"});
    // NULL stays NULL, and keys that are references survive a list.
    EXPECT_EQ(links.references(rackPath("r1"), {}, {{"Slot"}}).texts(),
              Texts{"Demo_SensorInRack{Rack=<root/demo:Demo_Rack.Name=\"r1\">,"
                    "Sensor=<root/demo:Demo_Sensor.Id=u32:7>}"});
    // Nothing was kept or changed.
    EXPECT_EQ(link.count(), 2u);
    EXPECT_EQ(Atomic_get(&end->__refs), 1);
}

TEST_F(AssociationMi, SourcesThatCannotBeAnEndCostNothing)
{
    script<Demo_SensorInRack>().instances = {sensorInRack("r1", 7)};
    Client& links = client(sensorInRackProvider);
    const Path limits = classPath("Demo_Limits");
    const Path unknown = {"root/demo", "Demo_Unknown", {{"Name", Value::string("x")}}};
    for (const Path& source : {limits, unknown})
    {
        EXPECT_EQ(links.associators(source).texts(), Texts());
        EXPECT_EQ(links.associatorNames(source).texts(), Texts());
        EXPECT_EQ(links.references(source).texts(), Texts());
        EXPECT_EQ(links.referenceNames(source).texts(), Texts());
    }
    EXPECT_EQ(script<Demo_SensorInRack>().enumerations, 0);
}

TEST_F(AssociationMi, ASourceThatIsNoPathIsRefused)
{
    Client& links = client(sensorInRackProvider);
    EXPECT_EQ(links.associatorNames(classPath("Demo_Rack")).texts(),
              Texts{"4: Demo_SensorInRack: associator names: key Name is missing"});
    EXPECT_EQ(links.references({"root/demo", "Demo_Rack", {{"Nmae", Value::string("x")}}}).texts(),
              Texts{"4: Demo_SensorInRack: references: class Demo_Rack has no key Nmae"});
}

TEST_F(AssociationMi, AProvidersOwnAnswerComesFirst)
{
    const std::vector<Ref<Instance>> own = {rack("own")};
    const std::vector<Ref<Instance>> ownLinks = {sensorInRack("own", 1)};
    script<Demo_SensorInRack>().instances = {sensorInRack("r1", 7)};
    script<Demo_SensorInRack>().nativeAssociators = &own;
    script<Demo_SensorInRack>().nativeReferences = &ownLinks;
    Client& links = client(sensorInRackProvider);
    const Filters filters = {nullptr, "Demo_Rack", "Rack", "Sensor"};
    EXPECT_EQ(shortOf(links.associators(rackPath("r1"), filters)), "own");
    EXPECT_EQ(script<Demo_SensorInRack>().filters, "Demo_Rack;Rack;Sensor;");
    script<Demo_SensorInRack>().filters.clear();
    EXPECT_EQ(shortOf(links.associatorNames(rackPath("r1"), filters)), "own");
    EXPECT_EQ(script<Demo_SensorInRack>().filters, "Demo_Rack;Rack;Sensor;");
    links.referenceNames(rackPath("r1"), filters);
    EXPECT_EQ(script<Demo_SensorInRack>().filters, "Rack;");
    EXPECT_EQ(links.references(rackPath("r1")).texts(),
              Texts{"Demo_SensorInRack{Rack=<root/demo:Demo_Rack.Name=\"own\">,"
                    "Sensor=<root/demo:Demo_Sensor.Id=u32:1>}"});
    EXPECT_EQ(script<Demo_SensorInRack>().enumerations, 0);

    script<Demo_SensorInRack>().status = ENUM_ASSOCIATOR_NAMES_ACCESS_DENIED;
    EXPECT_EQ(links.associatorNames(rackPath("r1")).rc, CMPI_RC_ERR_ACCESS_DENIED);
    script<Demo_SensorInRack>().status = ENUM_REFERENCES_ACCESS_DENIED;
    EXPECT_EQ(links.references(rackPath("r1")).rc, CMPI_RC_ERR_ACCESS_DENIED);
    script<Demo_SensorInRack>().status = ENUM_ASSOCIATORS_FAILED;
    EXPECT_EQ(links.associators(rackPath("r1")).rc, CMPI_RC_ERR_FAILED);
}

TEST_F(AssociationMi, AnEnumerationThatFailsIsNoEmptyAnswer)
{
    script<Demo_SensorInRack>().instances = {sensorInRack("r1", 7)};
    Client& links = client(sensorInRackProvider);
    script<Demo_SensorInRack>().status = ENUM_INSTANCES_ACCESS_DENIED;
    EXPECT_EQ(links.associators(rackPath("r1")).rc, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(links.associatorNames(rackPath("r1")).rc, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(links.references(rackPath("r1")).rc, CMPI_RC_ERR_ACCESS_DENIED);
    EXPECT_EQ(links.referenceNames(rackPath("r1")).rc, CMPI_RC_ERR_ACCESS_DENIED);
}

TEST_F(AssociationMi, AnEndThatIsNullIsPassedOver)
{
    Ref<Instance> half = sensorInRack("r1", 7);
    unref(std::exchange(cast<Demo_SensorInRack*>(half.ptr())->Sensor, nullptr));
    script<Demo_SensorInRack>().instances = {half, sensorInRack("r1", 8)};
    Client& links = client(sensorInRackProvider);
    EXPECT_EQ(shortOf(links.associatorNames(rackPath("r1"))), "u32:8");
    EXPECT_EQ(shortOf(links.associatorNames(sensorPath(7))), "");
}

TEST_F(AssociationMi, AnEndThatCannotBeDeliveredStopsTheSearch)
{
    Ref<Instance> broken = sensorInRack("r1", 7);
    cast<Demo_SensorInRack*>(broken.ptr())->Sensor->Id.null = 1;
    script<Demo_SensorInRack>().instances = {broken, sensorInRack("r1", 8), sensorInRack("r1", 9)};
    Client& links = client(sensorInRackProvider);
    EXPECT_EQ(links.associators(rackPath("r1")).texts(),
              Texts{"1: Demo_SensorInRack: associators: key Id has no value"});
    EXPECT_EQ(script<Demo_SensorInRack>().handed, 1);
    EXPECT_EQ(links.references(rackPath("r1")).texts(),
              Texts{"1: Demo_SensorInRack: references: Sensor: key Id has no value"});
}

} // namespace
} // namespace adapter_test
