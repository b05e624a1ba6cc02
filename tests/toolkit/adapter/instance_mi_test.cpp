// The instance interface: what reaches the provider, what reaches the client, and every way to fail.
#include "adapter_fixture.h"

#include <adapter/Failure.h>
#include <adapter/ToCmpi.h>

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
    static std::string marked(Script& of, const Texts& names)
    {
        std::string result;
        for (const std::string& name : names)
            if (of.model.find(" " + name + " = ") != std::string::npos &&
                of.model.find(" " + name + " = NULL") == std::string::npos)
                result += (result.empty() ? "" : " ") + name;
        return result;
    }

    // A sensor with a value of every kind.
    static Ref<Demo_Sensor> fullSensor(unsigned id)
    {
        Ref<Demo_Sensor> full = demo::sensor(id);
        full->Modes.set(Array_uint16::make(4));
        full->Sampled.set(Datetime("20260314015926.535897+060"));
        full->Limits = Demo_Limits::create(true);
        return full;
    }

    Script& racks = script<Demo_Rack>();
    Script& elements = script<Demo_Element>();
    Script& sensors = script<Demo_Sensor>();
};

const char kRacks[] = "root/demo:Demo_Rack";
const char kElements[] = "root/demo:Demo_Element";
const char kElement[] = "root/demo:Demo_Element.Id=u32:7";
const char kSensors[] = "root/demo:Demo_Sensor";
const char kSensor[] = "root/demo:Demo_Sensor.Id=u32:7";

TEST_F(InstanceMi, EnumerationDeliversWhatIsOfTheClassUnderItsOwnName)
{
    elements.instances = shared(sensor(7, "inlet"), element(1));
    Client& provider = client(elementProvider);
    const Texts both = {kSensor, "root/demo:Demo_Element.Id=u32:1"};
    const std::pair<const char*, Texts> cases[] = {
        {"demo_element", both},
        {"Demo_Thing", both},       // a superclass
        {"DEMO_SENSOR", {both[0]}}, // a subclass
        {"Demo_Rack", {"5: Demo_Element: enumerate instance names: class Demo_Rack is not served here"}},
        {"Demo_X", {"5: Demo_Element: enumerate instance names: class Demo_X is unknown here"}},
    };
    for (const auto& [className, paths] : cases)
        EXPECT_EQ(provider.enumerateInstanceNames(std::string("root/demo:") + className).texts(), paths);

    const Outcome outcome = provider.enumerateInstances("root/demo:demo_sensor");
    EXPECT_EQ(outcome.texts(), Texts{"Demo_Sensor{Id=u32:7,Label=\"inlet\",Enabled=true}"});
    EXPECT_EQ(outcome.paths, Texts{kSensor});
    for (const Ref<Instance>& instance : elements.instances) // still the provider's alone
        EXPECT_EQ(instance.count(), 1u);

    // A request on a superclass must not give the provider a smaller object than its own class.
    client(rackProvider).enumerateInstances("root/demo:Demo_Thing");
    EXPECT_NE(racks.model.find("Demo_Rack"), std::string::npos);
}

TEST_F(InstanceMi, ObjectsOfAResultGoOnceItIsReturned)
{
    constexpr size_t kCount = 100;
    constexpr size_t kObjectsOfOne = 40; // all that an instance contains, the schema looked at, the request
    for (unsigned id = 0; id < kCount; id++)
        sensors.instances.emplace_back(fullSensor(id).steal());
    Client& provider = client(sensorProvider);
    Texts texts;
    for (const char* server : {"fills", "plain", "copies"})
    {
        SCOPED_TRACE(server);
        if (*server == 'p')
            broker.schema = nullptr;
        if (*server == 'c')
            broker.copyResults();
        const Outcome all = provider.enumerateInstances(kSensors);
        EXPECT_LE(all.mostObjects, kObjectsOfOne);
        EXPECT_EQ(all.instances.size(), kCount);
        texts = texts.empty() ? all.texts() : texts;
        EXPECT_EQ(all.texts(), texts);
        const Outcome names = provider.enumerateInstanceNames(kSensors);
        EXPECT_LE(names.mostObjects, kObjectsOfOne);
        EXPECT_EQ(names.paths.size(), kCount);
    }
}

TEST_F(InstanceMi, PropertyListsOmitUnlistedPropertiesButNeverKeys)
{
    sensors.instances = shared(sensor(7, "inlet"));
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
            EXPECT_EQ(provider.enumerateInstances(kSensors, c.properties).texts(), Texts{c.expected});
            EXPECT_EQ(provider.getInstance(kSensor, c.properties).texts(), Texts{c.expected});
        }
    }
}

