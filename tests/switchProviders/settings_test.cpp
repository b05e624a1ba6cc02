// Tests of settings that are written: what goes to the switch in which order, what is seen at once and after
// the next load, and what a refusal leaves behind.
#include "simulator/scenario/scenario_json.h"
#include "switchProviders/VRAX_FCPortSettings_Provider.h"
#include "switchProviders/VRAX_FCSwitchSettings_Provider.h"
#include "tests/common/testing/Switch_Test.h"
#include "tests/common/testing/requests.h"

#include <cstdio>
#include <sstream>

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;
typedef VRAX_FCPortSettings Port_Settings;
typedef VRAX_FCSwitchSettings Switch_Settings;

std::string idOf(int port)
{
    char name[17];
    std::snprintf(name, sizeof(name), "2%03x02a5c0de0001", static_cast<unsigned>(port) & 0xFFF);
    return "VRAX:FCPortSettings:" + kLocalWwn + ":" + name;
}
const std::string kPort2 = idOf(2);

// What a client that asks for one thing may hand in besides; it is not to count.
constexpr char kBesidesOfPort[] =
    "RequestedSpeed=1062500000 AutoSenseSpeed=true RequestedType=6 RequestedIOStreamGuardState=1 "
    "RequestedPerformanceTuningMode=3 DeviceScanEnable=false";
constexpr char kBesidesOfSwitch[] = "PreferredDomainID=100 DomainIDLocked=true PrincipalPriority=3";

// "Name=value ..." without the values.
std::string namesOf(const std::string& wish)
{
    std::istringstream words(wish);
    std::string names;
    for (std::string word; words >> word;)
        names += word.substr(0, word.find('=') + 1) + " ";
    return names;
}

class Settings : public Switch_Test
{
  protected:
    typedef std::map<std::string, std::string> Changes;

    void SetUp() override
    {
        sim.open(simulator::SimSwitch::make()
                     .quiet()
                     .switchFacts([](simulator::SwitchScenario& facts) { facts.preferredDomain = 7; })
                     .scenario());
        makeMapsStale();
        instances<VRAX_FCPortSettings_Provider>();
        instances<VRAX_FCSwitchSettings_Provider>();
        sim.mark();
    }

    template <class CLASS>
    static Owned<CLASS> keysOf(const std::string& id)
    {
        Owned<CLASS> keys = makeNull<CLASS>();
        keys->InstanceID.set(id.c_str());
        return keys;
    }

    // Modifies to what `wish` says, which is all that the model carries.
    template <class CLASS>
    int modify(const std::string& id, const char* besides, const std::string& wish)
    {
        const Owned<CLASS> model = keysOf<CLASS>(id);
        assign(*model, namesOf(wish));
        const Owned<CLASS> instance = keysOf<CLASS>(id);
        assign(*instance, besides);
        assign(*instance, wish);
        Error::clear();
        return typename Registered<CLASS>::Provider().modify_instance(model.get(), instance.get());
    }
    int modifyPort(const std::string& id, const std::string& wish)
    {
        return modify<Port_Settings>(id, kBesidesOfPort, wish);
    }
    int modifySwitch(const std::string& id, const std::string& wish)
    {
        return modify<Switch_Settings>(id, kBesidesOfSwitch, wish);
    }

    template <class CLASS>
    Changes served(const std::string& id)
    {
        CLASS* found = nullptr;
        const Owned<CLASS> keys = keysOf<CLASS>(id);
        EXPECT_EQ(typename Registered<CLASS>::Provider().get_instance(keys.get(), found), GET_INSTANCE_OK);
        const Owned<CLASS> owner(found);
        return found != nullptr ? described(*found) : Changes();
    }
};

// The instance with what the wish sets.
template <class CLASS>
std::map<std::string, std::string> with(const std::string& id, const std::string& wish)
{
    Owned<CLASS> keys = makeNull<CLASS>();
    keys->InstanceID.set(id.c_str());
    assign(*keys, wish);
    return described(*keys);
}

std::string inARow(const Texts& texts, std::size_t from = 0)
{
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : " ") + text.substr(from);
    return all;
}

