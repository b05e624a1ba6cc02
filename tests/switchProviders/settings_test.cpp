// Tests of settings that are written: what goes to the switch in which order, what is seen at once and after
// the next load, and what a refusal leaves behind.
#include "simulator/scenario/scenario_json.h"
#include "switchProviders/VRAX_FCPortSettings_Provider.h"
#include "switchProviders/VRAX_FCSwitchSettings_Provider.h"
#include "tests/common/testing/Switch_Test.h"

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;
typedef VRAX_FCPortSettings Port_Settings;
typedef VRAX_FCSwitchSettings Switch_Settings;

const std::string kWwn = "100002a5c0de0001";
const std::string kPort2 = "VRAX:FCPortSettings:" + kWwn + ":200202a5c0de0001";

// What a client that asks for one thing may hand in besides; it is not to count.
void fillUp(Port_Settings& one)
{
    one.RequestedSpeed.set(1062500000);
    one.AutoSenseSpeed.set(true);
    one.RequestedType.set(6);
    one.RequestedIOStreamGuardState.set(1);
    one.RequestedPerformanceTuningMode.set(3);
    one.DeviceScanEnable.set(false);
}
void fillUp(Switch_Settings& one)
{
    one.PreferredDomainID.set(100);
    one.DomainIDLocked.set(true);
    one.PrincipalPriority.set(3);
}

// Leaves what a model says: which properties are carried, without their values.
template <class TYPE>
void blank(Property<TYPE>& property)
{
    property.value = TYPE();
}
void blank(Port_Settings& one)
{
    blank(one.RequestedSpeed);
    blank(one.AutoSenseSpeed);
    blank(one.RequestedType);
    blank(one.RequestedIOStreamGuardState);
    blank(one.RequestedPerformanceTuningMode);
    blank(one.DeviceScanEnable);
}
void blank(Switch_Settings& one)
{
    blank(one.PreferredDomainID);
    blank(one.DomainIDLocked);
    blank(one.PrincipalPriority);
}

// What a request does: its result, what is told to the client, the critical lines and the writes.
struct Outcome
{
    std::string text;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& one) { return out << one.text; }
    bool operator==(const Outcome& other) const { return text == other.text; }
};

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

    // Modifies to what `wish` sets, which is all that the model carries.
    template <class CLASS>
    Outcome modify(const std::string& id, const std::function<void(CLASS&)>& wish)
    {
        const Owned<CLASS> model = keysOf<CLASS>(id);
        wish(*model);
        blank(*model);
        const Owned<CLASS> instance = keysOf<CLASS>(id);
        fillUp(*instance);
        wish(*instance);
        Error::clear();
        const Log_Capture log;
        const int status =
            typename Registered<CLASS>::Provider().modify_instance(model.get(), instance.get());
        Outcome outcome{std::to_string(status)};
        for (const Texts& texts : {log.texts(), Texts{status != 0 ? Error::get() : ""}, sim.writes()})
        {
            outcome.text += " |";
            for (const std::string& text : texts)
                outcome.text += text.empty() ? "" : " " + text;
        }
        return outcome;
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

    // What differs from `before`.
    static Changes since(const Changes& before, Changes now)
    {
        for (const auto& [name, value] : before)
            if (const auto found = now.find(name); found != now.end() && found->second == value)
                now.erase(found);
        return now;
    }
};

