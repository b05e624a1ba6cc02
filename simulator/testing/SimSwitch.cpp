// The simulated switch in the hands of a test.
#include "simulator/testing/SimSwitch.h"

#include "simulator/engine/Engine.h"
#include "simulator/scenario/fields.h"
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

Port& portOf(FabricModel& model, int number)
{
    Port* port = model.local().port(number);
    if (port == nullptr)
        throw std::invalid_argument("the local switch has no port " + std::to_string(number));
    return *port;
}

void checkReserved(const std::vector<std::uint8_t>& bytes, std::size_t size)
{
    if (bytes.size() != size)
    {
        throw std::invalid_argument("a record keeps " + std::to_string(size) + " reserved bytes, not " +
                                    std::to_string(bytes.size()));
    }
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
            portOf(model, port);
            const auto checked = [&change](PortScenario& facts)
            {
                change(facts);
                checkReserved(facts.reserved, kPortReservedSize);
            };
            model.changePort(port, checked, now);
        });
}

void SimSwitch::changeSwitch(const std::function<void(SwitchScenario&)>& change)
{
    engine().write(
        [&](FabricModel& model, std::uint64_t now)
        {
            const SwitchScenario before = model.local().facts;
            SwitchScenario facts = before;
            change(facts);
            checkReserved(facts.reserved, kSwitchReservedSize);
            facts.local = true;
            facts.domain = before.domain;
            facts.wwn = before.wwn;
            facts.ports.clear();
            model.local().facts = facts;
            model.allLinksChanged(model.local(), now);
        });
}

void SimSwitch::setCounter(int port, std::string_view counter, std::uint64_t value)
{
    const auto index = counterNamed(counter);
    if (!index)
        throw std::invalid_argument("no counter is named " + std::string(counter));
    engine().write([&](FabricModel& model, std::uint64_t now)
                   { portOf(model, port).meter->setCounter(*index, value, now); });
}

void SimSwitch::setPrincipal(int domain)
{
    engine().write([domain](FabricModel& model, std::uint64_t now) { model.setPrincipal(domain, now); });
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
        throw std::invalid_argument("a fabric has one local switch");
    engine().changeFabric([&one](FabricModel& model, std::uint64_t now) { model.addSwitch(one, now); });
}

void SimSwitch::removeSwitch(int domain)
{
    engine().changeFabric([domain](FabricModel& model, std::uint64_t now)
                          { model.removeSwitch(domain, now); });
}

void SimSwitch::addIsl(const IslScenario& link)
{
    engine().write([&link](FabricModel& model, std::uint64_t now) { model.addIsl(link, now); });
}

void SimSwitch::advance(std::chrono::milliseconds time)
{
    engine().write([time](FabricModel&, std::uint64_t)
                   { engine().clock.advance(static_cast<std::uint64_t>(time.count())); });
    engine().catchUp();
}

std::uint64_t SimSwitch::now() const
{
    return engine().read([](const FabricModel&, std::uint64_t now) { return now; });
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
