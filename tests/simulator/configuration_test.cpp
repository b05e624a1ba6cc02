// Tests of backing up and restoring the configuration of the switch, and of the directory that its files
// are in.
#include "platform/configuration.h"
#include "platform/xpl_fzs.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"
#include "tests/support/Full_Disk.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

using namespace simulator;
namespace fs = std::filesystem;

namespace
{

fs::path place(const char* switchPath = kConfigImage)
{
    char found[kPlaceSize] = "";
    EXPECT_EQ(0, locateSwitchFile(switchPath, found, sizeof found));
    return found;
}

std::string image()
{
    std::ifstream file(place(), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void writeImage(const std::string& text)
{
    std::ofstream(place(), std::ios::binary) << text;
}

// In the administrative mode.
int restore()
{
    EXPECT_EQ(0, reqAdminMode());
    const int status = restoreConfig();
    EXPECT_EQ(0, releaseAdminMode());
    return status;
}

// What a fabric is apart from its logs.
std::string stateOf(const SimSwitch& sim)
{
    Scenario scenario = sim.scenario();
    for (SwitchScenario& one : scenario.switches)
    {
        one.userLog.clear();
        one.alarmLog.clear();
    }
    return formatScenario(scenario);
}

class ConfigurationImage : public testing::Test
{
  protected:
    ConfigurationImage() : sim(readScenario(SCENARIO_DIR "/default.json")) { fs::remove(place()); }

    SimSwitch sim;
};

TEST_F(ConfigurationImage, RestoresWhatIsConfiguredAndNothingElse)
{
    ASSERT_EQ(0, backupConfig());
    const std::string saved = image();
    ASSERT_FALSE(sim.activeZoneSetOf(sim.localSwitch().domain).name.empty());
    sim.setCounter(5, "TotalLIPRecv", 31);
    sim.failPort(6);
    sim.failSupply(1);
    sim.removeNode("502BA4C2C2113000");
    const std::string before = stateOf(sim);

    xpl_swSwitchConfig record = switchRecord();
    std::strcpy(record.symbolicName, "renamed");
    record.adminState = XPL_ADMIN_OFFLINE;
    record.preferredDomainId = 77;
    record.reserved3[7] ^= 0xFF;
    ASSERT_EQ(0, xpl_swSwitchSetConfig(hSwitch, &record));
    xpl_swPortConfig port = portRecord(3);
    port.symbolicName[0] = '\0';
    port.adminState = XPL_ADMIN_DIAGNOSTICS;
    port.reserved[100] ^= 0xFF;
    ASSERT_EQ(0, xpl_swPortSetConfig(hSwitch, 3, &port));
    for (const char* key : {"Config.UserPort.0.3.LinkSpeed.2Gb/s",
                            "Config.UserPort.0.3.Type.F",
                            "Config.UserPort.0.3.RSCNEnable.True",
                            "Config.UserPort.0.3.AutoPerfTuning.False",
                            "Config.UserPort.0.3.MFSEnable.True",
                            "Config.UserPort.0.3.LCFEnable.True",
                            "Config.UserPort.0.3.VIEnable.True",
                            "Config.UserPort.0.3.ScanEnable.False",
                            "Config.Switch.Location.elsewhere",
                            "Config.Switch.SNMPEnabled.False",
                            "Config.Zoning.DefaultZone.True"})
        setKey(key);
    ASSERT_EQ(0, xpl_fzsDeactivateZoneset(hSwitch));
    ASSERT_EQ(0, xpl_fzsDeleteZone(hSwitch, "virt-rack7-01_array-b"));
    ASSERT_EQ(0, restore());
    EXPECT_EQ("", sim.adminModeHolder());
    EXPECT_EQ(before, stateOf(sim));
    EXPECT_EQ("1f", valueOf("Oper.UserPort.0.5.C64.TotalLIPRecv"));
    ASSERT_EQ(0, backupConfig());
    EXPECT_EQ(saved, image()) << "all that an image holds";
}

TEST_F(ConfigurationImage, IsRefusedWholeOrTakenWhole)
{
    ASSERT_EQ(0, backupConfig());
    const std::string good = image();
    const auto changed = [&good](const std::string& from, const std::string& to)
    {
        std::string text = good;
        EXPECT_NE(text.npos, text.find(from)) << from;
        return text.replace(text.find(from), from.size(), to);
    };
    const std::string name = "\"name\": \"core-a\"";
    const struct
    {
        std::string text;
        std::string reason; // in the user log
    } rows[] = {
        {"", "restore refused: image:1:1: "},
        {good.substr(0, good.size() / 2), "restore refused: image:"},
        {changed(name, name + ", \"nmae\": 1"), "nmae"},
        {changed("100002a5c41d02e0", "100002a5c41d02e1"), "expected the image of 100002a5c41d02e0"},
        {changed("\"number\": 23", "\"number\": 99"), "the switch has no port 99"},
        {changed("\"number\": 3,", "\"number\": 3, \"speed\": \"20Gb/s\","), "beyond speedCapability"},
        {changed("\"number\": 3,", "\"number\": 3, \"speed\": \"20Gb/s\", \"speedCapability\": \"20Gb/s\","),
         "beyond speedCapability"}, // what the hardware is, the image does not say
        {changed("\"zones\": [", "\"zones\": [ {\"name\": \"x y\"},"),
         "restore refused: image: /zoning/zones/0"},
        {std::string(16 * 1024 * 1024 + 1, ' '), "File too large"},
        {"none", "cannot open"},
    };
    const std::string before = stateOf(sim);
    for (const auto& row : rows)
    {
        writeImage(row.text);
        if (row.text == "none")
            fs::remove(place());
        EXPECT_EQ(XPL_INVALID_PARAMETER, restore()) << row.reason;
        EXPECT_EQ(before, stateOf(sim)) << row.reason;
        EXPECT_PRED_FORMAT2(testing::IsSubstring, row.reason, valueOf("Oper.Switch.LastLogEntry"));
    }
    writeImage(changed(name, "\"name\": \"other\""));
    EXPECT_EQ(0, restore());
    EXPECT_EQ("other", sim.localSwitch().name);
}

TEST_F(ConfigurationImage, NeedsTheCallersAdministrativeMode)
{
    ASSERT_EQ(0, backupConfig());
    const std::string before = stateOf(sim);
    EXPECT_EQ(XPL_INVALID_PARAMETER, restoreConfig()) << "nobody has the mode";
    EXPECT_EQ(XPL_INVALID_PARAMETER, releaseAdminMode());
    const std::pair<const char*, std::function<void()>> holders[] = {
        {"console", [this] { sim.holdAdminMode("console"); }},
        {"admin command", [] { setKey("Cmd.Switch.ReqAdmin"); }},
        {"configuration restore", [] { std::thread([] { EXPECT_EQ(0, reqAdminMode()); }).join(); }},
    };
    for (const auto& [holder, takes] : holders)
    {
        takes();
        for (const auto call : {reqAdminMode, restoreConfig, releaseAdminMode})
            EXPECT_EQ(XPL_FZS_LOCKED, call());
        EXPECT_EQ(holder, sim.adminModeHolder()) << "it is not taken from whoever has it";
        sim.adminOwnerGoes();
    }
    EXPECT_EQ(before, stateOf(sim));
}

TEST_F(ConfigurationImage, IsNeverHalfWritten)
{
    const auto backupFails = []
    {
        const Full_Disk disk(1000);
        EXPECT_NE(0, backupConfig());
    };
    backupFails();
    EXPECT_FALSE(fs::exists(place())) << "no half image";
    ASSERT_EQ(0, backupConfig());
    const std::string old = image();
    sim.changeSwitch([](SwitchScenario& one) { one.name = "new"; });
    backupFails();
    EXPECT_EQ(old, image());
    EXPECT_EQ(1, std::distance(fs::directory_iterator(place().parent_path()), fs::directory_iterator()));
}

// The file's time is what clients are told of the configuration.
TEST_F(ConfigurationImage, IsWrittenAnewOnlyWhenItIsAnother)
{
    ASSERT_EQ(0, backupConfig());
    const fs::file_time_type long_ago = fs::last_write_time(place()) - std::chrono::hours(1);
    fs::last_write_time(place(), long_ago);
    ASSERT_EQ(0, backupConfig());
    EXPECT_EQ(long_ago, fs::last_write_time(place()));
    setKey("Config.Switch.Location.elsewhere");
    ASSERT_EQ(0, backupConfig());
    EXPECT_NE(long_ago, fs::last_write_time(place()));
}

TEST_F(ConfigurationImage, LiesWhereOnlyItsUserMayEnter)
{
    for (fs::path one = place().parent_path(); one.filename() != "norvik"; one = one.parent_path())
        EXPECT_EQ(fs::perms::owner_all, fs::status(one).permissions()) << one;
    char found[kPlaceSize] = "untouched";
    for (const char* path : {"norvik/conf/images/configdata", "/norvik/../../etc/passwd", "/..", ""})
        EXPECT_NE(0, locateSwitchFile(path, found, sizeof found)) << path;
    EXPECT_NE(0, locateSwitchFile(kConfigImage, found, 10));
    EXPECT_STREQ("untouched", found);
}

} // namespace