TEST_F(Settings, OfAPortAreWrittenInOrderAndReadBack)
{
    const auto mode = [](uint16 value)
    { return [value](Port_Settings& one) { one.RequestedPerformanceTuningMode.set(value); }; };
    const auto flags = [](const char* automatic, const char* vi, const char* mfs, const char* lcf)
    {
        return Texts{std::string("AutoPerfTuning.") + automatic,
                     std::string("VIEnable.") + vi,
                     std::string("MFSEnable.") + mfs,
                     std::string("LCFEnable.") + lcf};
    };
    struct Row
    {
        std::function<void(Port_Settings&)> wish;
        Texts writes;
        Changes readBack;
    };
    const Row rows[] = {
        {[](Port_Settings&) {}, {}, {}},
        {[](Port_Settings& one) { one.RequestedSpeed.set(4250000000); },
         {"LinkSpeed.4Gb/s"},
         {{"RequestedSpeed", "4250000000"}, {"AutoSenseSpeed", "false"}}},
        {[](Port_Settings& one)
         {
             one.RequestedSpeed.set(2125000000);
             one.AutoSenseSpeed.set(false);
         },
         {"LinkSpeed.2Gb/s"},
         {{"RequestedSpeed", "2125000000"}, {"AutoSenseSpeed", "false"}}},
        {[](Port_Settings& one)
         {
             one.RequestedSpeed.set(0);
             one.AutoSenseSpeed.set(true);
         },
         {"LinkSpeed.Auto"},
         {}},
        // By itself it asks for nothing.
        {[](Port_Settings& one) { one.AutoSenseSpeed.set(false); }, {}, {}},
        {[](Port_Settings& one) { one.RequestedType.set(5); }, {"Type.F"}, {{"RequestedType", "5"}}},
        {[](Port_Settings& one) { one.RequestedIOStreamGuardState.set(2); },
         {"RSCNEnable.False"},
         {{"RequestedIOStreamGuardState", "2"}}},
        {[](Port_Settings& one) { one.DeviceScanEnable.set(false); },
         {"ScanEnable.False"},
         {{"DeviceScanEnable", "false"}}},
        {[](Port_Settings& one) { one.DeviceScanEnable.set(true); }, {"ScanEnable.True"}, {}},
        {mode(0), {}, {}},
        {mode(1), flags("True", "False", "False", "False"), {}},
        {mode(2), flags("False", "False", "False", "False"), {{"RequestedPerformanceTuningMode", "2"}}},
        {mode(3), flags("False", "False", "True", "False"), {{"RequestedPerformanceTuningMode", "3"}}},
        {mode(4), flags("False", "True", "False", "False"), {{"RequestedPerformanceTuningMode", "4"}}},
        {mode(5), flags("False", "False", "False", "True"), {{"RequestedPerformanceTuningMode", "5"}}},
        {mode(6), flags("False", "True", "False", "True"), {{"RequestedPerformanceTuningMode", "6"}}},
        {mode(7), {}, {}},
        {[](Port_Settings& one)
         {
             one.DeviceScanEnable.set(false);
             one.RequestedPerformanceTuningMode.set(6);
             one.RequestedIOStreamGuardState.set(3);
             one.RequestedType.set(2);
             one.RequestedSpeed.set(8500000000);
         },
         {"LinkSpeed.8Gb/s",
          "Type.G",
          "RSCNEnable.True",
          "AutoPerfTuning.False",
          "VIEnable.True",
          "MFSEnable.False",
          "LCFEnable.True",
          "ScanEnable.False"},
         {{"AutoSenseSpeed", "false"},
          {"RequestedType", "2"},
          {"RequestedIOStreamGuardState", "3"},
          {"RequestedPerformanceTuningMode", "6"},
          {"DeviceScanEnable", "false"}}},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE("row " + std::to_string(&row - rows));
        SetUp();
        const Changes before = served<Port_Settings>(kPort2);
        const Owned<Port_Settings> wish = keysOf<Port_Settings>(kPort2);
        row.wish(*wish);
        std::string writes;
        for (const std::string& write : row.writes)
            writes += " Config.UserPort.0.2." + write;
        EXPECT_EQ(modify<Port_Settings>(kPort2, row.wish).text, "0 | | |" + writes);
        EXPECT_EQ(sim.calls("xpl_smlBatchSet"), 1U) << "one batch, also of nothing";
        Changes asked = described(*wish);
        asked.insert(before.begin(), before.end());
        EXPECT_EQ(served<Port_Settings>(kPort2), asked) << "at once";
        clock.outlive();
        EXPECT_EQ(since(before, served<Port_Settings>(kPort2)), row.readBack) << "as the switch has it";
    }
}

