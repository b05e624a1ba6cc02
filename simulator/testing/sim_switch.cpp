// The simulated switch in the hands of a test.
#include "simulator/testing/sim_switch.h"

#include "simulator/engine/engine.h"
#include "simulator/scenario/scenario_json.h"
#include "simulator/services/session.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace simulator
{
namespace
{

std::atomic<bool> inUse{false};

Engine& engine()
{
    return Engine::instance();
}

Call callOf(std::string_view name)
{
    const auto call = callNamed(name);
    if (!call)
    {
        throw std::invalid_argument("no platform call is named " + std::string(name));
    }
    return *call;
}

Port& portOf(FabricModel& model, int number)
{
    Port* port = model.local().port(number);
    if (port == nullptr)
    {
        throw std::invalid_argument("the local switch has no port " + std::to_string(number));
    }
    return *port;
}

Probe::Fault faultOf(std::int32_t status, int times, int skip = 0)
{
    Probe::Fault fault;
    fault.status = status;
    fault.times = times;
    fault.skip = skip;
    return fault;
}

} // namespace

SimSwitch::SimSwitch(const SimSwitchSetup& setup)
{
    begin(setup.scenario());
}

SimSwitch::SimSwitch(const Scenario& scenario)
{
    begin(scenario);
}

void SimSwitch::begin(const Scenario& scenario)
{
    if (inUse.exchange(true))
    {
        std::fprintf(stderr,
                     "simulated switch: a test holds two SimSwitch objects; the process has one switch\n");
        std::abort();
    }
    try
    {
        open(scenario);
    }
    catch (...)
    {
        inUse = false;
        throw;
    }
}

SimSwitch::~SimSwitch()
{
    engine().probe.restore();
    engine().probe.record(false);
    inUse = false;
}

void SimSwitch::open(const Scenario& scenario)
{
    engine().open(scenario, true);
    engine().probe.restore();
    engine().probe.resetCounts();
    engine().probe.record(true);
}

void SimSwitch::portDown(int port)
{
    changePort(port, [](PortScenario& facts) { facts.link = LinkState::down; });
}

void SimSwitch::portUp(int port)
{
    changePort(port, [](PortScenario& facts) { facts.link = LinkState::up; });
}

void SimSwitch::failPort(int port, bool failed)
{
    changePort(port,
               [failed](PortScenario& facts)
               {
                   facts.failed = failed;
                   facts.diagnostics = failed ? DiagStatus::failed : DiagStatus::passed;
               });
}

void SimSwitch::changePort(int port, const std::function<void(PortScenario&)>& change)
{
    engine().write(
        [&](FabricModel& model, std::uint64_t now)
        {
            Port& found = portOf(model, port);
            change(found.facts);
            found.facts.number = port;
            found.meter.setLoad(loadOf(found.facts), now);
            model.linkChanged(model.local(), found, now);
        });
}

void SimSwitch::changeSwitch(const std::function<void(SwitchScenario&)>& change)
{
    engine().write(
        [&](FabricModel& model, std::uint64_t now)
        {
            change(model.local().facts);
            model.allLinksChanged(model.local(), now);
        });
}

void SimSwitch::setCounter(int port, std::string_view counter, std::uint64_t value)
{
    const auto index = counterNamed(counter);
    if (!index)
    {
        throw std::invalid_argument("no counter is named " + std::string(counter));
    }
    engine().write([&](FabricModel& model, std::uint64_t now)
                   { portOf(model, port).meter.setCounter(*index, value, now); });
}

void SimSwitch::setPrincipal(int domain)
{
    engine().write([domain](FabricModel& model, std::uint64_t) { model.setPrincipal(domain); });
}

void SimSwitch::addNode(const NodeScenario& node)
{
    engine().changeFabric([&node](FabricModel& model, std::uint64_t now) { model.addNode(node, now); });
}

void SimSwitch::removeNode(std::string_view portWwn)
{
    engine().changeFabric([portWwn](FabricModel& model, std::uint64_t now)
                          { model.removeNode(portWwn, now); });
}

void SimSwitch::addSwitch(const SwitchScenario& one)
{
    if (one.local)
    {
        throw std::invalid_argument("a fabric has one local switch");
    }
    engine().changeFabric([&one](FabricModel& model, std::uint64_t now) { model.addSwitch(one, now); });
}

void SimSwitch::removeSwitch(int domain)
{
    engine().changeFabric([domain](FabricModel& model, std::uint64_t now)
                          { model.removeSwitch(domain, now); });
}

void SimSwitch::advance(std::chrono::milliseconds time)
{
    engine().write([time](FabricModel&, std::uint64_t)
                   { engine().clock.advance(static_cast<std::uint64_t>(time.count())); });
}

std::uint64_t SimSwitch::now() const
{
    return engine().read([](const FabricModel&, std::uint64_t now) { return now; });
}

void SimSwitch::mark()
{
    engine().probe.resetCounts();
}

std::size_t SimSwitch::calls(std::string_view call) const
{
    return engine().probe.calls(callOf(call));
}

std::size_t SimSwitch::platformCalls() const
{
    std::size_t sum = 0;
    for (const std::string_view name : kCallNames)
    {
        sum += calls(name);
    }
    return sum;
}

std::size_t SimSwitch::entries(std::string_view call) const
{
    return engine().probe.entries(callOf(call));
}

std::size_t SimSwitch::keyUses(std::string_view key) const
{
    return engine().probe.keyUses(key);
}

std::vector<std::vector<std::string>> SimSwitch::batches(std::string_view call) const
{
    return engine().probe.batches(callOf(call));
}

void SimSwitch::recordKeys(bool on)
{
    engine().probe.record(on);
}

void SimSwitch::failNext(std::string_view what, int times, std::int32_t status, int afterSkipping)
{
    const Probe::Fault fault = faultOf(status, times, afterSkipping);
    const bool isKey =
        what.rfind("Oper.", 0) == 0 || what.rfind("Config.", 0) == 0 || what.rfind("Cmd.", 0) == 0;
    if (isKey)
    {
        engine().probe.failKey(std::string(what), fault);
        return;
    }
    engine().probe.failCall(callOf(what), fault);
}

void SimSwitch::failKey(const std::string& key, std::int32_t status)
{
    engine().probe.failKey(key, faultOf(status, Probe::kAlways));
}

void SimSwitch::failBatchWith(const std::string& key, std::int32_t status)
{
    engine().probe.failBatchWith(key, faultOf(status, Probe::kAlways));
}

void SimSwitch::failRecord(const std::string& record, std::int32_t status)
{
    engine().probe.failRecord(record, faultOf(status, Probe::kAlways));
}

void SimSwitch::refuseCacheLock(int times)
{
    failNext("DataCache::dcRdLock", times);
}

void SimSwitch::answer(const std::string& key, const std::string& value)
{
    engine().probe.overrideKey(key, value);
}

void SimSwitch::setLatency(std::string_view call, std::chrono::microseconds latency)
{
    engine().probe.setLatency(callOf(call), latency);
}

void SimSwitch::onCall(std::string_view call, std::function<void()> hook)
{
    engine().probe.setHook(callOf(call), std::move(hook));
}

void SimSwitch::restore()
{
    engine().probe.restore();
}

Scenario SimSwitch::scenario() const
{
    return engine().read([](const FabricModel& model, std::uint64_t) { return model.toScenario(); });
}

PortScenario SimSwitch::port(int number) const
{
    return engine().write([number](FabricModel& model, std::uint64_t)
                          { return portOf(model, number).facts; });
}

SwitchScenario SimSwitch::localSwitch() const
{
    return engine().read([](const FabricModel& model, std::uint64_t) { return model.local().facts; });
}

void SimSwitch::save(const std::string& path) const
{
    writeScenario(scenario(), path);
}

int SimSwitch::heldCacheLocks() const
{
    return engine().cacheLock.readers();
}

int SimSwitch::cacheWriters() const
{
    return engine().cacheLock.writers();
}

std::size_t SimSwitch::outstandingBlocks() const
{
    return simulator::outstandingBlocks();
}

} // namespace simulator
