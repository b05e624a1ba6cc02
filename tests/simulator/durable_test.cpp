// Tests of saving a fabric and starting from it again, also when saving is cut short.
#include "simulator/open.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"
#include "tests/support/Full_Disk.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

using namespace simulator;
namespace fs = std::filesystem;

namespace
{

class Durable : public testing::Test
{
  protected:
    Durable()
    {
        std::string pattern = (fs::temp_directory_path() / "simulator-XXXXXX").string();
        _directory = ::mkdtemp(pattern.data());
    }
    ~Durable() override { fs::remove_all(_directory); }

    std::string file(const char* name) const { return (_directory / name).string(); }

    static std::string contentOf(const std::string& path)
    {
        std::ifstream stream(path);
        std::ostringstream text;
        text << stream.rdbuf();
        return text.str();
    }

    std::ptrdiff_t filesInDirectory() const
    {
        return std::distance(fs::directory_iterator(_directory), fs::directory_iterator());
    }

    fs::path _directory;
};

TEST_F(Durable, ASavedFabricStartsAgainAsItWas)
{
    SimSwitch sim(readScenario(SCENARIO_DIR "/default.json"));
    setKey("Config.UserPort.0.3.LinkSpeed.4Gb/s");
    setKey("Config.UserPort.0.4.ScanEnable.False");
    xpl_swSwitchConfig record = switchRecord();
    std::strcpy(record.symbolicName, "renamed");
    record.reserved3[7] = 0xAB;
    ASSERT_EQ(0, xpl_swSwitchSetConfig(hSwitch, &record));
    xpl_swPortConfig port = portRecord(5);
    std::strcpy(port.symbolicName, "a \"quoted\" name");
    port.adminState = XPL_ADMIN_DIAGNOSTICS;
    port.reserved[100] = 0xCD;
    ASSERT_EQ(0, xpl_swPortSetConfig(hSwitch, 5, &port));
    sim.removeNode("502BA4C2C2113000");
    sim.save(file("saved.json"));

    sim.open(SimSwitch::make().scenario());
    EXPECT_EQ("sim-switch", valueOf("Config.Switch.SymName"));
    sim.open(readScenario(file("saved.json")));
    EXPECT_EQ("4Gb/s", valueOf("Config.UserPort.0.3.LinkSpeed"));
    EXPECT_EQ("False", valueOf("Config.UserPort.0.4.ScanEnable"));
    EXPECT_EQ("Offline", valueOf("Oper.UserPort.0.12.OperState")) << "its node had left";
    const xpl_swSwitchConfig recordAgain = switchRecord();
    const xpl_swPortConfig portAgain = portRecord(5);
    EXPECT_EQ(0, std::memcmp(&record, &recordAgain, sizeof record)) << "reserved bytes are durable too";
    EXPECT_EQ(0, std::memcmp(&port, &portAgain, sizeof port));

    const std::string once = contentOf(file("saved.json"));
    sim.save(file("saved.json"));
    EXPECT_EQ(once, contentOf(file("saved.json")));
    EXPECT_EQ(1, filesInDirectory());
}

TEST_F(Durable, AnyNameThatARecordTakesCanBeReadBack)
{
    SimSwitch sim = SimSwitch::make();
    xpl_swSwitchConfig record = switchRecord();
    std::memset(record.symbolicName, 0xFF, 32); // no text in any encoding that JSON knows
    std::memcpy(record.symbolicName, "cut \xC3", 5);
    record.symbolicName[32] = '\0';
    ASSERT_EQ(0, xpl_swSwitchSetConfig(hSwitch, &record));
    sim.save(file("saved.json"));
    EXPECT_EQ("cut ", readScenario(file("saved.json")).switches.front().name);
}

// Saves while files cannot grow beyond 1000 bytes, less than a scenario takes, as on a full disk.
std::string errorOfCutSave(SimSwitch& sim, const std::string& path)
{
    const Full_Disk disk(1000);
    return errorFrom([&] { sim.save(path); });
}

TEST_F(Durable, AnInterruptedSaveLeavesTheOldFile)
{
    SimSwitch sim = SimSwitch::make().ports(8);
    sim.save(file("site.json"));
    const std::string old = contentOf(file("site.json"));
    sim.changeSwitch([](SwitchScenario& one) { one.name = "new"; });
    EXPECT_PRED_FORMAT2(
        testing::IsSubstring, "site.json: cannot save: cannot write", errorOfCutSave(sim, file("site.json")));
    EXPECT_EQ(old, contentOf(file("site.json")));
    EXPECT_EQ(1, filesInDirectory()) << "nothing half-written is left";

    // What a process that died between writing and renaming leaves is in nobody's way.
    std::ofstream(file("site.json.dead00")) << "{\"switches\": [";
    sim.save(file("site.json"));
    EXPECT_EQ("new", readScenario(file("site.json")).switches.front().name);
}

TEST_F(Durable, ProgramsOpenAndSaveThroughTheCEntry)
{
    const SimSwitch sim = SimSwitch::make(); // puts things right after the test
    char message[200] = "?";
    EXPECT_EQ(0, vraxsim_open(SCENARIO_DIR "/default.json", message, sizeof message));
    EXPECT_STREQ("", message);
    EXPECT_EQ("core-a", valueOf("Config.Switch.SymName"));
    EXPECT_EQ(0, vraxsim_save(file("c.json").c_str(), nullptr, 0));

    std::ofstream(file("bad.json")) << "{\"seed\": \"x\"}";
    EXPECT_EQ(-1, vraxsim_open(file("bad.json").c_str(), message, sizeof message));
    EXPECT_EQ(file("bad.json") + ": /seed: expected a whole number from 0 to 1000000000, got \"x\"", message);
    EXPECT_EQ("core-a", valueOf("Config.Switch.SymName")) << "the fabric is kept";
    EXPECT_EQ(-1, vraxsim_open(nullptr, message, 5));
    EXPECT_STREQ("no s", message);
    fs::create_directory(file("taken"));
    EXPECT_EQ(-1, vraxsim_save(file("taken").c_str(), message, sizeof message));
    EXPECT_PRED_FORMAT2(testing::IsSubstring, "cannot replace " + file("taken"), message);
    EXPECT_EQ(-1, vraxsim_save("/no/such/place.json", message, sizeof message));
    EXPECT_PRED_FORMAT2(testing::IsSubstring, "/no/such/place.json: cannot save: ", message);
    EXPECT_EQ(0, vraxsim_open(file("c.json").c_str(), message, sizeof message));
}

} // namespace