TEST_F(Settings, OfAPortAreWrittenWhateverItsNumber)
{
    sim.open(simulator::SimSwitch::make().ports(300).scenario());
    makeMapsStale();
    EXPECT_EQ(modify<Port_Settings>("VRAX:FCPortSettings:" + kWwn + ":212b02a5c0de0001",
                                    [](Port_Settings& one) { one.RequestedType.set(5); })
                  .text,
              "0 | | | Config.UserPort.0.299.Type.F");
}

TEST_F(Settings, OfTheSwitchAreWrittenInOneRecord)
{
    const std::string id = "VRAX:FCSwitchSettings:" + kWwn;
    struct Row
    {
        std::function<void(Switch_Settings&)> wish;
        Changes changes;
    };
    const Row rows[] = {
        {[](Switch_Settings& one) { one.PreferredDomainID.set(239); }, {{"PreferredDomainID", "239"}}},
        {[](Switch_Settings& one) { one.DomainIDLocked.set(true); }, {{"DomainIDLocked", "true"}}},
        {[](Switch_Settings& one) { one.PrincipalPriority.set(2); }, {{"PrincipalPriority", "2"}}},
        {[](Switch_Settings& one) { one.PrincipalPriority.set(3); }, {{"PrincipalPriority", "3"}}},
        {[](Switch_Settings& one)
         {
             one.PreferredDomainID.set(8);
             one.DomainIDLocked.set(true);
             one.PrincipalPriority.set(4);
         },
         {{"PreferredDomainID", "8"}, {"DomainIDLocked", "true"}}},
        // As it is already.
        {[](Switch_Settings&) {}, {}},
        {[](Switch_Settings& one)
         {
             one.PreferredDomainID.set(7);
             one.DomainIDLocked.set(false);
             one.PrincipalPriority.set(4);
         },
         {}},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE("row " + std::to_string(&row - rows));
        SetUp();
        const Changes before = served<Switch_Settings>(id);
        const auto reserved = sim.localSwitch().reserved;
        EXPECT_EQ(modify<Switch_Settings>(id, row.wish).text,
                  row.changes.empty() ? "0 | | |" : "0 | | | switch");
        EXPECT_EQ(since(before, served<Switch_Settings>(id)), row.changes) << "at once";
        clock.outlive();
        EXPECT_EQ(since(before, served<Switch_Settings>(id)), row.changes) << "as the switch has it";
        EXPECT_EQ(sim.localSwitch().reserved, reserved);
        EXPECT_EQ(sim.localSwitch().name, "sim-switch");
    }
}

