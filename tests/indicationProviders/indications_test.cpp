// Tests of what indication providers make of switch events, and of providers that are enabled and disabled at
// any moment.
#include "common/indications.h"

#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "indicationProviders/CIM_AlertIndication_Provider.h"
#include "indicationProviders/CIM_InstCreation_Provider.h"
#include "indicationProviders/CIM_InstDeletion_Provider.h"
#include "indicationProviders/CIM_InstModification_Provider.h"
#include "support/receiveSwitchEvent.h"
#include "switchaccess/string_helpers.h"
#include "tests/common/testing/Switch_Test.h"
#include "tests/indicationProviders/Fake_Delivery.h"

#include <atomic>
#include <numeric>
#include <thread>

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

constexpr char kSwitch[] = "100002a5c0de0001"; // of the simulated fabric
constexpr char kFabric[] = "100002a5c0de0002";
constexpr std::uint16_t kStatus[] = {6, 10};
constexpr std::uint16_t kFormerStatus[] = {2};

// Every text that an event may have.
xpl_SwitchEvent eventOf(std::int32_t type, const char* port = "2000000000000bad")
{
    xpl_SwitchEvent event = {};
    event.type = type;
    event.switchWwn = kSwitch;
    event.fabricWwn = kFabric;
    event.portWwn = port;
    event.subject = "subject";
    event.value = "71.50 C";
    event.location = "fan 1";
    event.status = kStatus;
    event.statusCount = 2;
    event.previousStatus = kFormerStatus;
    event.previousStatusCount = 1;
    event.isLocal = true;
    return event;
}

class Indications : public Switch_Test
{
  protected:
    // What the provider sends for these events.
    template <class PROVIDER>
    std::vector<Fake_Delivery::Sent> sentFor(const std::vector<xpl_SwitchEvent>& events)
    {
        PROVIDER provider;
        EXPECT_EQ(provider.enable_indications(), ENABLE_INDICATIONS_OK);
        for (const xpl_SwitchEvent& event : events)
            receiveSwitchEvent(&event);
        EXPECT_EQ(provider.disable_indications(), DISABLE_INDICATIONS_OK);
        return delivery.takeSent();
    }

    Texts asked()
    {
        Texts result;
        for (const std::uint16_t filter : delivery.takeAsked())
            result.push_back(std::to_string(filter));
        return result;
    }

    Fake_Delivery delivery;
};

// Which indications an event raises, with which texts and for whom, is tested with the events of a whole
// switch.
TEST_F(Indications, AreBuiltForSubscribersOfTheirFiltersOnly)
{
    Create_Failures never("CIM_AlertIndication");
    EXPECT_EQ(sentFor<CIM_AlertIndication_Provider>({eventOf(28)}).size(), 0U);
    EXPECT_EQ(asked(), (Texts{"12", "13", "16", "24", "16"}));
    EXPECT_FALSE(never.struck());
    delivery.subscribe(16, "all");
    std::vector<xpl_SwitchEvent> all;
    for (std::int32_t type = -1; type < 40; ++type)
        all.push_back(eventOf(type));
    EXPECT_EQ(sentFor<CIM_InstCreation_Provider>(all).size(), 0U);
    EXPECT_EQ(asked(), (Texts{"0", "1", "6", "7"}));
    EXPECT_EQ(sentFor<CIM_InstDeletion_Provider>(all).size(), 0U);
    EXPECT_EQ(asked(), (Texts{"2", "3", "8", "9"}));
    EXPECT_EQ(sentFor<CIM_InstModification_Provider>(all).size(), 0U);
    EXPECT_EQ(asked(), (Texts{"4", "5", "10", "11"}));
}

TEST_F(Indications, AlertsOfOneEventDoNotDependOnEachOther)
{
    delivery.subscribe(16, "all");
    const std::string unit = "CRIT:indicationProviders/CIM_AlertIndication_Provider:indicate";
    const std::string notMade = "Alert[] Unable to create instance for indicate";
    const Log_Capture log(kLogInfo);
    {
        const Create_Failures failures("CIM_AlertIndication", 0, Create_Failures::Kind::Throws);
        EXPECT_EQ(sentFor<CIM_AlertIndication_Provider>({eventOf(23)}).size(), 0U);
    }
    const std::string exception = "Exception[CRIT]:" + unit.substr(5);
    EXPECT_EQ(log.texts(),
              (Texts{"Alert indications are enabled",
                     "AlertIndication - Core1: 100002a5c0de0001, Power Component, fan 1",
                     exception + "Core1" + notMade + "Core1Alert",
                     "AlertIndication - Core3: 100002a5c0de0001, removed, PowerSupply, fan 1",
                     exception + "Core3" + notMade + "Core3Alert",
                     "Alert indications are disabled"}));
    delivery.failSending(true);
    EXPECT_EQ(sentFor<CIM_AlertIndication_Provider>({eventOf(12)}).size(), 0U);
    EXPECT_EQ(log.texts(),
              (Texts{"Alert indications are enabled",
                     "portSatus.size() = 2",
                     "AlertIndication - Core12: 100002a5c0de0001, 2000000000000bad, 100002a5c0de0002",
                     unit + "Core12Alert[] std::bad_alloc",
                     "Alert indications are disabled"}));
}

