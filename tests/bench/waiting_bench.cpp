// How long a request waits for others: the longest of each kind while clients poll one large class.
#include "tests/bench/benches.h"

#include "common/Owned.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"
#include "fabricProviders/VRAX_FCSwitchFCPort_Provider.h"
#include "fabricProviders/VRAX_FabricFCSwitch_Provider.h"
#include "simulator/generator/generate.h"
#include "simulator/testing/SimSwitch.h"
#include "tests/bench/report.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace bench
{

namespace
{

using namespace cimple;

typedef std::chrono::steady_clock Clock;

constexpr std::size_t kClientCounts[] = {1, 4, 8};
constexpr int kNodes = 8000;
constexpr int kDomains = 20;
constexpr int kLocalPorts = 64;
constexpr auto kPolling = std::chrono::seconds(6);
// How often the polled class gets stale, and how long the clients that do not poll pause.
constexpr auto kStalePeriod = std::chrono::seconds(3);
constexpr auto kPause = std::chrono::milliseconds(10);
constexpr double kMilli = 1e3;

// What a server does with each instance before it asks for the next one, roughly: it copies it.
bool receive(Instance* instance, Enum_Instances_Status, void*)
{
    unref(clone(instance));
    unref(instance);
    return true;
}

template <class PROVIDER>
void enumerate()
{
    PROVIDER provider;
    Enum_Instances_Handler<typename PROVIDER::Class> handler(receive, nullptr);
    if (provider.enum_instances(nullptr, &handler) != ENUM_INSTANCES_OK)
        throw std::runtime_error("the enumeration failed");
}

// A model for modify_instance that gives a port its name once more.
Owned<VRAX_FCPort> nameOf(const VRAX_FCPort& port)
{
    Owned<VRAX_FCPort> model(static_cast<VRAX_FCPort*>(key_clone(&port)));
    model->ElementName.null = 0;
    return model;
}

// A copy of a port that the switch lets us name: only its own can be.
Owned<VRAX_FCPort> localPort()
{
    std::vector<Owned<VRAX_FCPort>> ports;
    enumerate<VRAX_FCPort_Provider>();
    {
        const Read_Guard<VRAX_FCPort> guard;
        for (const VRAX_FCPort* port : guard.view())
            ports.emplace_back(static_cast<VRAX_FCPort*>(clone(port)));
    }
    VRAX_FCPort_Provider provider;
    for (Owned<VRAX_FCPort>& port : ports)
        if (provider.modify_instance(nameOf(*port).get(), port.get()) == MODIFY_INSTANCE_OK)
            return std::move(port);
    throw std::runtime_error("no local port");
}

// A kind of request and the longest one in each run.
struct Kind
{
    std::string name;
    std::function<void()> request;
    bool polls; // asked by every client without a pause; the others by one client each
    Table table;
    std::atomic<Clock::rep> longest{0};

    Kind(const std::string& kindName, std::function<void()> run, bool isPoll = false)
        : name(kindName), request(std::move(run)), polls(isPoll),
          table("Longest request while clients enumerate VRAX_FCPort: " + kindName, "clients", "ms")
    {
    }

    void repeatUntil(const std::atomic<bool>& over)
    {
        while (!over)
        {
            const Clock::time_point begin = Clock::now();
            request();
            const Clock::rep taken = (Clock::now() - begin).count();
            Clock::rep known = longest;
            while (known < taken && !longest.compare_exchange_weak(known, taken))
            {
            }
            if (!polls)
                std::this_thread::sleep_for(kPause);
        }
    }
};

} // namespace

// A request that is shut out ends when the clients go home: its row is then as long as they polled.
void benchWaiting()
{
    simulator::FabricSize size;
    size.domains = kDomains;
    size.localPorts = kLocalPorts;
    size.nodes = kNodes;
    simulator::SimSwitch sim(simulator::generateFabric(size));
    sim.recordKeys(false);
    VRAX_Maps& maps = *VRAX_Maps::getInstance();
    for (const providerEnum_t map : {VRAX_FCPort_Idx, VRAX_FCSwitchFCPort_Idx, VRAX_FabricFCSwitch_Idx})
        maps.InstMapForceUnload(map);

    const Owned<VRAX_FCPort> port = localPort();
    const Owned<VRAX_FCPort> mask = nameOf(*port);
    const auto get = [&port]
    {
        VRAX_FCPort_Provider provider;
        VRAX_FCPort* found = nullptr;
        if (provider.get_instance(port.get(), found) != GET_INSTANCE_OK)
            throw std::runtime_error("the port was not found");
        unref(found);
    };
    const auto modify = [&port, &mask]
    {
        VRAX_FCPort_Provider provider;
        // While the map is being emptied the port may be unknown; the wait is the same.
        provider.modify_instance(mask.get(), port.get());
    };
    const auto association = [&maps]
    {
        maps.InstMapForceUnload(VRAX_FCSwitchFCPort_Idx);
        enumerate<VRAX_FCSwitchFCPort_Provider>();
    };
    const auto otherAssociation = [&maps]
    {
        maps.InstMapForceUnload(VRAX_Fabric_Idx);
        enumerate<VRAX_FabricFCSwitch_Provider>();
    };
    Kind kinds[] = {{"enumerate it", enumerate<VRAX_FCPort_Provider>, true},
                    {"get a port", get},
                    {"modify a port", modify},
                    {"load an association with it", association},
                    {"load an association without it", otherAssociation}};

    for (const std::size_t clients : kClientCounts)
    {
        std::atomic<bool> over{false};
        std::vector<std::thread> threads;
        for (Kind& kind : kinds)
        {
            kind.longest = 0;
            for (std::size_t i = 0; i < (kind.polls ? clients : 1); ++i)
                threads.emplace_back([&kind, &over] { kind.repeatUntil(over); });
        }
        for (const Clock::time_point end = Clock::now() + kPolling; Clock::now() < end;)
        {
            std::this_thread::sleep_for(kStalePeriod);
            maps.InstMapForceUnload(VRAX_FCPort_Idx);
        }
        over = true;
        for (std::thread& thread : threads)
            thread.join();
        for (Kind& kind : kinds)
        {
            const std::chrono::duration<double> longest = Clock::duration(kind.longest);
            kind.table.row(clients, longest.count() * kMilli);
        }
    }
    for (const Kind& kind : kinds)
        kind.table.print();
}

} // namespace bench