TEST_F(Settings, ThatAreRefusedLeaveSwitchAndInstanceAsTheyWere)
{
    const std::string id = "VRAX:FCSwitchSettings:" + kWwn;
    const auto port = [this](const std::string& of, const std::function<void(Port_Settings&)>& wish)
    { return [=] { return modify<Port_Settings>(of, wish); }; };
    const auto onSwitch = [this](const std::string& of, const std::function<void(Switch_Settings&)>& wish)
    { return [=] { return modify<Switch_Settings>(of, wish); }; };
    const auto typeF = [](Port_Settings& one) { one.RequestedType.set(5); };
    const auto domain9 = [](Switch_Settings& one) { one.PreferredDomainID.set(9); };
    const std::string ofPort = "Exception[CRIT]:switchProviders/VRAX_FCPortSettings_Provider:";
    const std::string ofSwitch = "Exception[CRIT]:switchProviders/VRAX_FCSwitchSettings_Provider:";
    struct Row
    {
        std::function<Outcome()> run;
        const char* failing; // a call that fails, or none
        bool stale;          // the map is
        std::string outcome;
    };
    const Row rows[] = {
        {port("VRAX:FCPortSettings:" + kWwn + ":20ff02a5c0de0001", typeF),
         "",
         false,
         "100 | | Target instance not found |"},
        {port(kPort2, typeF),
         "xpl_smlGetBatch",
         true,
         "104 | " + ofPort + "load[] Unable to get port settings " + ofPort +
             "modify_instance[] Load failed for VRAX_FCPortSettings | Load failed for VRAX_FCPortSettings |"},
        {port(kPort2, typeF),
         "DataCache::calcPortIndex",
         false,
         "104 | " + ofPort +
             "modify_instance[] Unable to calculate port index | Unable to calculate port index |"},
        {port(kPort2, typeF),
         "xpl_smlBatchSet",
         false,
         "104 | " + ofPort +
             "modify_instance[] Unable to set FCPortSetting data | Unable to set FCPortSetting data: status "
             "5 |"},
        // Faster than the port can be, a speed and a type that there are not.
        {port(kPort2, [](Port_Settings& one) { one.RequestedSpeed.set(25500000000); }),
         "",
         false,
         "104 | " + ofPort +
             "modify_instance[] Unable to set FCPortSetting data | Unable to set FCPortSetting data: "
             "RequestedSpeed, Config.UserPort.0.2.LinkSpeed.20Gb/s: status 9 | "
             "Config.UserPort.0.2.LinkSpeed.20Gb/s"},
        {port(kPort2, [](Port_Settings& one) { one.RequestedSpeed.set(0); }),
         "",
         false,
         "104 | " + ofPort +
             "modify_instance[] Unable to set FCPortSetting data | Unable to set FCPortSetting data: "
             "RequestedSpeed, Config.UserPort.0.2.LinkSpeed.ERROR: status 9 | "
             "Config.UserPort.0.2.LinkSpeed.ERROR"},
        {port(kPort2, [](Port_Settings& one) { one.RequestedType.set(99); }),
         "",
         false,
         "104 | " + ofPort +
             "modify_instance[] Unable to set FCPortSetting data | Unable to set FCPortSetting data: "
             "RequestedType, Config.UserPort.0.2.Type.ERROR: status 9 | Config.UserPort.0.2.Type.ERROR"},
        // The property is named by which of several writes was refused.
        {port(kPort2,
              [](Port_Settings& one)
              {
                  one.RequestedPerformanceTuningMode.set(1);
                  one.DeviceScanEnable.set(true);
              }),
         "Config.UserPort.0.2.ScanEnable.True",
         false,
         "104 | " + ofPort +
             "modify_instance[] Unable to set FCPortSetting data | Unable to set FCPortSetting data: "
             "DeviceScanEnable, Config.UserPort.0.2.ScanEnable.True: status 5 | "
             "Config.UserPort.0.2.AutoPerfTuning.True Config.UserPort.0.2.VIEnable.False "
             "Config.UserPort.0.2.MFSEnable.False Config.UserPort.0.2.LCFEnable.False "
             "Config.UserPort.0.2.ScanEnable.True"},
        {onSwitch("VRAX:FCSwitchSettings:100002a5c0de0002", domain9),
         "",
         false,
         "104 | " + ofSwitch +
             "modify_instance[] Required instance was not found in the map | Required instance was not found "
             "in the map |"},
        {onSwitch(id, domain9),
         "get_Local_Switch_World_Wide_Name",
         true,
         "104 | " + ofSwitch + "load[] Unable to retrieve localWWN " + ofSwitch +
             "modify_instance[] VRAX_FCSwitchSettings load failed | VRAX_FCSwitchSettings load failed |"},
        {onSwitch(id, domain9),
         "xpl_swSwitchGetConfig",
         false,
         "104 | " + ofSwitch +
             "modify_instance[] xpl_swSwitchGetConfig failed | xpl_swSwitchGetConfig failed |"},
        {onSwitch(id, domain9),
         "xpl_swSwitchSetConfig",
         false,
         "104 | " + ofSwitch +
             "modify_instance[] xpl_swSwitchSetConfig Failed | "
             "xpl_swSwitchSetConfig Failed: PreferredDomainID = 9: status 5 |"},
        {onSwitch(id,
                  [](Switch_Settings& one)
                  {
                      one.PreferredDomainID.set(240);
                      one.DomainIDLocked.set(true);
                  }),
         "",
         false,
         "104 | " + ofSwitch +
             "modify_instance[] xpl_swSwitchSetConfig Failed | "
             "xpl_swSwitchSetConfig Failed: PreferredDomainID = 240, DomainIDLocked = 1: status 9 | switch"},
        // Not even what could have been changed.
        {onSwitch(id,
                  [](Switch_Settings& one)
                  {
                      one.PreferredDomainID.set(9);
                      one.PrincipalPriority.set(5);
                  }),
         "",
         false,
         "102 | | PrincipalPriority is 2 (principal), 3 (subordinate) or 4 (any) |"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE("row " + std::to_string(&row - rows));
        SetUp();
        const std::string scenario = formatScenario(sim.scenario());
        const Changes portBefore = served<Port_Settings>(kPort2);
        const Changes switchBefore = served<Switch_Settings>(id);
        if (*row.failing != '\0')
            sim.failNext(row.failing);
        if (row.stale)
            clock.outlive();
        EXPECT_EQ(row.run().text, row.outcome);
        EXPECT_EQ(formatScenario(sim.scenario()), scenario);
        for (int loads = 0; loads < 2; ++loads)
        {
            EXPECT_EQ(served<Port_Settings>(kPort2), portBefore);
            EXPECT_EQ(served<Switch_Settings>(id), switchBefore);
            clock.outlive();
        }
    }
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
    modify<Port_Settings>(kPort2, [](Port_Settings& one) { one.RequestedType.set(5); });
    EXPECT_EQ(noted, ofPort);
    noted.clear();
    modify<Switch_Settings>("VRAX:FCSwitchSettings:" + kWwn,
                            [](Switch_Settings& one) { one.PreferredDomainID.set(9); });
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
    const auto modifyPort = [this](const std::function<void(Port_Settings&)>& wish)
    {
        const Owned<Port_Settings> instance = keysOf<Port_Settings>(kPort2);
        wish(*instance);
        VRAX_FCPortSettings_Provider().modify_instance(instance.get(), instance.get());
    };
    EXPECT_EQ(lines(
                  [&]
                  {
                      modifyPort(
                          [](Port_Settings& one)
                          {
                              one.RequestedSpeed.set(4250000000);
                              one.RequestedType.set(5);
                              one.RequestedIOStreamGuardState.set(2);
                              one.RequestedPerformanceTuningMode.set(2);
                              one.DeviceScanEnable.set(true);
                          });
                  }),
              "Changing RequestedSpeed\nChanging RequestedPort Type\nChanging RequestedIOStreamGuardState \n"
              "Changing DeviceScanEnable \n");
    const Owned<Switch_Settings> same = keysOf<Switch_Settings>("VRAX:FCSwitchSettings:" + kWwn);
    EXPECT_EQ(lines([&] { VRAX_FCSwitchSettings_Provider().modify_instance(same.get(), same.get()); }),
              "Nothing to modify\n");
}

TEST_F(Settings, AnInstanceIdIsTakenApartWhenItIsOne)
{
    const std::string prefix = "VRAX:FCPortSettings:", switchWwn = kWwn, portWwn = "200202a5c0de0001";
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
    const std::size_t first = printed.find("VRAX:FCSwitchSettings:" + kWwn);
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
    const Owned<Switch_Settings> settings = keysOf<Switch_Settings>("VRAX:FCSwitchSettings:" + kWwn);
    const Owned<Switch_Settings> model = keysOf<Switch_Settings>("VRAX:FCSwitchSettings:" + kWwn);
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
