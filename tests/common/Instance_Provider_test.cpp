// Tests of the load and serve pattern of instance providers.
#include "tests/common/testing/Served.h"
#include "tests/common/testing/fake_providers.h"
#include "tests/support/Log_Capture.h"
#include "tests/support/Manual_Clock.h"

#include <cerrno>
#include <set>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

typedef Script<VRAX_FCPortStatistics> Ports;
constexpr std::size_t kPorts = Ports_Provider::kCount;

class InstanceProvider : public testing::Test
{
  protected:
    void SetUp() override { resetFakeProviders(); }
    void TearDown() override { resetFakeProviders(); }

    static int get(const char* id)
    {
        Owned<VRAX_FCPortStatistics> model(VRAX_FCPortStatistics::create(true));
        model->InstanceID.set(id);
        VRAX_FCPortStatistics* found = nullptr;
        const int status = Ports_Provider().get_instance(model.get(), found);
        const Owned<VRAX_FCPortStatistics> owner(found);
        EXPECT_EQ(found != nullptr, status == GET_INSTANCE_OK);
        if (found != nullptr)
            EXPECT_EQ(found->InstanceID.value, id);
        return status;
    }

    Manual_Clock clock;
};

TEST_F(InstanceProvider, LetsGoOfItsFormerInstancesHoweverTheLoadGoes)
{
    struct Row
    {
        const char* what;
        std::size_t inserted;
        bool fails;
    };
    for (const Row& row : {Row{"fewer than before", 2, false},
                           Row{"more than before", kPorts + 2, false},
                           Row{"none", 0, false},
                           Row{"failed midway", 2, true}})
    {
        resetFakeProviders();
        ASSERT_EQ(Ports_Provider().load(), LOAD_OK);
        std::vector<Ref<Instance>> former;
        Inst_Map& map = VRAX_Maps::getInstance()->map<VRAX_FCPortStatistics>();
        for (std::size_t i = 0; i < map.size(); ++i)
        {
            ref(map.at(i));
            former.emplace_back(map.at(i));
        }
        Ports::instead = [&row](Map_Writer<VRAX_FCPortStatistics>& writer)
        {
            for (std::size_t i = 0; i < row.inserted; ++i)
                Ports_Provider::insert(writer, std::to_string(i).c_str());
            if (row.fails)
                failSilently();
        };
        VRAX_Maps::getInstance()->InstMapForceUnload(Ports_Provider::kIndex);
        EXPECT_EQ(Ports_Provider().load(), row.fails ? LOAD_FAILED : LOAD_OK) << row.what;
        EXPECT_EQ(map.size(), row.fails ? 0 : row.inserted) << row.what;
        ASSERT_EQ(former.size(), kPorts);
        for (const Ref<Instance>& instance : former)
            EXPECT_EQ(Atomic_get(&instance->__refs), 1) << row.what;
    }
}

// The switch changes while it is being read: this request has its answer, the next one reads again.
TEST_F(InstanceProvider, StaysStaleWhenMadeStaleDuringItsLoad)
{
    Ports::instead = [](Map_Writer<VRAX_FCPortStatistics>& map)
    {
        Ports_Provider::insert(map, "1");
        std::thread([] { VRAX_Maps::getInstance()->InstMapForceUnload(Ports_Provider::kIndex); }).join();
    };
    EXPECT_EQ(serve<Ports_Provider>().count, 1u);
    Ports::instead = nullptr;
    EXPECT_EQ(serve<Ports_Provider>().count, kPorts);
    EXPECT_EQ(serve<Ports_Provider>().count, kPorts);
    EXPECT_EQ(Ports::builds, 2);
}

TEST_F(InstanceProvider, LoadsUnderAWriteLockOfTheCallerAndLeavesItHeld)
{
    const MapWrLock lock(Ports_Provider::kIndex);
    ASSERT_TRUE(lock.obtained());
    EXPECT_EQ(Ports_Provider().load(), LOAD_OK);
    clock.outlive();
    EXPECT_EQ(Ports_Provider().load(), LOAD_OK);
    EXPECT_EQ(serve<Ports_Provider>().count, kPorts) << "the read lock of serving fails, too";
    EXPECT_EQ(Ports::builds, 2);
    EXPECT_EQ(VRAX_Maps::getInstance()->wrLock(Ports_Provider::kIndex), EDEADLK) << "still this thread's";
}

