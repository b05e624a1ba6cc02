// Tests of the lists of TF ports and of the edit of the configuration in which they are written.
#include "platform/xpl_fzs.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

using namespace simulator;

namespace
{

typedef std::vector<std::string> Texts;

const std::string kPrimary = "Config.UserPort.0.0.PrimaryTFPortMap";
const std::string kBackup = "Config.UserPort.0.0.BackupTFPortMap";
const std::string kNotPresent = "status " + std::to_string(XPL_NOT_AVAILABLE);

// Ports 0 and 1 are of type TH, 2 to 4 of type TF, 5 of neither; port 0 forwards to 2.
SimSwitchSetup transparent()
{
    SimSwitchSetup setup =
        SimSwitch::make().ports(6).switchFacts([](SwitchScenario& facts) { facts.transparent = true; });
    for (int number = 0; number < 5; ++number)
        setup.port(number, [=](PortScenario& port) { port.type = number < 2 ? PortType::th : PortType::tf; });
    return setup.port(0, [](PortScenario& port) { port.primaryTfPorts = {2}; });
}

int command(const std::string& name)
{
    return setKey("Cmd.Switch." + name);
}

// Gives the commands, which succeed.
void give(std::initializer_list<const char*> commands)
{
    for (const char* one : commands)
        EXPECT_EQ(XPL_OK, command(one)) << one;
}

TEST(ConfigEdit, TakesEffectWhenItIsSavedAndActivated)
{
    SimSwitch sim = transparent();
    EXPECT_EQ("2", valueOf(kPrimary));
    EXPECT_EQ("None", valueOf(kBackup));
    EXPECT_EQ(kNotPresent, valueOf("Config.UserPort.0.2.PrimaryTFPortMap")) << "TF ports have no list";
    EXPECT_EQ(kNotPresent, valueOf("Config.UserPort.0.5.BackupTFPortMap"));

    give({"ReqAdmin", "EditConfig.sum"});
    EXPECT_EQ(XPL_INVALID_PARAMETER, command("EditConfig.sum")) << "one at a time";
    EXPECT_EQ(XPL_OK, setKey(kPrimary + ".2,4"));
    EXPECT_EQ(XPL_OK, setKey(kBackup + ".3"));
    EXPECT_EQ(XPL_INVALID_PARAMETER, command("ActConfig")) << "nothing is saved";
    give({"SaveConfig.sum"});
    EXPECT_EQ(XPL_OK, setKey(kBackup + ".4,3")); // not saved
    EXPECT_EQ("2", valueOf(kPrimary)) << "nothing is in force yet";
    give({"ActConfig"});
    EXPECT_EQ("2,4", valueOf(kPrimary));
    EXPECT_EQ("3", valueOf(kBackup));
    EXPECT_EQ(XPL_INVALID_PARAMETER, setKey(kPrimary + ".3")) << "activation ends the edit";
    EXPECT_EQ(XPL_INVALID_PARAMETER, command("CancelConfig"));

    give({"EditConfig.sum"});
    EXPECT_EQ(XPL_OK, setKey(kPrimary + ".None"));
    give({"SaveConfig.sum", "ActConfig", "RelAdmin"});
    EXPECT_EQ("None", valueOf(kPrimary));

    // It is kept over a restart.
    const Scenario saved = parseScenario(formatScenario(sim.scenario()), "saved");
    sim.open(saved);
    EXPECT_EQ("None", valueOf(kPrimary));
    EXPECT_EQ("3", valueOf(kBackup));
}

TEST(ConfigEdit, ThatIsGivenUpChangesNothing)
{
    SimSwitch sim = transparent();
    const auto cancel = [](SimSwitch&) { give({"CancelConfig", "RelAdmin"}); };
    const auto release = [](SimSwitch&) { give({"RelAdmin"}); };
    const auto vanish = [](SimSwitch& one) { one.adminOwnerGoes(); };
    for (void (*end)(SimSwitch&) : {+cancel, +release, +vanish})
    {
        give({"ReqAdmin", "EditConfig.sum"});
        EXPECT_EQ(XPL_OK, setKey(kPrimary + ".3"));
        give({"SaveConfig.sum"});
        end(sim);
        EXPECT_EQ("", sim.adminModeHolder());
        give({"ReqAdmin"});
        EXPECT_EQ(XPL_INVALID_PARAMETER, command("ActConfig")) << "the next holder has no edit";
        give({"EditConfig.sum"});
        EXPECT_EQ(XPL_INVALID_PARAMETER, command("ActConfig")) << "and the next edit nothing saved";
        give({"RelAdmin"});
        EXPECT_EQ("2", valueOf(kPrimary));
    }
}

TEST(ConfigEdit, NeedsTheAdministrativeMode)
{
    SimSwitch sim = transparent();
    const std::string writes[] = {"Cmd.Switch.EditConfig.sum",
                                  kPrimary + ".3",
                                  "Cmd.Switch.SaveConfig.sum",
                                  "Cmd.Switch.ActConfig",
                                  "Cmd.Switch.CancelConfig"};
    for (const std::string& write : writes)
        EXPECT_EQ(XPL_INVALID_PARAMETER, setKey(write)) << write;
    sim.holdAdminMode("console");
    for (const std::string& write : writes)
        EXPECT_EQ(XPL_FZS_LOCKED, setKey(write)) << write;
    EXPECT_EQ(XPL_OK, setKey("Config.UserPort.0.0.LinkSpeed.4Gb/s")) << "other attributes need no edit";
    sim.releaseAdminMode();
    give({"ReqAdmin"});
    for (const std::string& write : writes)
        if (write != writes[0])
            EXPECT_EQ(XPL_INVALID_PARAMETER, setKey(write)) << write << " without an edit";
}

TEST(ConfigEdit, ListsAreChecked)
{
    SimSwitch sim = transparent();
    std::string tooLong = "2";
    while (tooLong.size() <= kTfListSize)
        tooLong += ",4";
    give({"ReqAdmin", "EditConfig.sum"});
    for (const std::string& write :
         {kPrimary + ".4,2,3", kPrimary + ".None", std::string("Config.UserPort.0.1.BackupTFPortMap.4")})
        EXPECT_EQ(XPL_OK, setKey(write)) << write;
    EXPECT_EQ(XPL_UNKNOWN_KEY, setKey("Config.UserPort.0.9.PrimaryTFPortMap.4")) << "no such port";
    EXPECT_EQ(XPL_INVALID_PARAMETER, setKey("Config.UserPort.0.2.PrimaryTFPortMap.4"));
    EXPECT_EQ(XPL_INVALID_PARAMETER, setKey("Config.UserPort.0.5.PrimaryTFPortMap.None"));
    // A port of another type, none, 2 in 16 bits, and what is no list.
    for (const std::string& list :
         Texts{"1", "9", "65538", "2,2", "", "none", "2, 3", "2,", ",2", "2,None", "02", "+2", tooLong})
        EXPECT_EQ(XPL_INVALID_PARAMETER, setKey(kPrimary + "." + list)) << list;
    give({"SaveConfig.sum", "ActConfig"});
    EXPECT_EQ("None", valueOf(kPrimary)) << "the last write that was taken counts";
    EXPECT_EQ("4", valueOf("Config.UserPort.0.1.BackupTFPortMap"));
}

// A port that a list depends on keeps its type, so that what is saved can be read again.
TEST(ConfigEdit, TypesAndListsFitEachOther)
{
    SimSwitch sim = transparent();
    const std::string type = "Config.UserPort.0.";
    EXPECT_EQ(XPL_INVALID_PARAMETER, setKey(type + "0.Type.GL")) << "it has a list";
    EXPECT_EQ(XPL_INVALID_PARAMETER, setKey(type + "2.Type.TH")) << "it is in a list";
    EXPECT_EQ(XPL_OK, setKey(type + "0.Type.TH"));
    EXPECT_EQ(XPL_OK, setKey(type + "2.Type.TF"));
    EXPECT_EQ(XPL_OK, setKey(type + "1.Type.TF"));

    give({"ReqAdmin", "EditConfig.sum"});
    EXPECT_EQ(XPL_OK, setKey(kPrimary + ".1,2"));
    give({"SaveConfig.sum"});
    EXPECT_EQ(XPL_OK, setKey(type + "1.Type.GL"));
    EXPECT_EQ(XPL_INVALID_PARAMETER, command("ActConfig"));
    EXPECT_EQ("2", valueOf(kPrimary));
    EXPECT_EQ(XPL_OK, setKey(type + "1.Type.TF"));
    give({"ActConfig"});
    EXPECT_EQ("1,2", valueOf(kPrimary));
}

TEST(ConfigEdit, TheShippedSwitchForwardsItsPorts)
{
    const SimSwitch sim(readScenario(SCENARIO_DIR "/transparent.json"));
    EXPECT_EQ("12,13", valueOf("Config.UserPort.0.4.PrimaryTFPortMap"));
    EXPECT_EQ("14,12", valueOf("Config.UserPort.0.4.BackupTFPortMap"));
    EXPECT_EQ("TH", valueOf("Oper.UserPort.0.0.RunningType"));
}

} // namespace
