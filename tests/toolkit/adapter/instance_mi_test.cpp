// The instance interface: what reaches the provider, what reaches the client, and every way to fail.
#include "adapter_fixture.h"

#include <stdexcept>

namespace adapter_test
{
namespace
{

class InstanceMi : public AdapterTest
{
};

TEST_F(InstanceMi, EnumerationDeliversPathsAndInstancesOfTheirOwnClass)
{
    script<Demo_Element>().instances = {sensor(7, "inlet"), sensor(8)};
    Client& elements = client(elementProvider);

    EXPECT_EQ(elements.enumerateInstances(classPath("demo_element")).texts(),
              Texts({"Demo_Sensor{Id=u32:7,Label=\"inlet\",Enabled=true}",
                     "Demo_Sensor{Id=u32:8,Label=\"unnamed\",Enabled=true}"}));
    EXPECT_EQ(elements.enumerateInstanceNames(classPath("Demo_Element")).texts(),
              Texts({"root/demo:Demo_Sensor.Id=u32:7", "root/demo:Demo_Sensor.Id=u32:8"}));

    const Outcome outcome = elements.enumerateInstances(classPath("Demo_Element"));
    ASSERT_EQ(outcome.instances.size(), 2u);
    EXPECT_EQ(textOf(outcome.instances[0].path), "root/demo:Demo_Sensor.Id=u32:7");
}

TEST_F(InstanceMi, EnumeratedInstancesStayTheProvidersAndUnchanged)
{
    script<Demo_Sensor>().instances = {sensor(7), sensor(8)};
    const std::string before = demo::text_of(script<Demo_Sensor>().instances[0].ptr());
    Client& sensors = client(sensorProvider);
    sensors.enumerateInstances(classPath("Demo_Sensor"), {{"Label"}});
    sensors.enumerateInstanceNames(classPath("Demo_Sensor"));
    broker.refuseAfter(1);
    sensors.enumerateInstances(classPath("Demo_Sensor"));
    for (const Ref<Instance>& instance : script<Demo_Sensor>().instances)
        EXPECT_EQ(instance.count(), 1u);
    EXPECT_EQ(demo::text_of(script<Demo_Sensor>().instances[0].ptr()), before);
}

// Otherwise a server keeps pointers, perhaps.
TEST_F(InstanceMi, ResultsAreKeptUnlessTheBrokerCopiesThem)
{
    constexpr size_t kCount = 100;
    constexpr size_t kObjectsOfOne = 10; // more than an instance needs with its path, and the request
    for (unsigned id = 0; id < kCount; id++)
        script<Demo_Sensor>().instances.push_back(sensor(id, "inlet"));
    Client& sensors = client(sensorProvider);

    const Outcome kept = sensors.enumerateInstances(classPath("Demo_Sensor"));
    EXPECT_GE(kept.mostObjects, 2 * kCount);
    broker.copyResults();
    const Outcome copied = sensors.enumerateInstances(classPath("Demo_Sensor"));
    EXPECT_LE(copied.mostObjects, kObjectsOfOne);
    EXPECT_EQ(copied.texts(), kept.texts());
    EXPECT_EQ(sensors.enumerateInstanceNames(classPath("Demo_Sensor")).paths.size(), kCount);
}

TEST_F(InstanceMi, EnumerationIsLimitedToTheClassAskedFor)
{
    script<Demo_Element>().instances = {sensor(7)};
    script<Demo_Element>().instances.emplace_back(demo::element(1).steal());
    Client& elements = client(elementProvider);

    const struct
    {
        const char* className;
        size_t count;
        CMPIrc rc;
    } cases[] = {
        {"Demo_Element", 2, CMPI_RC_OK},
        {"Demo_Thing", 2, CMPI_RC_OK},               // a superclass
        {"DEMO_SENSOR", 1, CMPI_RC_OK},              // a subclass
        {"Demo_Rack", 0, CMPI_RC_ERR_INVALID_CLASS}, // known, but not served here
        {"Demo_Unknown", 0, CMPI_RC_ERR_INVALID_CLASS},
    };
    for (const auto& c : cases)
    {
        const Outcome outcome = elements.enumerateInstanceNames(classPath(c.className));
        EXPECT_EQ(outcome.rc, c.rc) << c.className;
        EXPECT_EQ(outcome.paths.size(), c.count) << c.className;
    }
    EXPECT_EQ(elements.enumerateInstances(classPath("Demo_Unknown")).message,
              "Demo_Element: enumerate instances: class Demo_Unknown is unknown here");
}

TEST_F(InstanceMi, PropertyListsOmitUnlistedPropertiesButNeverKeys)
{
    script<Demo_Sensor>().instances = {sensor(7, "inlet")};
    Client& sensors = client(sensorProvider);
    const struct
    {
        Properties properties;
        const char* expected;
    } cases[] = {
        {{}, "Demo_Sensor{Id=u32:7,Label=\"inlet\",Enabled=true}"},
        {{{}}, "Demo_Sensor{Id=u32:7}"},
        {{{"LABEL"}}, "Demo_Sensor{Id=u32:7,Label=\"inlet\"}"},
        {{{"Label", "Enabled", "Health", "NoSuchProperty"}},
         "Demo_Sensor{Id=u32:7,Label=\"inlet\",Enabled=true}"}, // Health is NULL
        {{{"Reset"}}, "Demo_Sensor{Id=u32:7}"},                 // a method
    };
    for (const auto& c : cases)
    {
        EXPECT_EQ(sensors.enumerateInstances(classPath("Demo_Sensor"), c.properties).texts(),
                  Texts{c.expected});
        EXPECT_EQ(sensors.getInstance(sensorPath(7), c.properties).texts(), Texts{c.expected});
    }
}

TEST_F(InstanceMi, ModelsTellTheProviderWhatIsAskedFor)
{
    script<Demo_Rack>().instances = {rack("r1")};
    script<Demo_Element>().instances = {sensor(7)};
    Client& racks = client(rackProvider);
    Client& elements = client(elementProvider);
    const Path element = {"root/demo", "Demo_Element", {{"Id", Value::integer(CMPI_uint32, 7)}}};

    const auto modelOf = [](Outcome outcome, Script& of)
    {
        EXPECT_TRUE(outcome.ok()) << outcome.message;
        return of.model;
    };
    Script& of = script<Demo_Element>();
    // Keys of a class path do not count; without a list nothing but keys is marked in an enumeration.
    const std::string none = modelOf(elements.enumerateInstances(element), of);
    EXPECT_NE(none.find("Id = NULL"), std::string::npos) << none;
    EXPECT_NE(none.find("Label = NULL"), std::string::npos) << none;
    const std::string listed = modelOf(elements.enumerateInstances(element, {{"Label"}}), of);
    EXPECT_NE(listed.find("Label = \"\""), std::string::npos) << listed;
    const std::string all = modelOf(elements.getInstance(element), of);
    EXPECT_NE(all.find("Id = 7"), std::string::npos) << all;
    EXPECT_NE(all.find("Label = \"\""), std::string::npos) << all;
    const std::string keys = modelOf(elements.getInstance(element, Properties(std::in_place)), of);
    EXPECT_NE(keys.find("Id = 7"), std::string::npos) << keys;
    EXPECT_NE(keys.find("Label = NULL"), std::string::npos) << keys;
    EXPECT_EQ(of.modelNameSpace, "root/demo");

    // A request on a superclass must not give the provider a smaller object than its own class.
    racks.enumerateInstances(classPath("Demo_Thing"));
    EXPECT_NE(script<Demo_Rack>().model.find("Demo_Rack"), std::string::npos);
}

TEST_F(InstanceMi, GetInstanceWantsExactlyTheKeysOfTheClass)
{
    script<Demo_Element>().instances = {sensor(7)};
    Client& elements = client(elementProvider);
    const Value seven = Value::integer(CMPI_uint32, 7);
    const struct
    {
        std::vector<Named> keys;
        const char* text;
    } cases[] = {
        {{{"ID", seven}}, ""},
        {{{"Id", Value::integer(CMPI_sint64, 7)}}, ""},
        {{{"Id", Value::integer(CMPI_uint32, 9)}}, "6: Demo_Element: get instance failed (status 60)"},
        {{}, "4: Demo_Element: get instance: key Id is missing"},
        {{{"Id", seven}, {"Name", seven}},
         "4: Demo_Element: get instance: class Demo_Element has no key Name"},
        {{{"Id", seven}, {"Label", Value::string("x")}},
         "4: Demo_Element: get instance: class Demo_Element has no key Label"},
        {{{"Id", Value::nullOf(CMPI_uint32)}}, "4: Demo_Element: get instance: key Id has no value"},
        {{{"Id", Value::string("7")}},
         "4: Demo_Element: get instance: Id: string given where uint32 is expected"},
        {{{"Id", Value::integer(CMPI_sint64, 1ull << 32)}},
         "4: Demo_Element: get instance: Id: 4294967296 does not fit uint32"},
    };
    for (const auto& c : cases)
    {
        const Outcome outcome = elements.getInstance({"root/demo", "Demo_Element", c.keys});
        EXPECT_EQ(outcome.ok() ? "" : outcome.texts().at(0), c.text);
    }
    // The path in the answer is that of the instance, whatever the request called it.
    const Outcome outcome = elements.getInstance({"root/demo", "DEMO_ELEMENT", {{"ID", seven}}});
    ASSERT_EQ(outcome.instances.size(), 1u);
    EXPECT_EQ(textOf(outcome.instances[0].path), "root/demo:Demo_Sensor.Id=u32:7");
}

TEST_F(InstanceMi, AnInstanceOfAnotherClassIsNotFound)
{
    script<Demo_Element>().instances.emplace_back(demo::element(7).steal());
    const Outcome outcome = client(elementProvider).getInstance(sensorPath(7));
    EXPECT_EQ(outcome.rc, CMPI_RC_ERR_NOT_FOUND) << outcome.message;
}

TEST_F(InstanceMi, CreatedInstancesComeBackAsTheirPath)
{
    Client& elements = client(elementProvider);
    const Value seven = Value::integer(CMPI_uint32, 7);
    const Inst inst = {classPath("Demo_Element"), {{"ID", seven}, {"label", Value::string("inlet")}}};
    EXPECT_EQ(elements.createInstance(classPath("Demo_Element"), inst).texts(),
              Texts{"root/demo:Demo_Element.Id=u32:7"});
    EXPECT_EQ(elements.getInstance({"root/demo", "Demo_Element", {{"Id", seven}}}).texts(),
              Texts{"Demo_Element{Id=u32:7,Label=\"inlet\"}"});
    EXPECT_EQ(elements.createInstance(classPath("Demo_Element"), inst).rc, CMPI_RC_ERR_ALREADY_EXISTS);

    const struct
    {
        Named property;
        const char* text;
    } cases[] = {
        {{"Labell", Value::string("x")},
         "4: Demo_Element: create instance: class Demo_Element has no property Labell"},
        {{"Reset", Value::string("x")}, // a method
         "4: Demo_Element: create instance: class Demo_Element has no property Reset"},
        {{"Label", Value::boolean(true)},
         "4: Demo_Element: create instance: Label: boolean given where string is expected"},
        // The provider took it, but nobody could ever find it.
        {{"Label", Value::string("no key")}, "1: Demo_Element: create instance: key Id has no value"},
    };
    for (const auto& c : cases)
    {
        const Outcome outcome =
            elements.createInstance(classPath("Demo_Element"), {classPath("Demo_Element"), {c.property}});
        EXPECT_EQ(outcome.texts(), Texts{c.text});
    }
}

TEST_F(InstanceMi, ModifyTakesKeysFromThePathAndHonoursTheList)
{
    script<Demo_Sensor>().instances = {sensor(7, "inlet")};
    Client& sensors = client(sensorProvider);
    const Value label = Value::string("outlet");
    const Value health = Value::integer(CMPI_uint16, 2);
    const auto modify = [&](std::vector<Named> properties, const Properties& list) {
        return sensors.modifyInstance(sensorPath(7), {classPath("Demo_Sensor"), properties}, list);
    };

    EXPECT_TRUE(modify({{"Label", label}, {"Health", health}}, {{"Health"}}).ok());
    EXPECT_EQ(sensors.getInstance(sensorPath(7)).texts(),
              Texts{"Demo_Sensor{Id=u32:7,Label=\"inlet\",Enabled=true,Health=u16:2}"});
    EXPECT_TRUE(
        modify({{"Label", label}, {"Id", Value::integer(CMPI_uint32, 7)}}, {{"label", "Health"}}).ok());
    EXPECT_EQ(
        sensors.getInstance(sensorPath(7)).texts(),
        Texts{"Demo_Sensor{Id=u32:7,Label=\"outlet\",Enabled=true}"}); // a listed property may become NULL

    const Outcome contradiction = modify({{"Id", Value::integer(CMPI_uint32, 8)}}, {});
    EXPECT_EQ(contradiction.texts(),
              Texts{"4: Demo_Sensor: modify instance: key Id of path and instance differ"});
    const Outcome unknown = modify({{"Label", label}}, {{"Labell"}});
    EXPECT_EQ(unknown.texts(),
              Texts{"4: Demo_Sensor: modify instance: class Demo_Sensor has no property Labell"});
    EXPECT_EQ(sensors.modifyInstance(sensorPath(9), {classPath("Demo_Sensor"), {}}).rc,
              CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(InstanceMi, ModifyComparesKeysThatAreReferencesByTheirKeys)
{
    script<Demo_SensorInRack>().instances = {sensorInRack("r1", 7)};
    Client& links = client(sensorInRackProvider);
    const auto keys = [](const char* rackName)
    {
        return std::vector<Named>{{"Rack", Value::ref(rackPath(rackName))},
                                  {"Sensor", Value::ref(sensorPath(7))}};
    };
    const Path path = {"root/demo", "Demo_SensorInRack", keys("r1")};
    std::vector<Named> properties = keys("r1");
    properties.emplace_back("Slot", Value::integer(CMPI_uint16, 3));
    EXPECT_TRUE(links.modifyInstance(path, {path, properties}, {{"Slot"}}).ok());
    EXPECT_EQ(links.modifyInstance(path, {path, keys("r2")}).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(links.enumerateInstances(classPath("Demo_SensorInRack"), {{"Slot"}}).texts(),
              Texts{"Demo_SensorInRack{Rack=<root/demo:Demo_Rack.Name=\"r1\">,"
                    "Sensor=<root/demo:Demo_Sensor.Id=u32:7>,Slot=u16:3}"});
}

TEST_F(InstanceMi, QueriesAreNotSupported)
{
    EXPECT_EQ(
        client(rackProvider).execQuery(classPath("Demo_Rack"), "SELECT * FROM Demo_Rack", "WQL").texts(),
        Texts{"7: Demo_Rack: execute query: queries are not supported"});
}

TEST_F(InstanceMi, EveryStatusHasItsCode)
{
    script<Demo_Rack>().instances = {rack("r1")};
    Client& racks = client(rackProvider);
    const Path path = rackPath("r1");
    const Inst inst = {classPath("Demo_Rack"), {{"Name", Value::string("r1")}}};
    const std::function<Outcome()> get = [&] { return racks.getInstance(path); };
    const std::function<Outcome()> enumerate = [&]
    { return racks.enumerateInstances(classPath("Demo_Rack")); };
    const std::function<Outcome()> create = [&]
    { return racks.createInstance(classPath("Demo_Rack"), inst); };
    const std::function<Outcome()> remove = [&] { return racks.deleteInstance(path); };
    const std::function<Outcome()> modify = [&] { return racks.modifyInstance(path, inst); };

    const struct
    {
        int status;
        const std::function<Outcome()>& request;
        CMPIrc rc;
        const char* operation;
    } cases[] = {
        {GET_INSTANCE_NOT_FOUND, get, CMPI_RC_ERR_NOT_FOUND, "get instance"},
        {GET_INSTANCE_INVALID_PARAMETER, get, CMPI_RC_ERR_INVALID_PARAMETER, "get instance"},
        {GET_INSTANCE_ACCESS_DENIED, get, CMPI_RC_ERR_ACCESS_DENIED, "get instance"},
        {GET_INSTANCE_FAILED, get, CMPI_RC_ERR_FAILED, "get instance"},
        {ENUM_INSTANCES_FAILED, enumerate, CMPI_RC_ERR_FAILED, "enumerate instances"},
        {ENUM_INSTANCES_ACCESS_DENIED, enumerate, CMPI_RC_ERR_ACCESS_DENIED, "enumerate instances"},
        {CREATE_INSTANCE_DUPLICATE, create, CMPI_RC_ERR_ALREADY_EXISTS, "create instance"},
        {CREATE_INSTANCE_UNSUPPORTED, create, CMPI_RC_ERR_NOT_SUPPORTED, "create instance"},
        {CREATE_INSTANCE_INVALID_PARAMETER, create, CMPI_RC_ERR_INVALID_PARAMETER, "create instance"},
        {CREATE_INSTANCE_ACCESS_DENIED, create, CMPI_RC_ERR_ACCESS_DENIED, "create instance"},
        {CREATE_INSTANCE_FAILED, create, CMPI_RC_ERR_FAILED, "create instance"},
        {DELETE_INSTANCE_NOT_FOUND, remove, CMPI_RC_ERR_NOT_FOUND, "delete instance"},
        {DELETE_INSTANCE_UNSUPPORTED, remove, CMPI_RC_ERR_NOT_SUPPORTED, "delete instance"},
        {DELETE_INSTANCE_ACCESS_DENIED, remove, CMPI_RC_ERR_ACCESS_DENIED, "delete instance"},
        {DELETE_INSTANCE_FAILED, remove, CMPI_RC_ERR_FAILED, "delete instance"},
        {MODIFY_INSTANCE_NOT_FOUND, modify, CMPI_RC_ERR_NOT_FOUND, "modify instance"},
        {MODIFY_INSTANCE_UNSUPPORTED, modify, CMPI_RC_ERR_NOT_SUPPORTED, "modify instance"},
        {MODIFY_INSTANCE_INVALID_PARAMETER, modify, CMPI_RC_ERR_INVALID_PARAMETER, "modify instance"},
        {MODIFY_INSTANCE_ACCESS_DENIED, modify, CMPI_RC_ERR_ACCESS_DENIED, "modify instance"},
        {MODIFY_INSTANCE_FAILED, modify, CMPI_RC_ERR_FAILED, "modify instance"},
    };
    for (const auto& c : cases)
    {
        script<Demo_Rack>().status = c.status;
        EXPECT_EQ(c.request().texts(),
                  Texts{std::to_string(c.rc) + ": Demo_Rack: " + c.operation + " failed (status " +
                        std::to_string(c.status) + ")"});
    }
    script<Demo_Rack>().status = -1; // there is no such operation
    for (const auto* request : {&create, &remove, &modify})
        EXPECT_EQ((*request)().rc, CMPI_RC_ERR_NOT_SUPPORTED);
    // A status of another operation is no success.
    script<Demo_Rack>().status = 4711;
    for (const auto* request : {&get, &enumerate, &create, &remove, &modify})
        EXPECT_EQ((*request)().rc, CMPI_RC_ERR_FAILED);
}

TEST_F(InstanceMi, TheProvidersReasonReachesTheClient)
{
    script<Demo_Rack>().status = ENUM_INSTANCES_FAILED;
    script<Demo_Rack>().inside = [] { Error::set("fan %d does not answer", 3); };
    Client& racks = client(rackProvider);
    EXPECT_EQ(racks.enumerateInstances(classPath("Demo_Rack")).message,
              "Demo_Rack: enumerate instances failed (status 70): fan 3 does not answer");
    // A reason belongs to one request.
    script<Demo_Rack>().inside = nullptr;
    EXPECT_EQ(racks.enumerateInstances(classPath("Demo_Rack")).message,
              "Demo_Rack: enumerate instances failed (status 70)");
}

TEST_F(InstanceMi, ExceptionsBecomeStatuses)
{
    Client& racks = client(rackProvider);
    script<Demo_Rack>().inside = [] { throw std::runtime_error("loose cable"); };
    EXPECT_EQ(racks.enumerateInstances(classPath("Demo_Rack")).texts(),
              Texts{"1: Demo_Rack: enumerate instances: exception: loose cable"});
    script<Demo_Rack>().inside = [] { throw 42; };
    EXPECT_EQ(racks.enumerateInstanceNames(classPath("Demo_Rack")).texts(),
              Texts{"1: Demo_Rack: enumerate instance names: exception of an unknown type"});
    script<Demo_Rack>().inside = nullptr;
    EXPECT_TRUE(racks.enumerateInstances(classPath("Demo_Rack")).ok());
}

TEST_F(InstanceMi, AfterAResultThatCannotBeDeliveredNothingMoreIsDone)
{
    Demo_Rack* nameless = Demo_Rack::create(true);
    script<Demo_Rack>().instances = {rack("r1"), Ref<Instance>(static_cast<Instance*>(nameless)), rack("r3")};
    Client& racks = client(rackProvider);
    const Outcome outcome = racks.enumerateInstances(classPath("Demo_Rack"));
    EXPECT_EQ(outcome.texts(), Texts{"1: Demo_Rack: enumerate instances: key Name has no value"});
    EXPECT_EQ(script<Demo_Rack>().handed, 2);

    // A client that has gone.
    script<Demo_Rack>().reset();
    script<Demo_Rack>().instances = {rack("r1"), rack("r2"), rack("r3"), rack("r4")};
    broker.refuseAfter(2);
    EXPECT_EQ(racks.enumerateInstances(classPath("Demo_Rack")).rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(script<Demo_Rack>().handed, 3);
}

TEST_F(InstanceMi, BrokerServicesThatFailAreReported)
{
    Demo_Sensor* full = static_cast<Demo_Sensor*>(sensor(7).steal());
    full->Modes.null = 0;
    full->Modes.value.append(4);
    full->Sampled.set(Datetime("20260314015926.535897+060"));
    script<Demo_Sensor>().instances.emplace_back(static_cast<Instance*>(full));
    Client& sensors = client(sensorProvider);
    for (const char* factory : {"newDateTimeFromChars", "newArray", "newInstance", "newObjectPath"})
    {
        broker.fail(factory); // one after the other, from the innermost on
        const Outcome outcome = sensors.enumerateInstances(classPath("Demo_Sensor"));
        EXPECT_EQ(outcome.rc, CMPI_RC_ERR_FAILED) << factory;
        EXPECT_TRUE(outcome.instances.empty()) << factory;
    }
    // Even the text of the failure may be more than the broker can give.
    broker.fail("newString");
    EXPECT_EQ(sensors.enumerateInstances(classPath("Demo_Sensor")).texts(), Texts{"1: "});
}

} // namespace
} // namespace adapter_test
