// Delivery of indications: how many a second, how soon, and how much memory while one listener is dead.
#include "tests/bench/benches.h"

#include <cstdio>

#ifdef BENCH_DELIVERS
#include "CIM_ComputerSystem.h"
#include "delivery/Sender.h"
#include "tests/bench/report.h"
#include "tests/delivery/Test_Listener.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <malloc.h>
#endif

namespace bench
{

#ifdef BENCH_DELIVERS

namespace
{

using namespace cimple;
using std::chrono::steady_clock;

constexpr std::size_t kListenerCounts[] = {1, 8};
constexpr std::size_t kEvents = 5000;
constexpr std::size_t kTimedEvents = 2000;
constexpr std::size_t kStorm = 100000;

// About as large as an alert.
Ref<CIM_ComputerSystem> event()
{
    Ref<CIM_ComputerSystem> one(CIM_ComputerSystem::create(true));
    one->Name.set("100002a5c41d02e0");
    one->CreationClassName.set("VRAX_FCSwitch");
    one->Description.set(std::string(600, 'd').c_str());
    one->OperationalStatus.set(Array_uint16::make(2));
    return one;
}

Sender::Hooks permanent()
{
    return {[](const String&) { return Persistence::Permanent; }, [](const String&) { return 0u; }};
}

// Listeners that only count; when each request came is kept for the first.
struct Crowd
{
    std::vector<std::unique_ptr<Test_Listener>> listeners;
    Destinations list;
    std::atomic<std::size_t> heard{0};
    std::vector<steady_clock::time_point> times;

    explicit Crowd(std::size_t count)
    {
        times.reserve(kStorm);
        for (std::size_t i = 0; i < count; ++i)
        {
            listeners.push_back(std::make_unique<Test_Listener>(
                [this, i](const Test_Listener::Request& request)
                {
                    if (i == 0)
                        times.push_back(steady_clock::now());
                    ++heard;
                    return Test_Listener::accept(request);
                }));
            list.push_back(listeners.back()->url().c_str());
        }
    }

    void waitFor(std::size_t count) const
    {
        while (heard < count)
            std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
};

Sender_Settings roomy()
{
    Sender_Settings settings;
    settings.messagesEach = kStorm;
    settings.bytesEach = settings.bytesInAll = std::size_t{1} << 30;
    return settings;
}

void benchRate(std::size_t count)
{
    Crowd crowd(count);
    Sender sender(roomy(), permanent());
    const Ref<CIM_ComputerSystem> one = event();
    const steady_clock::time_point start = steady_clock::now();
    for (std::size_t i = 0; i < kEvents; ++i)
        sender.send(*one, crowd.list);
    crowd.waitFor(kEvents * count);
    const std::chrono::duration<double> taken = steady_clock::now() - start;
    std::printf("%9zu   %12.0f   %14.0f\n",
                count,
                static_cast<double>(kEvents) / taken.count(),
                static_cast<double>(kEvents * count) / taken.count());
}

void benchDelay(std::size_t count)
{
    Crowd crowd(count);
    Sender sender(roomy(), permanent());
    const Ref<CIM_ComputerSystem> one = event();
    std::vector<double> delays;
    for (std::size_t i = 0; i < kTimedEvents; ++i)
    {
        const steady_clock::time_point start = steady_clock::now();
        sender.send(*one, crowd.list);
        crowd.waitFor((i + 1) * count);
        delays.push_back(std::chrono::duration<double, std::micro>(crowd.times[i] - start).count());
    }
    std::sort(delays.begin(), delays.end());
    std::printf("%9zu   %8.0f   %8.0f\n", count, delays[delays.size() / 2], delays[delays.size() * 99 / 100]);
}

// The listener's notes of what it heard would outweigh what the sender keeps, so none is alive here.
void benchStorm()
{
    const std::string dead = Test_Listener().url();
    Sender sender(Sender_Settings(), permanent());
    const Ref<CIM_ComputerSystem> one = event();
    const Destinations list{dead.c_str()};
    std::size_t most = 0;
    const std::size_t before = mallinfo2().uordblks;
    const steady_clock::time_point start = steady_clock::now();
    for (std::size_t i = 0; i < kStorm; ++i)
    {
        sender.send(*one, list);
        most = std::max<std::size_t>(most, i % 1000 == 0 ? mallinfo2().uordblks : 0);
    }
    const std::chrono::duration<double> taken = steady_clock::now() - start;
    std::printf("\nA storm of %zu indications for one dead destination\n"
                "  %.0f a second taken, heap grown by %.1f MiB at most, %llu lost for want of room\n",
                kStorm,
                static_cast<double>(kStorm) / taken.count(),
                static_cast<double>(most - std::min(most, before)) / (1024.0 * 1024.0),
                static_cast<unsigned long long>(sender.counts().of(Loss::Queue_Full)));
}

} // namespace

void benchDelivery()
{
    std::printf("\nDelivery of indications\nlisteners   events per s   messages per s\n");
    for (const std::size_t count : kListenerCounts)
        benchRate(count);
    std::printf("\nTime from sendIndication to the first listener, us\nlisteners        p50        p99\n");
    for (const std::size_t count : kListenerCounts)
        benchDelay(count);
    benchStorm();
}

#else

void benchDelivery()
{
    std::printf("\nDelivery of indications: none, for want of libcurl\n");
}

#endif

} // namespace bench
