// The test handle's counts and failures.
#include "simulator/engine/Engine.h"
#include "simulator/testing/SimSwitch.h"

#include <stdexcept>

namespace simulator
{
namespace
{

Probe& probe()
{
    return Engine::instance().probe;
}

Call callOf(std::string_view name)
{
    const auto call = callNamed(name);
    if (!call)
        throw std::invalid_argument("no platform call is named " + std::string(name));
    return *call;
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

void SimSwitch::mark()
{
    probe().resetCounts();
}

std::size_t SimSwitch::calls(std::string_view call) const
{
    return probe().calls(callOf(call));
}

std::size_t SimSwitch::platformCalls() const
{
    std::size_t sum = 0;
    for (const std::string_view name : kCallNames)
        sum += calls(name);
    return sum;
}

std::size_t SimSwitch::entries(std::string_view call) const
{
    return probe().entries(callOf(call));
}

std::size_t SimSwitch::keyUses(std::string_view key) const
{
    return probe().keyUses(key);
}

std::vector<std::vector<std::string>> SimSwitch::batches(std::string_view call) const
{
    return probe().batches(callOf(call));
}

std::vector<std::string> SimSwitch::writes() const
{
    return probe().writes();
}

void SimSwitch::recordKeys(bool on)
{
    probe().record(on);
}

void SimSwitch::failNext(std::string_view what, int times, std::int32_t status, int afterSkipping)
{
    const Probe::Fault fault = faultOf(status, times, afterSkipping);
    const bool isKey =
        what.rfind("Oper.", 0) == 0 || what.rfind("Config.", 0) == 0 || what.rfind("Cmd.", 0) == 0;
    if (isKey)
    {
        probe().failKey(std::string(what), fault);
        return;
    }
    probe().failCall(callOf(what), fault);
}

void SimSwitch::failKey(const std::string& key, std::int32_t status)
{
    probe().failKey(key, faultOf(status, Probe::kAlways));
}

void SimSwitch::failBatchWith(const std::string& key, std::int32_t status)
{
    probe().failBatchWith(key, faultOf(status, Probe::kAlways));
}

void SimSwitch::failRecord(const std::string& record, std::int32_t status)
{
    probe().failRecord(record, faultOf(status, Probe::kAlways));
}

void SimSwitch::refuseCacheLock(int times)
{
    failNext("DataCache::dcRdLock", times);
}

void SimSwitch::answer(const std::string& key, const std::string& value)
{
    probe().overrideKey(key, value);
}

void SimSwitch::setLatency(std::string_view call, std::chrono::microseconds latency)
{
    probe().setLatency(callOf(call), latency);
}

void SimSwitch::onCall(std::string_view call, std::function<void()> hook)
{
    probe().setHook(callOf(call), std::move(hook));
}

void SimSwitch::restore()
{
    probe().restore();
}

} // namespace simulator
