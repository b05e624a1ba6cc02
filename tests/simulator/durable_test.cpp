// Tests of saving a fabric and starting from it again, also when saving is cut short.
#include "platform/xpl_fzs.h"
#include "simulator/engine/StateFile.h"
#include "simulator/open.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/simulator/sml.h"
#include "tests/support/Full_Disk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

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
    EXPECT_STREQ("no f", message);
    fs::create_directory(file("taken"));
    EXPECT_EQ(-1, vraxsim_save(file("taken").c_str(), message, sizeof message));
    EXPECT_PRED_FORMAT2(testing::IsSubstring, "cannot replace " + file("taken"), message);
    EXPECT_EQ(-1, vraxsim_save("/no/such/place.json", message, sizeof message));
    EXPECT_PRED_FORMAT2(testing::IsSubstring, "/no/such/place.json: cannot save: ", message);
    EXPECT_EQ(0, vraxsim_open(file("c.json").c_str(), message, sizeof message));
}

// A switch that keeps its state in a file for the duration of a test.
class Kept : public Durable
{
  protected:
    ~Kept() override { vraxsim_keep(nullptr, nullptr, 0); }

    std::string keepIn(const std::string& path)
    {
        char message[300] = "?";
        const int result = vraxsim_keep(path.c_str(), message, sizeof message);
        EXPECT_EQ(result != 0, *message != '\0') << message;
        return message;
    }
    std::string nameInFile() const { return readScenario(file("state.json")).switches.front().name; }
};

TEST_F(Kept, TheFileFollowsEveryChangeThatLasts)
{
    SimSwitch sim = SimSwitch::make().ports(8);
    EXPECT_EQ("", keepIn(file("state.json")));
    EXPECT_EQ("sim-switch", nameInFile());
    xpl_swSwitchConfig record = switchRecord();
    std::strcpy(record.symbolicName, "renamed");
    ASSERT_EQ(0, xpl_swSwitchSetConfig(hSwitch, &record));
    EXPECT_EQ("renamed", nameInFile()) << "a record";
    setKey("Config.UserPort.0.3.LinkSpeed.4Gb/s");
    ASSERT_EQ(0, xpl_fzsAddZoneAlias(hSwitch, "host"));
    const Scenario state = readScenario(file("state.json"));
    EXPECT_EQ(LinkSpeed::gb4, state.switches.front().ports[3].speed) << "a key";
    ASSERT_EQ(1u, state.zoning.aliases.size()) << "zoning";
    EXPECT_EQ(formatScenario(sim.scenario()), contentOf(file("state.json")));

    const auto written = fs::last_write_time(file("state.json"));
    sim.setCounter(3, "TotalLIPRecv", 7);
    sim.advance(std::chrono::hours(1));
    EXPECT_EQ(written, fs::last_write_time(file("state.json"))) << "what does not last is no reason to write";

    // Another process begins where this one ended, whatever scenario it was given.
    EXPECT_EQ(0, vraxsim_keep(nullptr, nullptr, 0));
    sim.open(SimSwitch::make().scenario());
    EXPECT_EQ("renamed", nameInFile()) << "nothing is kept any more";
    EXPECT_EQ("", keepIn(file("state.json")));
    EXPECT_EQ("renamed", valueOf("Config.Switch.SymName"));
    EXPECT_EQ(2, filesInDirectory()) << "the state and its lock";
}

TEST_F(Kept, ChangesOfManyThreadsAreInTheFileWhenTheyAreDone)
{
    const SimSwitch sim = SimSwitch::make();
    ASSERT_EQ("", keepIn(file("state.json")));
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(
            [this, t]
            {
                for (int i = 0; i < 5; ++i)
                {
                    const std::string name = "alias" + std::to_string(t) + "-" + std::to_string(i);
                    EXPECT_EQ(0, xpl_fzsAddZoneAlias(hSwitch, name.c_str()));
                    EXPECT_NE(std::string::npos, contentOf(file("state.json")).find('"' + name + '"'))
                        << name;
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(20u, readScenario(file("state.json")).zoning.aliases.size());
}

TEST_F(Kept, AFileIsKeptByOneProcessAtATime)
{
    SimSwitch sim = SimSwitch::make();
    const std::string path = file("state.json");
    StateFile other; // as that of another process
    const auto text = [] { return std::string("text"); };
    EXPECT_FALSE(other.claim(path));
    other.keepIn(path, text);
    EXPECT_EQ(path + ": another process keeps its state there", keepIn(path));
    other.stop();
    std::ofstream(path) << formatScenario(sim.scenario());
    EXPECT_EQ("", keepIn(path));
    EXPECT_THROW(other.claim(path), ScenarioError);
    sim.changeSwitch([](SwitchScenario& one) { one.name = "new"; });
    EXPECT_THROW(other.claim(path), ScenarioError) << "which is another file by now";
    EXPECT_EQ(0, vraxsim_keep(nullptr, nullptr, 0));
    EXPECT_TRUE(other.claim(path));
}

TEST_F(Kept, AFileThatCannotBeUsedIsLeftAsItIs)
{
    SimSwitch sim = SimSwitch::make();
    std::ofstream(file("state.json")) << "{\"switches\": [";
    EXPECT_PRED_FORMAT2(testing::IsSubstring, "state.json:1:", keepIn(file("state.json")));
    EXPECT_PRED_FORMAT2(
        testing::IsSubstring, "/no/such/place.json: cannot save: ", keepIn("/no/such/place.json"));
    sim.changeSwitch([](SwitchScenario& one) { one.name = "new"; });
    EXPECT_EQ("{\"switches\": [", contentOf(file("state.json")));

    // A disk that is full for a while costs nothing but what came in that while.
    fs::remove(file("state.json"));
    ASSERT_EQ("", keepIn(file("state.json")));
    testing::internal::CaptureStderr();
    {
        const Full_Disk disk(1000);
        sim.changeSwitch([](SwitchScenario& one) { one.name = "lost"; });
        sim.changeSwitch([](SwitchScenario& one) { one.name = "lost, too"; });
    }
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(0u, told.find("simulated switch: state not kept: cannot write ")) << told;
    EXPECT_EQ(1, std::count(told.begin(), told.end(), '\n')) << told;
    EXPECT_EQ("new", nameInFile());
    setKey("Config.UserPort.0.3.LinkSpeed.4Gb/s");
    EXPECT_EQ("lost, too", nameInFile()) << "the next change brings it up to date";
}

} // namespace
