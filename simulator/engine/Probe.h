// What tests see of platform calls and how they interfere: counts, recorded batches and writes, failures,
// latency, hooks.
#ifndef SIMULATOR_ENGINE_PROBE_H
#define SIMULATOR_ENGINE_PROBE_H

#include "platform/xpl_sml.h"
#include "simulator/engine/calls.h"
#include "simulator/model/SwitchEvent.h"
#include "simulator/thread_annotations.h"

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace simulator
{

// Safe from any thread. While nothing is recorded, failed or hooked a call costs two atomic operations.
class Probe
{
  public:
    static constexpr int kAlways = -1;

    // A subject that fails: after `skip` occurrences, `times` times (kAlways: for good), with `status`.
    struct Fault
    {
        std::int32_t status = XPL_UNREACHABLE;
        int times = 1;
        int skip = 0;
    };

    // Every platform call begins here. Returns 0, or the status with which the call is to fail. Runs the
    // call's hook and waits for its latency.
    std::int32_t enter(Call call);

    // Asks for each entry of a batch or single access; notes the key. Returns 0, or the status of the entry.
    std::int32_t enterKey(std::string_view key);
    // Asks once for the whole of a batch, after enter(). Returns 0, or the status of the batch.
    std::int32_t enterBatch(Call call, const xpl_smlEntry* entries, std::uint32_t count);
    // Asks for a configuration record: "switch", or "port/7".
    std::int32_t enterRecord(std::string_view record);
    // Notes a write: a key, the name of a record, or "reset".
    void noteWrite(std::string_view what);
    // Notes an event that the switch raises.
    void noteEvent(const SwitchEvent& event);
    // True when the key has a value of the test's own, which is then in `value`.
    bool overridden(std::string_view key, std::string& value) const;

    void failCall(Call call, Fault fault);
    // A key that ends with a point stands for all keys that begin with it.
    void failKey(const std::string& key, Fault fault);
    void failBatchWith(const std::string& key, Fault fault); // the batch that holds such a key
    void failRecord(const std::string& record, Fault fault);
    void overrideKey(const std::string& key, const std::string& value);
    void setLatency(Call call, std::chrono::microseconds latency);
    void setHook(Call call, std::function<void()> hook);
    // Takes back all failures, values, latencies and hooks.
    void restore();

    // Counting by key and recording of batches, writes and events, on top of counting by call.
    void record(bool on);

    std::size_t calls(Call call) const { return _calls[static_cast<std::size_t>(call)]; }
    std::size_t entries(Call call) const { return _entries[static_cast<std::size_t>(call)]; }
    std::size_t keyUses(std::string_view key) const;
    // The keys of each recorded batch, in order.
    std::vector<std::vector<std::string>> batches(Call call) const;
    // What noteWrite received, in order.
    std::vector<std::string> writes() const;
    // The texts of what noteEvent received, in order.
    std::vector<std::string> events() const;
    // Sets all counts to zero and forgets recorded batches, writes and events.
    void resetCounts();

  private:
    struct KeyFault
    {
        std::string subject;
        Fault fault;
    };

    static bool covers(const std::string& subject, std::string_view key);
    static std::int32_t take(Fault& fault);
    static std::int32_t takeFirst(std::vector<KeyFault>& faults, std::string_view subject);
    void interfere() VRAX_REQUIRES(_mutex) { _interferes = true; }

    std::array<std::atomic<std::size_t>, kCallCount> _calls{};
    std::array<std::atomic<std::size_t>, kCallCount> _entries{};
    std::atomic<bool> _interferes{false};
    std::atomic<bool> _records{false};

    mutable Mutex _mutex;
    std::array<std::vector<Fault>, kCallCount> _callFaults VRAX_GUARDED_BY(_mutex);
    std::array<std::chrono::microseconds, kCallCount> _latencies VRAX_GUARDED_BY(_mutex){};
    std::array<std::shared_ptr<std::function<void()>>, kCallCount> _hooks VRAX_GUARDED_BY(_mutex);
    std::vector<KeyFault> _keyFaults VRAX_GUARDED_BY(_mutex);
    std::vector<KeyFault> _batchFaults VRAX_GUARDED_BY(_mutex);
    std::vector<KeyFault> _recordFaults VRAX_GUARDED_BY(_mutex);
    std::map<std::string, std::string, std::less<>> _values VRAX_GUARDED_BY(_mutex);
    std::unordered_map<std::string, std::size_t> _keyUses VRAX_GUARDED_BY(_mutex);
    std::map<Call, std::vector<std::vector<std::string>>> _batches VRAX_GUARDED_BY(_mutex);
    std::vector<std::string> _writes VRAX_GUARDED_BY(_mutex);
    std::vector<std::string> _events VRAX_GUARDED_BY(_mutex);
};

} // namespace simulator

#endif