TEST_F(Settings, AreWrittenAsTheTableSays)
{
    const std::string switchId = "VRAX:FCSwitchSettings:" + kLocalWwn, commonPart = "Config.UserPort.0.2.";
    for (const Cells& row : readRequests(SETTINGS, 8, kLocalWwn))
    {
        const std::string &wish = row[1], which = row[0].substr(row[0].find(' ') + 1);
        SCOPED_TRACE(row[0] + " " + wish + " " + row[2]);
        SetUp();
        const bool ofPort = row[0].compare(0, 4, "port") == 0;
        const std::string scenario = formatScenario(sim.scenario());
        const Changes portBefore = served<Port_Settings>(kPort2);
        const Changes switchBefore = served<Switch_Settings>(switchId);
        const auto reserved = sim.localSwitch().reserved;
        const std::string failing = row[2].substr(0, row[2].find(' '));
        if (!failing.empty())
            sim.failNext(failing);
        if (failing != row[2])
            clock.outlive();

        const Log_Capture log;
        const int status = ofPort ? modifyPort(idOf(std::stoi(which)), wish)
                                  : modifySwitch("VRAX:FCSwitchSettings:" + which, wish);
        EXPECT_EQ(std::to_string(status), row[3]);
        EXPECT_EQ(inARow(log.texts()), row[4]);
        EXPECT_EQ(status == 0 ? "" : Error::get(), row[5]);
        EXPECT_EQ(inARow(sim.writes(), ofPort ? commonPart.size() : 0), row[6]);

        if (status != 0)
            EXPECT_EQ(formatScenario(sim.scenario()), scenario) << "nothing of it";
        else if (ofPort)
            EXPECT_EQ(sim.calls("xpl_smlBatchSet"), 1U) << "one batch, also of nothing";
        EXPECT_EQ(sim.localSwitch().reserved, reserved);
        EXPECT_EQ(sim.localSwitch().name, "sim-switch");
        Changes port = ofPort && status == 0 ? with<Port_Settings>(kPort2, wish) : Changes();
        Changes ofSwitch = !ofPort && status == 0 ? with<Switch_Settings>(switchId, wish) : Changes();
        port.insert(portBefore.begin(), portBefore.end());
        ofSwitch.insert(switchBefore.begin(), switchBefore.end());
        EXPECT_EQ(served<Port_Settings>(kPort2), port) << "at once";
        EXPECT_EQ(served<Switch_Settings>(switchId), ofSwitch) << "at once";
        clock.outlive();
        port = ofPort ? with<Port_Settings>(kPort2, row[7]) : Changes();
        ofSwitch = ofPort ? Changes() : with<Switch_Settings>(switchId, row[7]);
        port.insert(portBefore.begin(), portBefore.end());
        ofSwitch.insert(switchBefore.begin(), switchBefore.end());
        Changes now = served<Port_Settings>(kPort2);
        EXPECT_EQ(now, port) << "as the switch has it";
        EXPECT_EQ(served<Switch_Settings>(switchId), ofSwitch) << "as the switch has it";
    }
}

TEST_F(Settings, OfAPortAreWrittenWhateverItsNumber)
{
    sim.open(simulator::SimSwitch::make().ports(300).scenario());
    makeMapsStale();
    EXPECT_EQ(modifyPort(idOf(299), "RequestedType=5"), 0);
    EXPECT_EQ(sim.writes(), Texts{"Config.UserPort.0.299.Type.F"});
}

// Nobody sees the instance between what the switch has and what is served.
TEST_F(Settings, AreWrittenUnderTheLockOfTheirMap)
{
    typedef VRAX_FCPortSettings_Provider Port_Provider;
    typedef VRAX_FCSwitchSettings_Provider Switch_Provider;
    const Texts ofPort = {"DataCache::calcPortIndex", "xpl_smlBatchSet"};
    const Texts ofSwitch = {"xpl_swSwitchGetConfig", "xpl_swSwitchSetConfig"};
    Texts noted;
    noteCallsUnderLock(Port_Provider::kIndex, ofPort, noted);
    noteCallsUnderLock(Switch_Provider::kIndex, ofSwitch, noted);
    modifyPort(kPort2, "RequestedType=5");
    EXPECT_EQ(noted, ofPort);
    noted.clear();
    modifySwitch("VRAX:FCSwitchSettings:" + kLocalWwn, "PreferredDomainID=9");
    EXPECT_EQ(noted, ofSwitch);
}