TEST_F(Indications, AlertsNameEveryStatus)
{
    delivery.subscribe(16, "all");
    std::vector<std::uint16_t> values(19);
    std::iota(values.begin(), values.end(), std::uint16_t{0});
    values.push_back(32768);
    const auto wordsOf = [&](std::int32_t type, std::uint32_t count)
    {
        xpl_SwitchEvent event = eventOf(type);
        event.status = values.data();
        event.statusCount = count;
        const std::vector<Fake_Delivery::Sent> sent = sentFor<CIM_AlertIndication_Provider>({event});
        const std::string arguments = sent.at(0).properties.at("MessageArguments");
        return arguments.substr(arguments.find(std::string(kFabric) + ", ") + 18);
    };
    EXPECT_EQ(
        wordsOf(12, 20),
        "Unknown, Other, Ok, Degraded, Stressed, Predictive Failure, Error, Non-Recoverable Error, Starting, "
        "Stopping, Stopped, In Service, No Contact, Lost Communication, Aborted, Dormant, Supporting Entity "
        "in Error, Completed, Unknown Status, Unknown Status]");
    EXPECT_EQ(wordsOf(6, 12),
              "Unknown, Unknown Status, Ok, Unknown Status, Unknown Status, Unknown Status, Unknown Status, "
              "Unknown Status, Unknown Status, Unknown Status, Stopped, In Service]");
}

TEST_F(Indications, AlertsCutWhatIsTooLong)
{
    delivery.subscribe(16, "all");
    const std::string name(255, 'z');
    xpl_SwitchEvent user = eventOf(25), zoneSet = eventOf(27);
    user.subject = zoneSet.subject = name.c_str();
    zoneSet.fabricWwn = name.c_str();
    const std::vector<Fake_Delivery::Sent> sent = sentFor<CIM_AlertIndication_Provider>({user, zoneSet});
    ASSERT_EQ(sent.size(), 3U);
    EXPECT_EQ(sent[0].properties.at("Message"), ("Switch 100002a5c0de0001 user " + name).substr(0, 255));
    EXPECT_EQ(sent[1].properties.at("Message"),
              "Zoneset " + name.substr(0, 64) + " was activated for fabric " + name.substr(0, 16));
    EXPECT_EQ(sent[1].properties.at("MessageArguments"), "[" + name + ", " + name + "]");
    EXPECT_EQ(sent[1].properties.at("AlertingManagedElement"),
              "VRAX_Fabric.CreationClassName=\"VRAX_Fabric\",Name=\"" + name.substr(0, 16) + "\"");
}

// --- Switches and ports that come, go and change

// A port that comes is told of as clients find it from then on, whatever letter case the event has.
TEST_F(Indications, PublishThePortThatComes)
{
    delivery.subscribe(7, "ports");
    sim.open(simulator::SimSwitch::make().remote(2, 1).scenario());
    const std::vector<Description> ports = instances<VRAX_FCPort_Provider>();
    ASSERT_EQ(ports.size(), 5U);
    for (const bool fails : {false, true})
    {
        // What cannot be read is told of by its keys.
        const Description& one = ports[fails ? 1 : 4];
        std::string device = one.at("DeviceID");
        if (!fails)
            strToUpper(device.data());
        const std::string owner = device.substr(0, device.find(':')), port = device.substr(owner.size() + 1);
        xpl_SwitchEvent event = eventOf(10, port.c_str());
        event.switchWwn = owner.c_str();
        if (fails)
            sim.failNext("xpl_smlGetBatch");
        Description properties = sentFor<CIM_InstCreation_Provider>({event}).at(0).properties;
        EXPECT_EQ(properties["IndicationIdentifier"], "VRAX:" + device);
        EXPECT_EQ(properties.size(), fails ? 7U : 3U + one.size());
        for (const auto& [name, value] : one)
            if (!fails || name == "DeviceID" || name == "SystemName")
                EXPECT_EQ(properties["SourceInstance." + name], value);
    }
}

