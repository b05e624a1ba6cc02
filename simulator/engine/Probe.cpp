// What tests see of platform calls and how they interfere.
#include "simulator/engine/Probe.h"

#include <thread>

namespace simulator
{
namespace
{

std::size_t indexOf(Call call)
{
    return static_cast<std::size_t>(call);
}

} // namespace

bool Probe::covers(const std::string& subject, std::string_view key)
{
    const bool prefix = !subject.empty() && subject.back() == '.';
    return prefix ? key.substr(0, subject.size()) == subject : key == subject;
}

std::int32_t Probe::take(Fault& fault)
{
    if (fault.skip > 0)
    {
        --fault.skip;
        return XPL_OK;
    }
    if (fault.times == 0)
        return XPL_OK;
    if (fault.times != kAlways)
        --fault.times;
    return fault.status;
}

std::int32_t Probe::takeFirst(std::vector<KeyFault>& faults, std::string_view subject)
{
    for (KeyFault& one : faults)
    {
        const std::int32_t status = covers(one.subject, subject) ? take(one.fault) : std::int32_t{XPL_OK};
        if (status != XPL_OK)
            return status;
    }
    return XPL_OK;
}

std::int32_t Probe::enter(Call call)
{
    ++_calls[indexOf(call)];
    if (!_interferes)
        return XPL_OK;
    std::shared_ptr<std::function<void()>> hook;
    std::chrono::microseconds latency{};
    std::int32_t status = XPL_OK;
    {
        const Locked<Mutex> guard(_mutex);
        hook = _hooks[indexOf(call)];
        latency = _latencies[indexOf(call)];
        for (Fault& fault : _callFaults[indexOf(call)])
        {
            status = take(fault);
            if (status != XPL_OK)
                break;
        }
    }
    // Outside the lock: a hook may wait for another thread's call.
    if (hook)
        (*hook)();
    if (latency.count() > 0)
        std::this_thread::sleep_for(latency);
    return status;
}

std::int32_t Probe::enterKey(std::string_view key)
{
    if (!_records && !_interferes)
        return XPL_OK;
    const Locked<Mutex> guard(_mutex);
    if (_records)
        ++_keyUses[std::string(key)];
    return takeFirst(_keyFaults, key);
}

void Probe::noteWrite(std::string_view what)
{
    if (_records)
    {
        const Locked<Mutex> guard(_mutex);
        _writes.emplace_back(what);
    }
}

void Probe::noteEvent(const SwitchEvent& event)
{
    if (_records)
    {
        const Locked<Mutex> guard(_mutex);
        _events.push_back(textOf(event));
    }
}

std::int32_t Probe::enterBatch(Call call, const xpl_smlEntry* entries, std::uint32_t count)
{
    _entries[indexOf(call)] += count;
    if (!_records && !_interferes)
        return XPL_OK;
    const Locked<Mutex> guard(_mutex);
    if (_records)
    {
        std::vector<std::string> keys;
        for (std::uint32_t i = 0; i < count; ++i)
            keys.emplace_back(entries[i].key);
        _batches[call].push_back(std::move(keys));
    }
    for (KeyFault& one : _batchFaults)
    {
        for (std::uint32_t i = 0; i < count; ++i)
        {
            if (covers(one.subject, entries[i].key))
            {
                const std::int32_t status = take(one.fault);
                if (status != XPL_OK)
                    return status;
                break; // one occurrence a batch
            }
        }
    }
    return XPL_OK;
}

std::int32_t Probe::enterRecord(std::string_view record)
{
    if (!_interferes)
        return XPL_OK;
    const Locked<Mutex> guard(_mutex);
    return takeFirst(_recordFaults, record);
}

bool Probe::overridden(std::string_view key, std::string& value) const
{
    if (!_interferes)
        return false;
    const Locked<Mutex> guard(_mutex);
    const auto found = _values.find(key);
    if (found == _values.end())
        return false;
    value = found->second;
    return true;
}

void Probe::failCall(Call call, Fault fault)
{
    const Locked<Mutex> guard(_mutex);
    _callFaults[indexOf(call)].push_back(fault);
    interfere();
}

void Probe::failKey(const std::string& key, Fault fault)
{
    const Locked<Mutex> guard(_mutex);
    _keyFaults.push_back({key, fault});
    interfere();
}

void Probe::failBatchWith(const std::string& key, Fault fault)
{
    const Locked<Mutex> guard(_mutex);
    _batchFaults.push_back({key, fault});
    interfere();
}

void Probe::failRecord(const std::string& record, Fault fault)
{
    const Locked<Mutex> guard(_mutex);
    _recordFaults.push_back({record, fault});
    interfere();
}

void Probe::overrideKey(const std::string& key, const std::string& value)
{
    const Locked<Mutex> guard(_mutex);
    _values[key] = value;
    interfere();
}

void Probe::setLatency(Call call, std::chrono::microseconds latency)
{
    const Locked<Mutex> guard(_mutex);
    _latencies[indexOf(call)] = latency;
    interfere();
}

void Probe::setHook(Call call, std::function<void()> hook)
{
    const Locked<Mutex> guard(_mutex);
    _hooks[indexOf(call)] = hook ? std::make_shared<std::function<void()>>(std::move(hook)) : nullptr;
    interfere();
}

void Probe::restore()
{
    const Locked<Mutex> guard(_mutex);
    _callFaults.fill({});
    _latencies.fill({});
    _hooks.fill(nullptr);
    _keyFaults.clear();
    _batchFaults.clear();
    _recordFaults.clear();
    _values.clear();
    _interferes = false;
}

void Probe::record(bool on)
{
    _records = on;
}

std::size_t Probe::keyUses(std::string_view key) const
{
    const Locked<Mutex> guard(_mutex);
    const auto found = _keyUses.find(std::string(key));
    return found != _keyUses.end() ? found->second : 0;
}

std::vector<std::vector<std::string>> Probe::batches(Call call) const
{
    const Locked<Mutex> guard(_mutex);
    const auto found = _batches.find(call);
    return found != _batches.end() ? found->second : std::vector<std::vector<std::string>>();
}

std::vector<std::string> Probe::writes() const
{
    const Locked<Mutex> guard(_mutex);
    return _writes;
}

std::vector<std::string> Probe::events() const
{
    const Locked<Mutex> guard(_mutex);
    return _events;
}

void Probe::resetCounts()
{
    const Locked<Mutex> guard(_mutex);
    for (std::size_t i = 0; i < kCallCount; ++i)
    {
        _calls[i] = 0;
        _entries[i] = 0;
    }
    _keyUses.clear();
    _batches.clear();
    _writes.clear();
    _events.clear();
}

} // namespace simulator