TEST_F(InstanceProvider, TracesEveryOperationAndRefusesWhatItDoesNotSupport)
{
    const Log_Capture log(kLogTrace);
    {
        Ports_Provider provider;
        serve(provider);
        provider.unload();
        EXPECT_EQ(provider.create_instance(nullptr), 81);
        EXPECT_EQ(provider.delete_instance(nullptr), 91);
        EXPECT_EQ(provider.modify_instance(nullptr, nullptr), 101);
        EXPECT_EQ(Ports_Provider::unsupported_method("ResetSelectedStats"), 131);
    }
    std::vector<std::string> expected;
    for (const char* function : {"Ports_Provider",
                                 "enum_instances",
                                 "load",
                                 "unload",
                                 "unload",
                                 "create_instance",
                                 "delete_instance",
                                 "modify_instance",
                                 "ResetSelectedStats",
                                 "~Ports_Provider"})
        expected.push_back(std::string("testProviders/Ports_Provider:") + function + "[]");
    EXPECT_EQ(log.texts(), expected);
}

// Requests, reloads and unloads at once: every answer is whole.
TEST_F(InstanceProvider, ServesWholeAnswersWhileTheMapIsReloadedAndUnloaded)
{
    constexpr int kRounds = 300;
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int i = 0; i < 3; ++i)
    {
        threads.emplace_back(
            [&]
            {
                for (int round = 0; round < kRounds; ++round)
                {
                    std::set<std::string> ids;
                    const Served served =
                        serve<Ports_Provider>([&](const VRAX_FCPortStatistics& port)
                                              { ids.insert(port.InstanceID.value.c_str()); });
                    wrong += served.status != ENUM_INSTANCES_OK || ids.size() != kPorts;
                }
            });
    }
    for (int i = 0; i < 3; ++i)
    {
        threads.emplace_back(
            [&]
            {
                for (int round = 0; round < kRounds; ++round)
                    wrong += get("3") != GET_INSTANCE_OK;
            });
    }
    threads.emplace_back(
        [&]
        {
            for (int round = 0; round < kRounds; ++round)
                Ports_Provider().unload();
        });
    threads.emplace_back(
        [&]
        {
            for (int round = 0; round < kRounds; ++round)
                clock.outlive();
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, 0);
}

// A provider that is overtaken between its load and its answer.
class Overtaken_Provider : public Instance_Provider_Base<Overtaken_Provider, VRAX_FCPortStatistics>
{
  public:
    static constexpr const char* kSource = "testProviders/Overtaken_Provider";
    static inline std::function<void()> overtake;

    Load_Status load()
    {
        const Load_Status status = Instance_Provider_Base::load();
        if (overtake)
            std::exchange(overtake, nullptr)();
        return status;
    }
    void build(Map_Writer<VRAX_FCPortStatistics>& map) { Ports_Provider().build(map); }
};

TEST_F(InstanceProvider, LoadsAgainWhenOvertakenByAnUnloadOrAFailedLoad)
{
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"unload", [] { Ports_Provider().unload(); }},
        {"failed load",
         [this]
         {
             clock.outlive();
             Ports::instead = [](Map_Writer<VRAX_FCPortStatistics>& map)
             {
                 Ports_Provider::insert(map, "1");
                 failSilently();
             };
             Ports_Provider().load();
             Ports::instead = nullptr;
         }},
    };
    for (const auto& [what, overtake] : rows)
    {
        Overtaken_Provider::overtake = overtake;
        const Served served = serve<Overtaken_Provider>();
        EXPECT_EQ(served.status, ENUM_INSTANCES_OK) << what;
        EXPECT_EQ(served.count, kPorts) << what;
    }
    // A map that is merely stale by now is still answered from.
    const int builds = Ports::builds;
    Overtaken_Provider::overtake = [this] { clock.outlive(); };
    EXPECT_EQ(serve<Overtaken_Provider>().count, kPorts);
    EXPECT_EQ(Ports::builds, builds);
}

// The server may unload a class while a request on it is being answered.
TEST_F(InstanceProvider, UnloadWaitsForReaders)
{
    constexpr int kTries = 100000;
    std::thread unloading;
    std::size_t seen = 0;
    std::atomic<bool> unloaded{false};
    bool waits = false;
    serve<Ports_Provider>(
        [&](const VRAX_FCPortStatistics&)
        {
            if (seen++ > 0)
                return;
            unloading = std::thread(
                [&unloaded]
                {
                    Ports_Provider().unload();
                    unloaded = true;
                });
            // Goes on when the unload waits for this reader: no other reader gets in before it.
            Map_RwLock& lock = VRAX_Maps::getInstance()->lockOf(Ports_Provider::kIndex);
            for (int i = 0; i < kTries && !waits && !unloaded; ++i)
            {
                waits = lock.tryRead() == EBUSY;
                if (!waits)
                    lock.unlock();
                std::this_thread::yield();
            }
            EXPECT_FALSE(unloaded) << "while the ports are handed out";
        });
    unloading.join();
    EXPECT_TRUE(waits);
    EXPECT_EQ(seen, kPorts);
    EXPECT_TRUE(unloaded);
}

} // namespace
} // namespace cimple
