// Indications: to which namespaces they go, from which threads, and how delivery ends.
#include <cimple/Thread.h>

#include <thread>

#include "adapter_fixture.h"

namespace adapter_test
{
namespace
{

const char kAlerts[] = "root/demo:Demo_SensorAlert";

class IndicationMi : public AdapterTest
{
  protected:
    static Instance* alert(const char* text)
    {
        Demo_SensorAlert* const alert = Demo_SensorAlert::create(true);
        alert->Text.set(text);
        return alert;
    }

    // A provider from whose indications a client selects.
    Client& selected()
    {
        Client& provider = client(alertProvider);
        provider.activateFilter(kAlerts);
        return provider;
    }

    // Enabling starts a thread of the provider, which is joined where a test says.
    void startOnEnable(std::function<void(const Script::Hand& handle)> body)
    {
        alerts.enable = [this, body](const Script::Hand& handle)
        {
            const auto run = [](void* work) -> void*
            {
                (*static_cast<std::function<void()>*>(work))();
                return nullptr;
            };
            _work = [body, handle] { body(handle); };
            return cimple::Thread::create_joinable(_thread, run, &_work);
        };
    }
    int join()
    {
        void* result;
        return cimple::Thread::join(_thread, result);
    }

    Script& alerts = script<Demo_SensorAlert>();

  private:
    std::function<void()> _work;
    cimple::Thread _thread;
};

TEST_F(IndicationMi, IndicationsGoToEveryNamespaceThatIsSelectedFrom)
{
    alerts.enable = [&](const Script::Hand& handle)
    {
        handle(alert("armed"));
        return 0;
    };
    Client& provider = client(alertProvider);
    const char one[] = "root/one:Demo_SensorAlert";
    const char two[] = "root/two:Demo_SensorAlert";
    provider.activateFilter(two);
    provider.activateFilter(one);
    provider.activateFilter(one);
    EXPECT_TRUE(provider.enableIndications().ok());
    EXPECT_TRUE(provider.enableIndications().ok()); // no second time
    EXPECT_EQ(
        broker.deliveries(),
        Texts({"root/one Demo_SensorAlert{Text=\"armed\"}", "root/two Demo_SensorAlert{Text=\"armed\"}"}));

    provider.disableIndications();
    provider.deactivateFilter(one); // one filter is left
    provider.deactivateFilter(two);
    provider.deactivateFilter(two); // once too often
    provider.enableIndications();
    EXPECT_EQ(broker.deliveries().size(), 3u);
    EXPECT_EQ(broker.deliveries().back(), "root/one Demo_SensorAlert{Text=\"armed\"}");

    provider.disableIndications();
    provider.deactivateFilter(one);
    provider.enableIndications();
    EXPECT_EQ(broker.deliveries().size(), 3u);
    provider.disableIndications();
}

TEST_F(IndicationMi, AThreadMayBeJoinedWhileItDelivers)
{
    Latch delivering;
    Latch disabling;
    broker.onDelivery = [&]
    {
        delivering.arrive();
        disabling.wait();
    };
    startOnEnable([](const Script::Hand& handle) { handle(alert("late")); });
    alerts.disable = [&]
    {
        disabling.arrive();
        return join();
    };
    Client& provider = selected();
    EXPECT_TRUE(provider.enableIndications().ok());
    delivering.wait();
    EXPECT_TRUE(provider.disableIndications().ok());
    EXPECT_EQ(broker.deliveries(), Texts{"root/demo Demo_SensorAlert{Text=\"late\"}"});
}

TEST_F(IndicationMi, AfterDisableNoDeliveryIsUnderWayOrBegins)
{
    Latch delivering;
    Latch disabling;
    Latch disabled;
    std::atomic<bool> finished{false};
    broker.onDelivery = [&]
    {
        delivering.arrive();
        disabling.wait();
        for (int i = 0; i < 1000; i++)
            std::this_thread::yield();
        finished = true;
    };
    std::atomic<bool> accepted{true};
    startOnEnable(
        [&](const Script::Hand& handle)
        {
            handle(alert("last"));
            disabled.wait();
            accepted = handle(alert("too late"));
        });
    alerts.disable = [&] { // does not wait for its thread
        disabling.arrive();
        return 0;
    };
    Client& provider = selected();
    provider.enableIndications();
    delivering.wait();
    EXPECT_TRUE(provider.disableIndications().ok());
    EXPECT_TRUE(finished);
    disabled.arrive();
    join();
    EXPECT_FALSE(accepted);
    EXPECT_EQ(broker.deliveries(), Texts{"root/demo Demo_SensorAlert{Text=\"last\"}"});
}

TEST_F(IndicationMi, ALongRunningThreadLeavesNothingBehind)
{
    std::vector<size_t> alive;
    broker.onDelivery = [&] { alive.push_back(broker.journal().objectsAlive); };
    Latch enabled; // the call that enables has objects of its own
    startOnEnable(
        [&](const Script::Hand& handle)
        {
            enabled.wait();
            for (int i = 0; i < 50; i++)
                handle(alert("again"));
        });
    Client& provider = selected();
    provider.enableIndications();
    enabled.arrive();
    join();
    ASSERT_EQ(alive.size(), 50u);
    EXPECT_EQ(alive.front(), alive.back());

    provider.disableIndications();
    alerts.enable = [&](const Script::Hand& handle) // from a thread that is not the provider's
    {
        std::thread([&] { handle(alert("foreign")); }).join();
        return 0;
    };
    EXPECT_TRUE(provider.enableIndications().ok());
    EXPECT_EQ(alive.size(), 50u);
}

TEST_F(IndicationMi, RefusalsOfTheProviderAreReportedAndChangeNothing)
{
    int enables = 0;
    alerts.enable = [&](const Script::Hand&) { return ++enables == 1 ? ENABLE_INDICATIONS_FAILED : 0; };
    int disables = 0;
    alerts.disable = [&] { return ++disables == 1 ? DISABLE_INDICATIONS_FAILED : 0; };
    Client& provider = client(alertProvider);
    EXPECT_EQ(provider.enableIndications().texts(),
              Texts{"1: Demo_SensorAlert: enable indications failed (status 140)"});
    EXPECT_TRUE(provider.disableIndications().ok()); // there is nothing to disable
    EXPECT_EQ(disables, 0);
    EXPECT_TRUE(provider.enableIndications().ok());
    EXPECT_EQ(provider.disableIndications().texts(),
              Texts{"1: Demo_SensorAlert: disable indications failed (status 150)"});
    EXPECT_TRUE(provider.disableIndications().ok());
    EXPECT_EQ(disables, 2);
}

TEST_F(IndicationMi, AProviderInUseIsNotUnloadedUnlessTheServerStops)
{
    bool stopped = false;
    Latch stop;
    startOnEnable([&](const Script::Hand&) { stop.wait(); });
    alerts.disable = [&]
    {
        stop.arrive();
        stopped = true;
        return join();
    };
    Client& provider = selected();
    EXPECT_EQ(provider.cleanup(false).rc, CMPI_RC_DO_NOT_UNLOAD); // a filter is active
    provider.enableIndications();
    provider.deactivateFilter(kAlerts);
    EXPECT_EQ(provider.cleanup(false).rc, CMPI_RC_DO_NOT_UNLOAD); // indications are enabled
    EXPECT_EQ(alerts.alive, 1);
    EXPECT_FALSE(stopped);
    EXPECT_TRUE(provider.cleanup(true).ok());
    EXPECT_TRUE(stopped);
    EXPECT_EQ(alerts.alive, 0);
}

} // namespace
} // namespace adapter_test