// The log tells what is changed, or that nothing is.
TEST_F(Settings, TellWhatTheyChange)
{
    const auto lines = [](const auto& run)
    {
        const Log_Capture log(kLogInfo);
        run();
        std::string all;
        for (const Log_Capture::Line& line : log.take())
            if (line.first == kLogInfo)
                all += line.second + "\n";
        return all;
    };
    const std::string wish = "RequestedSpeed=4250000000 RequestedType=5 RequestedIOStreamGuardState=2 "
                             "RequestedPerformanceTuningMode=2 DeviceScanEnable=true";
    EXPECT_EQ(lines([&] { modifyPort(kPort2, wish); }),
              "Changing RequestedSpeed\nChanging RequestedPort Type\nChanging RequestedIOStreamGuardState \n"
              "Changing DeviceScanEnable \n");
    EXPECT_EQ(lines([&] { modifySwitch("VRAX:FCSwitchSettings:" + kLocalWwn, ""); }), "Nothing to modify\n");
}

TEST_F(Settings, AnInstanceIdIsTakenApartWhenItIsOne)
{
    const std::string prefix = "VRAX:FCPortSettings:", switchWwn = kLocalWwn, portWwn = "200202a5c0de0001";
    struct Row
    {
        std::string id;
        bool taken;
    };
    for (const Row& row : {Row{prefix + switchWwn + ":" + portWwn, true},
                           Row{prefix + switchWwn + "x" + portWwn, true}, // the separator may be any
                           Row{prefix + switchWwn + ":" + portWwn.substr(1), false},
                           Row{prefix + switchWwn + ":" + portWwn + "0", false},
                           Row{"VRAX:FCPortSetting:" + switchWwn + ":" + portWwn + "0", false},
                           Row{"", false}})
    {
        String one("a"), other("b");
        EXPECT_EQ(VRAX_FCPortSettings_Provider::parseInstanceID(row.id.c_str(), one, other), row.taken)
            << row.id;
        EXPECT_EQ(one, row.taken ? switchWwn.c_str() : "a") << row.id;
        EXPECT_EQ(other, row.taken ? portWwn.c_str() : "b") << row.id;
    }
}

// Every load leaves the key on the diagnostic output.
TEST_F(Settings, OfTheSwitchArePrintedWhenTheyAreLoaded)
{
    clock.outlive();
    testing::internal::CaptureStdout();
    instances<VRAX_FCSwitchSettings_Provider>();
    instances<VRAX_FCSwitchSettings_Provider>();
    const std::string printed = testing::internal::GetCapturedStdout();
    const std::size_t first = printed.find("VRAX:FCSwitchSettings:" + kLocalWwn);
    EXPECT_NE(first, printed.npos) << printed;
    EXPECT_EQ(printed.find("VRAX_FCSwitchSettings", first), printed.npos) << "once: " << printed;
}

// A client may name a property and give it no value.
TEST_F(Settings, ThatAreEitherTrueOrFalseAreNotNull)
{
    const Owned<Port_Settings> port = keysOf<Port_Settings>(kPort2);
    const Owned<Port_Settings> portModel = keysOf<Port_Settings>(kPort2);
    portModel->DeviceScanEnable.set(true);
    EXPECT_EQ(VRAX_FCPortSettings_Provider().modify_instance(portModel.get(), port.get()),
              MODIFY_INSTANCE_INVALID_PARAMETER);
    EXPECT_STREQ(Error::get(), "DeviceScanEnable is true or false");
    const Owned<Switch_Settings> settings = keysOf<Switch_Settings>("VRAX:FCSwitchSettings:" + kLocalWwn);
    const Owned<Switch_Settings> model = keysOf<Switch_Settings>("VRAX:FCSwitchSettings:" + kLocalWwn);
    model->DomainIDLocked.set(true);
    EXPECT_EQ(VRAX_FCSwitchSettings_Provider().modify_instance(model.get(), settings.get()),
              MODIFY_INSTANCE_INVALID_PARAMETER);
    EXPECT_STREQ(Error::get(), "DomainIDLocked is true or false");
    EXPECT_EQ(sim.writes(), Texts());
}

// The switch may have a priority that there is no name for.
TEST_F(Settings, WithoutAKnownPriorityThereAreNone)
{
    sim.changeSwitch([](simulator::SwitchScenario& facts) { facts.principalPriority = 0; });
    expectLoadFails<VRAX_FCSwitchSettings_Provider>(
        "Exception[CRIT]:switchProviders/VRAX_FCSwitchSettings_Provider:load[] Invalid value for "
        "PrincipalPriority");
}

} // namespace
} // namespace cimple
