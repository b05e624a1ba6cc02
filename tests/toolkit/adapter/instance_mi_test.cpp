// The instance interface: what reaches the provider, what reaches the client, and every way to fail.
#include "adapter_fixture.h"

#include <adapter/Failure.h>

#include <stdexcept>

namespace adapter_test
{
namespace
{

class InstanceMi : public AdapterTest
{
  protected:
    // The named properties that the last model of a class marks as asked for or to be changed: "Label
    // Health".
    static std::string marked(Script& of, std::vector<const char*> names)
    {
        std::string result;
        for (const char* name : names)
            if (of.model.find(std::string(" ") + name + " = ") != std::string::npos &&
                of.model.find(std::string(" ") + name + " = NULL") == std::string::npos)
                result += (result.empty() ? "" : " ") + std::string(name);
        return result;
    }

    // A sensor with a value of every kind.
    static Ref<Instance> fullSensor(unsigned id)
    {
        Ref<Demo_Sensor> full = demo::sensor(id);
        full->Modes.null = 0;
        full->Modes.value.append(4);
        full->Sampled.set(Datetime("20260314015926.535897+060"));
        full->Limits = Demo_Limits::create(true);
        return Ref<Instance>(full.steal());
    }

    Script& racks = script<Demo_Rack>();
    Script& elements = script<Demo_Element>();
    Script& sensors = script<Demo_Sensor>();
};

const Value kSeven = Value::integer(CMPI_uint32, 7);
const Path kElement = {"root/demo", "Demo_Element", {{"Id", kSeven}}};

TEST_F(InstanceMi, EnumerationDeliversWhatIsOfTheClassUnderItsOwnName)
{
    elements.instances = {sensor(7, "inlet"), Ref<Instance>(demo::element(1).steal())};
    Client& provider = client(elementProvider);
    const Texts both = {"root/demo:Demo_Sensor.Id=u32:7", "root/demo:Demo_Element.Id=u32:1"};
    const struct
    {
        const char* className;
        Texts paths;
    } cases[] = {
        {"demo_element", both},
        {"Demo_Thing", both},       // a superclass
        {"DEMO_SENSOR", {both[0]}}, // a subclass
        {"Demo_Rack", {"5: Demo_Element: enumerate instance names: class Demo_Rack is not served here"}},
        {"Demo_X", {"5: Demo_Element: enumerate instance names: class Demo_X is unknown here"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(provider.enumerateInstanceNames(classPath(c.className)).texts(), c.paths);

    const Outcome outcome = provider.enumerateInstances(classPath("demo_sensor"));
    EXPECT_EQ(outcome.texts(), Texts{"Demo_Sensor{Id=u32:7,Label=\"inlet\",Enabled=true}"});
    EXPECT_EQ(test_broker::textOf(outcome.instances.at(0).path), both[0]);
    for (const Ref<Instance>& instance : elements.instances) // still the provider's alone
        EXPECT_EQ(instance.count(), 1u);

    // A request on a superclass must not give the provider a smaller object than its own class.
    client(rackProvider).enumerateInstances(classPath("Demo_Thing"));
    EXPECT_NE(racks.model.find("Demo_Rack"), std::string::npos);
}

TEST_F(InstanceMi, ObjectsOfAResultGoOnceItIsReturned)
{
    constexpr size_t kCount = 100;
    constexpr size_t kObjectsOfOne =
        40; // an instance with all it contains, the schema looked at, the request
    for (unsigned id = 0; id < kCount; id++)
        sensors.instances.push_back(fullSensor(id));
    Client& provider = client(sensorProvider);
    Texts texts;
    for (const char* server : {"fills", "plain", "copies"})
    {
        SCOPED_TRACE(server);
        if (*server == 'p')
            broker.schema = nullptr;
        if (*server == 'c')
            broker.copyResults();
        const Outcome all = provider.enumerateInstances(classPath("Demo_Sensor"));
        EXPECT_LE(all.mostObjects, kObjectsOfOne);
        EXPECT_EQ(all.instances.size(), kCount);
        texts = texts.empty() ? all.texts() : texts;
        EXPECT_EQ(all.texts(), texts);
        const Outcome names = provider.enumerateInstanceNames(classPath("Demo_Sensor"));
        EXPECT_LE(names.mostObjects, kObjectsOfOne);
        EXPECT_EQ(names.paths.size(), kCount);
    }
}

TEST_F(InstanceMi, PropertyListsOmitUnlistedPropertiesButNeverKeys)
{
    sensors.instances = {sensor(7, "inlet")};
    Client& provider = client(sensorProvider);
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
    for (const bool fills : {true, false})
    {
        broker.schema = fills ? schemaOf : decltype(broker.schema)();
        for (const auto& c : cases)
        {
            EXPECT_EQ(provider.enumerateInstances(classPath("Demo_Sensor"), c.properties).texts(),
                      Texts{c.expected});
            EXPECT_EQ(provider.getInstance(sensorPath(7), c.properties).texts(), Texts{c.expected});
        }
    }
}

TEST_F(InstanceMi, ModelsTellTheProviderWhatIsAskedFor)
{
    elements.instances = {sensor(7)};
    Client& provider = client(elementProvider);
    const struct
    {
        bool get;
        Properties list;
        const char* marks;
    } cases[] = {
        {false, {}, ""}, // keys of a class path do not count
        {false, {{"Label"}}, "Label"},
        {true, {}, "Id Label"},
        {true, {{}}, "Id"},
    };
    for (const auto& c : cases)
    {
        const Outcome outcome =
            c.get ? provider.getInstance(kElement, c.list) : provider.enumerateInstances(kElement, c.list);
        EXPECT_TRUE(outcome.ok()) << outcome.message;
        EXPECT_EQ(marked(elements, {"Id", "Label"}), c.marks);
        EXPECT_EQ(elements.modelNameSpace, "root/demo");
    }
}

TEST_F(InstanceMi, GetInstanceWantsExactlyTheKeysOfTheClass)
{
    elements.instances = {sensor(7)};
    Client& provider = client(elementProvider);
    const struct
    {
        std::vector<Named> keys;
        const char* text;
    } cases[] = {
        {{{"Id", Value::integer(CMPI_uint32, 9)}}, "6: Demo_Element: get instance failed (status 60)"},
        {{}, "4: Demo_Element: get instance: key Id is missing"},
        {{{"Id", kSeven}, {"Name", kSeven}},
         "4: Demo_Element: get instance: class Demo_Element has no key Name"},
        {{{"Id", kSeven}, {"Label", Value::string("x")}},
         "4: Demo_Element: get instance: class Demo_Element has no key Label"},
        {{{"Id", Value::nullOf(CMPI_uint32)}}, "4: Demo_Element: get instance: key Id has no value"},
        {{{"Id", Value::string("7")}},
         "4: Demo_Element: get instance: Id: string given where uint32 is expected"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(provider.getInstance({"root/demo", "Demo_Element", c.keys}).texts(), Texts{c.text});
    // The path in the answer is that of the instance, whatever the request called it.
    const Value seven = Value::integer(CMPI_sint64, 7);
    const Outcome outcome = provider.getInstance({"root/demo", "DEMO_ELEMENT", {{"ID", seven}}});
    ASSERT_EQ(outcome.instances.size(), 1u) << outcome.message;
    EXPECT_EQ(test_broker::textOf(outcome.instances[0].path), "root/demo:Demo_Sensor.Id=u32:7");

    elements.instances = {Ref<Instance>(demo::element(7).steal())}; // of another class than asked for
    EXPECT_EQ(provider.getInstance(sensorPath(7)).rc, CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(InstanceMi, CreatedInstancesComeBackAsTheirPath)
{
    Client& provider = client(elementProvider);
    const Path path = classPath("Demo_Element");
    const Inst inst = {path, {{"ID", kSeven}, {"label", Value::string("inlet")}}};
    EXPECT_EQ(provider.createInstance(path, inst).texts(), Texts{"root/demo:Demo_Element.Id=u32:7"});
    EXPECT_EQ(provider.getInstance(kElement).texts(), Texts{"Demo_Element{Id=u32:7,Label=\"inlet\"}"});
    EXPECT_EQ(provider.createInstance(path, inst).rc, CMPI_RC_ERR_ALREADY_EXISTS);
    EXPECT_EQ(provider.deleteInstance(kElement).texts(), Texts());
    EXPECT_EQ(provider.deleteInstance(kElement).rc, CMPI_RC_ERR_NOT_FOUND);

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
        EXPECT_EQ(provider.createInstance(path, {path, {c.property}}).texts(), Texts{c.text});
}

// What a filling server adds is no client's wish.
TEST_F(InstanceMi, ModifyMarksWhatTheClientCanHaveMeant)
{
    sensors.instances = {sensor(7, "inlet")};
    Client& provider = client(sensorProvider);
    const Named label = {"label", Value::string("outlet")};
    const Named modes = {"Modes", Value::nullOf(CMPI_uint16A)};
    const Named fill = {"Health", Value::integer(CMPI_uint16, 99)}; // as the server does
    const Named key = {"Id", kSeven};
    const struct
    {
        bool fills;
        std::vector<Named> given;
        Properties list;
        const char* marks;
    } cases[] = {
        {true, {label}, {}, "Id Label"},
        {true, {label, fill}, {}, "Id Label"},
        {true, {label, modes, {"Enabled", Value::boolean(false)}}, {}, "Id Label Enabled"},
        {true, {label, {"Health", Value::nullOf(CMPI_uint16)}}, {}, "Id Label Health"},
        {true, {label, fill}, {{"Health"}}, "Id Health"},
        {true, {label, key}, {{"ID", "Label", "Modes"}}, "Id Label Modes"},
        {false, {label, fill, modes, key}, {}, "Id Label Modes Health"},
        {false, {fill}, {{"label", "Health"}}, "Id Label Health"},
        {false, {}, {}, "Id"},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(&c - cases);
        broker.schema = c.fills ? schemaOf : decltype(broker.schema)();
        const Inst change = {classPath("Demo_Sensor"), c.given};
        EXPECT_EQ(provider.modifyInstance(sensorPath(7), change, c.list).texts(), Texts());
        EXPECT_EQ(marked(sensors, {"Id", "Label", "Modes", "Enabled", "Health"}), c.marks);
    }
    // A server that fills new instances but not those of clients: a new one has something that this lacks.
    int calls = 0;
    broker.schema = [&](const std::string& name)
    { return calls++ == 0 ? std::vector<Named>() : schemaOf(name); };
    EXPECT_TRUE(provider.modifyInstance(sensorPath(7), {classPath("Demo_Sensor"), {fill}}).ok());
    EXPECT_EQ(marked(sensors, {"Id", "Label", "Health"}), "Id Health");
}

TEST_F(InstanceMi, ModifyChangesTheInstanceOfThePathAlone)
{
    sensors.instances = {sensor(7, "inlet")};
    Client& provider = client(sensorProvider);
    const Path sensorClass = classPath("Demo_Sensor");
    const Named label = {"Label", Value::string("outlet")};
    const struct
    {
        unsigned id;
        std::vector<Named> given;
        Properties list;
        Texts texts;
    } cases[] = {
        {7,
         {label},
         {{"Health", "LABEL"}},
         {}}, // a listed property may become NULL, or what the server fills in
        {7,
         {{"Id", Value::integer(CMPI_uint32, 8)}},
         {},
         {"4: Demo_Sensor: modify instance: key Id of path and instance differ"}},
        {7,
         {label},
         {{"Labell"}},
         {"4: Demo_Sensor: modify instance: class Demo_Sensor has no property Labell"}},
        {7,
         {label},
         {{"NewerState"}},
         {"4: Demo_Sensor: modify instance: class Demo_Sensor has no property NewerState"}},
        {7,
         {{"Labell", Value::string("x")}},
         {},
         {"4: Demo_Sensor: modify instance: class Demo_Sensor has no property Labell"}},
        {9, {label}, {}, {"6: Demo_Sensor: modify instance failed (status 100)"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(provider.modifyInstance(sensorPath(c.id), {sensorClass, c.given}, c.list).texts(), c.texts);
    EXPECT_EQ(provider.getInstance(sensorPath(7)).texts(),
              Texts{"Demo_Sensor{Id=u32:7,Label=\"outlet\",Enabled=true,Health=u16:99}"});

    // Keys that are references are compared by their keys.
    script<Demo_SensorInRack>().instances = {sensorInRack("r1", 7)};
    Client& links = client(sensorInRackProvider);
    const auto keys = [](const char* rackName) -> std::vector<Named> {
        return {{"Rack", Value::ref(rackPath(rackName))}, {"Sensor", Value::ref(sensorPath(7))}};
    };
    const Path path = {"root/demo", "Demo_SensorInRack", keys("r1")};
    std::vector<Named> properties = keys("r1");
    properties.emplace_back("Slot", Value::integer(CMPI_uint16, 3));
    EXPECT_TRUE(links.modifyInstance(path, {path, properties}, {{"Slot", "Rack"}}).ok());
    EXPECT_EQ(links.modifyInstance(path, {path, keys("r2")}).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(links.enumerateInstances(classPath("Demo_SensorInRack")).texts(),
              Texts{"Demo_SensorInRack{Rack=<root/demo:Demo_Rack.Name=\"r1\">,"
                    "Sensor=<root/demo:Demo_Sensor.Id=u32:7>,Slot=u16:3}"});
}

TEST_F(InstanceMi, EveryStatusHasItsCodeAndReason)
{
    const struct
    {
        CMPIrc rc;
        std::vector<int> statuses; // the numbers of toolkit/cimple/Provider.h
    } codes[] = {
        {CMPI_RC_OK, {0}},
        {CMPI_RC_ERR_ACCESS_DENIED, {63, 71, 83, 92, 103, 112, 122, 132, 172}},
        {CMPI_RC_ERR_INVALID_PARAMETER, {62, 82, 102}},
        {CMPI_RC_ERR_NOT_FOUND, {60, 90, 100}},
        {CMPI_RC_ERR_NOT_SUPPORTED, {-1, 61, 81, 91, 101, 111, 121, 131, 171}},
        {CMPI_RC_ERR_ALREADY_EXISTS, {80}},
        {CMPI_RC_ERR_FAILED, {30, 40, 64, 70, 84, 93, 104, 110, 120, 130, 140, 150, 170, 4711}},
    };
    for (const auto& c : codes)
        for (const int status : c.statuses)
            EXPECT_EQ(cimple_cmpi::codeOf(status), c.rc) << status;

    racks.instances = {rack("r1")};
    Client& provider = client(rackProvider);
    const Path path = rackPath("r1");
    const Inst inst = {path, path.keys};
    const struct
    {
        const char* operation;
        int status;
        std::function<Outcome()> request;
    } requests[] = {
        {"get instance", GET_INSTANCE_FAILED, [&] { return provider.getInstance(path); }},
        {"enumerate instances", ENUM_INSTANCES_FAILED, [&] { return provider.enumerateInstances(path); }},
        {"create instance", CREATE_INSTANCE_FAILED, [&] { return provider.createInstance(path, inst); }},
        {"delete instance", DELETE_INSTANCE_FAILED, [&] { return provider.deleteInstance(path); }},
        {"modify instance", MODIFY_INSTANCE_FAILED, [&] { return provider.modifyInstance(path, inst); }},
    };
    for (const auto& [operation, status, request] : requests)
    {
        const std::string text = std::string("1: Demo_Rack: ") + operation;
        const std::string failed = text + " failed (status " + std::to_string(status) + ")";
        racks.status = status;
        racks.inside = [] { Error::set("fan %d does not answer", 3); };
        EXPECT_EQ(request().texts(), Texts{failed + ": fan 3 does not answer"});
        racks.inside = nullptr; // a reason belongs to one request
        EXPECT_EQ(request().texts(), Texts{failed});
        racks.status = 4711; // of another operation
        EXPECT_EQ(request().texts(), Texts{failed});
        racks.status = 0;
        racks.inside = [] { throw std::runtime_error("loose cable"); };
        EXPECT_EQ(request().texts(), Texts{text + ": exception: loose cable"});
        racks.inside = [] { throw 42; };
        EXPECT_EQ(request().texts(), Texts{text + ": exception of an unknown type"});
    }
    const auto query = [&](auto* c, auto* r)
    { return provider.instances->ft->execQuery(provider.instances, c, r, nullptr, "SELECT", "WQL"); };
    EXPECT_EQ(broker.call(query).texts(), Texts{"7: Demo_Rack: execute query: queries are not supported"});
}

TEST_F(InstanceMi, AfterAResultThatCannotBeDeliveredNothingMoreIsDone)
{
    const Ref<Instance> nameless(static_cast<Instance*>(Demo_Rack::create(true)));
    racks.instances = {rack("r1"), nameless, rack("r3")};
    Client& provider = client(rackProvider);
    EXPECT_EQ(provider.enumerateInstances(classPath("Demo_Rack")).texts(),
              Texts{"1: Demo_Rack: enumerate instances: key Name has no value"});
    EXPECT_EQ(racks.handed, 2);

    // A client that has gone.
    racks.reset();
    racks.instances = {rack("r1"), rack("r2"), rack("r3"), rack("r4")};
    broker.refuseAfter = 2;
    EXPECT_EQ(provider.enumerateInstances(classPath("Demo_Rack")).rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(racks.handed, 3);
}

TEST_F(InstanceMi, BrokerServicesThatFailAreReported)
{
    sensors.instances = {fullSensor(7)};
    Client& provider = client(sensorProvider);
    for (const char* factory : {"newDateTimeFromChars", "newArray", "newInstance", "newObjectPath"})
    {
        broker.failing = {factory};
        const Outcome outcome = provider.enumerateInstances(classPath("Demo_Sensor"));
        EXPECT_EQ(outcome.rc, CMPI_RC_ERR_FAILED) << factory;
        EXPECT_TRUE(outcome.instances.empty()) << factory;
    }
    // Even the text of the failure may be more than the broker can give.
    broker.failing = {"newObjectPath", "newString"};
    EXPECT_EQ(provider.enumerateInstances(classPath("Demo_Sensor")).texts(), Texts{"1: "});
}

} // namespace
} // namespace adapter_test