TEST_F(Indications, SayWhatTheyCannotCreate)
{
    const std::string unit = "Exception[CRIT]:indicationProviders/CIM_Inst";
    const std::string kCreateSystem = unit + "Creation_Provider:indicateCreateComputerSystem[] ";
    const std::string kCreatePort = unit + "Creation_Provider:indicateCreateFCPort[] ";
    const std::string kDeleteSystem = unit + "Deletion_Provider:indicateDeleteComputerSystem[] ";
    const std::string kDeletePort = unit + "Deletion_Provider:indicateDeleteFCPort[] ";
    const std::string kModifySystem = unit + "Modification_Provider:indicateSwitchStatusChange[] ";
    const std::string kModifyPort = unit + "Modification_Provider:indicatePortStatusChange[] ";
    const struct
    {
        std::int32_t event;
        const char* failing;
        int successes;
        std::string place;
        const char* text;
    } rows[] = {
        {4, "CIM_InstCreation", 0, kCreateSystem, "create instance for indicateCreateComputerSystem"},
        {4, "CIM_ComputerSystem", 0, kCreateSystem, "create CIM_ComputerSystem instance"},
        {10, "CIM_InstCreation", 0, kCreatePort, "create instance for indicateCreateFCPort"},
        {10, "VRAX_FCPort", 0, kCreatePort, "create VRAX_FCPort instance"},
        {10, "", 0, kCreatePort, "find expected FCPort entry"},
        {5, "CIM_InstDeletion", 0, kDeleteSystem, "create instance for InstDeletion"},
        {5, "CIM_ComputerSystem", 0, kDeleteSystem, "create CIM_ComputerSystem instance"},
        {11, "CIM_InstDeletion", 0, kDeletePort, "create instance for indicateCreateFCPort"},
        {11, "VRAX_FCPort", 0, kDeletePort, "create VRAX_FCPort instance"},
        {6, "CIM_InstModification", 0, kModifySystem, "create instance for InstModification"},
        {6, "CIM_ComputerSystem", 0, kModifySystem, "create \"new\" CIM_ComputerSystem instance"},
        {6, "CIM_ComputerSystem", 1, kModifySystem, "create \"old\" CIM_ComputerSystem instance"},
        {12, "CIM_InstModification", 0, kModifyPort, "create instance for InstModification"},
        {12, "VRAX_FCPort", 0, kModifyPort, "create \"new\" VRAX_FCPort instance"},
        {12, "VRAX_FCPort", 1, kModifyPort, "create \"old\" VRAX_FCPort instance"},
    };
    delivery.subscribeToAll();
    for (const auto& row : rows)
    {
        const Create_Failures failures(row.failing, row.successes);
        const Log_Capture log;
        const std::string text = row.text;
        const char* unable = text.find('"') == text.npos ? "Unable to " : "Uanble to ";
        const std::vector<xpl_SwitchEvent> events = {eventOf(row.event)};
        EXPECT_TRUE(sentFor<CIM_InstCreation_Provider>(events).empty());
        EXPECT_TRUE(sentFor<CIM_InstDeletion_Provider>(events).empty());
        EXPECT_TRUE(sentFor<CIM_InstModification_Provider>(events).empty());
        EXPECT_EQ(log.texts(), Texts{row.place + unable + text});
    }
}

TEST_F(Indications, LogWhatTheyDo)
{
    delivery.subscribeToAll();
    const Log_Capture log(kLogInfo);
    sentFor<CIM_InstCreation_Provider>({eventOf(4)});
    sentFor<CIM_InstDeletion_Provider>({eventOf(11)});
    sentFor<CIM_InstModification_Provider>({eventOf(6)});
    EXPECT_EQ(log.texts(),
              (Texts{"InstCreation indications are enabled",
                     "InstCreation indications are disabled",
                     "Inst Deletion indications are enabled",
                     "Creating Deletion Instance: 100002a5c0de0001",
                     "Inst deletion indications are disabled",
                     "Inst Modification indications are enabled",
                     "Creating Modification Instance: 100002a5c0de0001",
                     "Inst Modification indications are disabled"}));
}

// --- Enabling and disabling

TEST_F(Indications, DoNotGoToTheServer)
{
    bool areGivenBack[2] = {};
    const auto receive = [](Instance* instance, void* isGivenBack)
    { return *static_cast<bool*>(isGivenBack) = instance == nullptr; };
    const Log_Capture log;
    CIM_AlertIndication_Provider alerts;
    CIM_InstModification_Provider changes;
    alerts.enable_indications(new Indication_Handler<CIM_AlertIndication>(receive, &areGivenBack[0]));
    changes.enable_indications(new Indication_Handler<CIM_InstModification>(receive, &areGivenBack[1]));
    EXPECT_TRUE(areGivenBack[0] && areGivenBack[1]);
    const xpl_SwitchEvent event = eventOf(12);
    receiveSwitchEvent(&event);
    alerts.disable_indications();
    changes.disable_indications();
    EXPECT_EQ(asked(), Texts());
    EXPECT_EQ(log.texts(),
              Texts{"CRIT:indicationProviders/CIM_InstModification_Provider:enable_indications[] Using "
                    "unsupported enable_indications method"});
}