TEST(PropertyFilterTest, IsRightForEachClassOfAnEnumeration)
{
    const char* const names[] = {"ENABLED", nullptr};
    cimple_cmpi::PropertyFilter filter(names);
    const std::vector<bool> ofElement = {true, false, false}; // Id, Label, Reset
    const std::vector<bool> ofSensor = {true, false, false, false, false, true, false, false, false};
    EXPECT_EQ(filter.of(&Demo_Element::static_meta_class), ofElement);
    EXPECT_EQ(filter.of(&Demo_Sensor::static_meta_class), ofSensor);
    EXPECT_EQ(filter.of(&Demo_Element::static_meta_class), ofElement);
}

TEST_F(InstanceMi, ModelsTellTheProviderWhatIsAskedFor)
{
    elements.instances = shared(sensor(7));
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
    elements.instances = shared(sensor(7));
    Client& provider = client(elementProvider);
    const std::pair<const char*, const char*> cases[] = {
        {".Id=u32:9", "6: Demo_Element: get instance found no such instance (status 60)"},
        {"", "4: Demo_Element: get instance: key Id is missing"},
        {".Id=u32:7,Name=u32:7", "4: Demo_Element: get instance: class Demo_Element has no key Name"},
        {".Id=u32:7,Label=\"x\"", "4: Demo_Element: get instance: class Demo_Element has no key Label"},
        {".Id=u32:null", "4: Demo_Element: get instance: key Id has no value"},
        {".Id=\"7\"", "4: Demo_Element: get instance: Id: string given where uint32 is expected"},
    };
    for (const auto& [keys, text] : cases)
        EXPECT_EQ(provider.getInstance(std::string(kElements) + keys).texts(), Texts{text});
    // The path in the answer is that of the instance, whatever the request called it.
    EXPECT_EQ(provider.getInstance("root/demo:DEMO_ELEMENT.ID=s64:7").paths, Texts{kSensor});

    elements.instances = shared(element(7)); // of another class than asked for
    EXPECT_EQ(provider.getInstance(kSensor).rc, CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(InstanceMi, CreatedInstancesComeBackAsTheirPath)
{
    Client& provider = client(elementProvider);
    const char inst[] = "Demo_Element{ID=u32:7,label=\"inlet\"}";
    EXPECT_EQ(provider.createInstance(kElements, inst).texts(), Texts{kElement});
    EXPECT_EQ(provider.getInstance(kElement).texts(), Texts{"Demo_Element{Id=u32:7,Label=\"inlet\"}"});
    EXPECT_EQ(provider.createInstance(kElements, inst).rc, CMPI_RC_ERR_ALREADY_EXISTS);
    EXPECT_EQ(provider.deleteInstance(kElement).texts(), Texts());
    EXPECT_EQ(provider.deleteInstance(kElement).rc, CMPI_RC_ERR_NOT_FOUND);

    const std::pair<const char*, const char*> cases[] = {
        {"Labell=\"x\"", "4: Demo_Element: create instance: class Demo_Element has no property Labell"},
        {"Reset=\"x\"", "4: Demo_Element: create instance: class Demo_Element has no property Reset"},
        {"Label=true", "4: Demo_Element: create instance: Label: boolean given where string is expected"},
        // The provider took it, but nobody could ever find it.
        {"Label=\"no key\"", "1: Demo_Element: create instance: key Id has no value"},
    };
    for (const auto& [property, text] : cases)
        EXPECT_EQ(provider.createInstance(kElements, std::string("Demo_Element{") + property + "}").texts(),
                  Texts{text});
}

// What a filling server adds is no client's wish.
TEST_F(InstanceMi, ModifyMarksWhatTheClientCanHaveMeant)
{
    sensors.instances = shared(sensor(7, "inlet"));
    Client& provider = client(sensorProvider);
    const struct
    {
        bool fills; // so Health is 99
        const char* given;
        Properties list;
        const char* marks;
    } cases[] = {
        {true, "label=\"outlet\"", {}, "Id Label"},
        {true, "label=\"outlet\",Health=u16:99", {}, "Id Label"},
        {true, "label=\"outlet\",Modes=u16[]:null,Enabled=false", {}, "Id Label Enabled"},
        {true, "label=\"outlet\",Health=u16:null", {}, "Id Label Health"},
        {true, "label=\"outlet\",Health=u16:99", {{"Health"}}, "Id Health"},
        {true, "label=\"outlet\",Id=u32:7", {{"ID", "Label", "Modes"}}, "Id Label Modes"},
        {false, "label=\"outlet\",Health=u16:99,Modes=u16[]:null,Id=u32:7", {}, "Id Label Modes Health"},
        {false, "Health=u16:99", {{"label", "Health"}}, "Id Label Health"},
        {false, "", {}, "Id"},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(&c - cases);
        broker.schema = c.fills ? schemaOf : decltype(broker.schema)();
        const std::string change = std::string("Demo_Sensor{") + c.given + "}";
        EXPECT_EQ(provider.modifyInstance(kSensor, change, c.list).texts(), Texts());
        EXPECT_EQ(marked(sensors, {"Id", "Label", "Modes", "Enabled", "Health"}), c.marks);
    }
    // A server that fills new instances but not those of clients: a new one has something that this lacks.
    int calls = 0;
    broker.schema = [&](const std::string& name)
    { return calls++ == 0 ? std::vector<test_broker::Named>() : schemaOf(name); };
    EXPECT_TRUE(provider.modifyInstance(kSensor, "Demo_Sensor{Health=u16:99}").ok());
    EXPECT_EQ(marked(sensors, {"Id", "Label", "Health"}), "Id Health");
}

TEST_F(InstanceMi, ModifyChangesTheInstanceOfThePathAlone)
{
    sensors.instances = shared(sensor(7, "inlet"));
    Client& provider = client(sensorProvider);
    const std::string failed = "4: Demo_Sensor: modify instance: ";
    const struct
    {
        int id;
        const char* inst;
        Properties list;
        Texts texts;
    } cases[] = {
        // A listed property may become NULL, or what the server fills in.
        {7, "Demo_Sensor{Label=\"outlet\"}", {{"Health", "LABEL"}}, {}},
        {7, "Demo_Sensor{Id=u32:8}", {}, {failed + "key Id of path and instance differ"}},
        {7, "Demo_Sensor{}", {{"Labell"}}, {failed + "class Demo_Sensor has no property Labell"}},
        {7, "Demo_Sensor{}", {{"NewerState"}}, {failed + "class Demo_Sensor has no property NewerState"}},
        {7, "Demo_Sensor{Labell=\"x\"}", {}, {failed + "class Demo_Sensor has no property Labell"}},
        {9, "Demo_Sensor{}", {}, {"6: Demo_Sensor: modify instance found no such instance (status 100)"}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(provider.modifyInstance(sensorPath(c.id), c.inst, c.list).texts(), c.texts);
    EXPECT_EQ(provider.getInstance(kSensor).texts(),
              Texts{"Demo_Sensor{Id=u32:7,Label=\"outlet\",Enabled=true,Health=u16:99}"});

    // Keys that are references are compared by their keys.
    script<Demo_SensorInRack>().instances = shared(sensor_in_rack("r1", 7));
    Client& links = client(sensorInRackProvider);
    const std::string r1 = "Rack=<" + rackPath("r1") + ">,Sensor=<" + kSensor + ">";
    const std::string r2 = "Rack=<" + rackPath("r2") + ">,Sensor=<" + kSensor + ">";
    const std::string path = "root/demo:Demo_SensorInRack." + r1;
    const std::string changed = "Demo_SensorInRack{" + r1 + ",Slot=u16:3}";
    EXPECT_TRUE(links.modifyInstance(path, changed, {{"Slot", "Rack"}}).ok());
    EXPECT_EQ(links.modifyInstance(path, "Demo_SensorInRack{" + r2 + "}").rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(links.enumerateInstances("root/demo:Demo_SensorInRack").texts(), Texts{changed});
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

    racks.instances = shared(rack("r1"));
    Client& provider = client(rackProvider);
    const std::string path = rackPath("r1");
    const char inst[] = "Demo_Rack{Name=\"r1\"}";
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
    racks.instances = shared(rack("r1"), Ref<Demo_Rack>(Demo_Rack::create(true)), rack("r3"));
    Client& provider = client(rackProvider);
    EXPECT_EQ(provider.enumerateInstances(kRacks).texts(),
              Texts{"1: Demo_Rack: enumerate instances: key Name has no value"});
    EXPECT_EQ(racks.handed, 2);

    // A provider that goes on all the same.
    racks.enumerate = [&](const Instance*, const Script::Hand& hand)
    {
        for (const Ref<Instance>& instance : racks.instances)
            hand(clone(instance.ptr()));
    };
    const Outcome stubborn = provider.enumerateInstances(kRacks);
    EXPECT_EQ(stubborn.message, "Demo_Rack: enumerate instances: key Name has no value");
    EXPECT_EQ(stubborn.instances, Texts{"Demo_Rack{Name=\"r1\"}"});

    // A client that has gone.
    racks.reset();
    racks.instances = shared(rack("r1"), rack("r2"), rack("r3"), rack("r4"));
    broker.refuseAfter = 2;
    EXPECT_EQ(provider.enumerateInstances(kRacks).rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(racks.handed, 3);
}

TEST_F(InstanceMi, BrokerServicesThatFailAreReported)
{
    sensors.instances = shared(fullSensor(7));
    Client& provider = client(sensorProvider);
    for (const char* factory : {"newDateTimeFromChars", "newArray", "newInstance", "newObjectPath"})
    {
        broker.failing = {factory};
        const Outcome outcome = provider.enumerateInstances(kSensors);
        EXPECT_EQ(outcome.rc, CMPI_RC_ERR_FAILED) << factory;
        EXPECT_TRUE(outcome.instances.empty()) << factory;
    }
    // Even the text of the failure may be more than the broker can give.
    broker.failing = {"newObjectPath", "newString"};
    EXPECT_EQ(provider.enumerateInstances(kSensors).texts(), Texts{"1: "});
}

} // namespace
} // namespace adapter_test