TEST_F(Indications, EnablingCounts)
{
    delivery.subscribe(16, "all");
    const xpl_SwitchEvent event = eventOf(29);
    CIM_AlertIndication_Provider provider;
    provider.enable_indications();
    provider.enable_indications();
    provider.disable_indications();
    receiveSwitchEvent(&event);
    provider.disable_indications();
    provider.disable_indications();
    EXPECT_EQ(delivery.takeSent().size(), 1U);
    receiveSwitchEvent(&event);
    {
        CIM_AlertIndication_Provider forgotten;
        forgotten.enable_indications();
        receiveSwitchEvent(&event);
    }
    EXPECT_EQ(delivery.takeSent().size(), 1U) << "its end handles what waits";
}

TEST_F(Indications, RunAsAWhole)
{
    delivery.subscribeToAll();
    const xpl_SwitchEvent status = eventOf(6), subscriptions = eventOf(XPL_EVENT_SUBSCRIPTIONS_CHANGED);
    for (int round = 0; round < 2; ++round)
    {
        EXPECT_FALSE(Fake_Delivery::raise(status));
        EXPECT_TRUE(startIndications());
        EXPECT_TRUE(startIndications());
        EXPECT_EQ(delivery.takeCalls(), (Texts{"startDelivery", "receive", "subscriptionsChanged"}));
        EXPECT_TRUE(Fake_Delivery::raise(status));
        EXPECT_TRUE(Fake_Delivery::raise(subscriptions));
        EXPECT_EQ(delivery.takeCalls(), Texts{"subscriptionsChanged"});
        stopIndications();
        stopIndications();
        EXPECT_EQ(delivery.takeCalls(), (Texts{"receive no more", "stopDelivery"}));
        EXPECT_EQ(delivery.takeSent().size(), 2U) << "an alert and a modification";
    }
    sim.open(simulator::SimSwitch::make().listener("l", "http://l").scenario());
    EXPECT_EQ(Fake_Delivery::expire("http://l"), 1U) << "though nobody has asked for the listeners yet";
}

TEST_F(Indications, DoNotBeginByHalf)
{
    const Log_Capture log;
    for (int threads = 0; threads < 5; ++threads)
    {
        Fake_Delivery::failThreads(threads);
        EXPECT_FALSE(startIndications()) << threads;
        EXPECT_EQ(delivery.takeCalls(),
                  threads == 0 ? Texts{"startDelivery"} : (Texts{"startDelivery", "stopDelivery"}));
        EXPECT_EQ(log.texts().size(), threads == 0 ? 1U : 2U) << "the delivery's own line is not the test's";
    }
    const xpl_SwitchEvent event = eventOf(6);
    receiveSwitchEvent(&event);
    EXPECT_EQ(asked(), Texts());
    Fake_Delivery::failThreads(5);
    EXPECT_TRUE(startIndications());
    stopIndications();
}

// Whatever comes together: every moment is a good one to begin and to end.
TEST_F(Indications, BeginAndEndWhileEventsFlow)
{
    delivery.subscribeToAll();
    const Log_Capture log; // lists may overflow
    std::atomic<bool> done{false};
    std::thread firmware(
        [&]
        {
            for (std::int32_t type = 0; !done; type = (type + 1) % 34)
                if (!Fake_Delivery::raise(eventOf(type)))
                    std::this_thread::yield();
        });
    const auto host = []
    {
        CIM_AlertIndication_Provider other;
        for (int round = 0; round < 20; ++round)
        {
            startIndications();
            other.enable_indications();
            stopIndications();
            other.disable_indications();
        }
    };
    std::thread one(host), another(host);
    one.join();
    another.join();
    done = true;
    firmware.join();
    stopIndications();
    delivery.takeSent();
    const xpl_SwitchEvent event = eventOf(6);
    receiveSwitchEvent(&event);
    for (std::size_t kind = 0; kind < kIndicationKinds; ++kind)
        EXPECT_EQ(VRAX_Maps::getInstance()->eventList(static_cast<Indication_Kind>(kind)).clear(), 0U);
}

// A thread that cannot handle in time what waits leaves it.
TEST_F(Indications, EndInTime)
{
    delivery.subscribe(16, "all");
    delivery.answerAfter(std::chrono::milliseconds(700)); // for each of an alert's two filters
    const Log_Capture log;
    const std::size_t sent = sentFor<CIM_AlertIndication_Provider>(std::vector(6, eventOf(30))).size();
    EXPECT_LT(sent, 6U);
    EXPECT_EQ(log.texts(),
              Texts{"CRIT:indicationProviders/CIM_AlertIndication_Provider:_indication_thread[] " +
                    std::to_string(6 - sent) + " switch events given up at the end"});
}

} // namespace
} // namespace cimple
