// Who subscribed to which filter, as the switch keeps it.
#ifndef DELIVERY_SUBSCRIPTIONS_H
#define DELIVERY_SUBSCRIPTIONS_H

#include "delivery/delivery.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

namespace cimple
{

// What becomes of a listener that does not answer.
enum class Persistence
{
    Permanent, // it stays
    Transient, // it is expired
    Unknown    // no subscription names it any more
};

// A snapshot of the switch's subscriptions, read anew when it is asked for after a change. All functions may
// be called from any thread.
class Subscriptions
{
  public:
    // Seconds since the epoch.
    typedef std::int64_t (*Clock)();

    explicit Subscriptions(Clock clock);
    ~Subscriptions();
    Subscriptions(const Subscriptions&) = delete;
    Subscriptions& operator=(const Subscriptions&) = delete;

    // The snapshot is stale. Never waits.
    void changed() noexcept { _changes.fetch_add(1, std::memory_order_release); }

    // See filterToDestinations. Throws std::bad_alloc.
    void append(std::uint16_t filter, Destinations& list);

    // Of the listeners with this destination in the snapshot: permanent when one of them is. Asks nobody and
    // waits for no call to the switch.
    Persistence persistenceOf(const String& destination) const;

  private:
    struct Snapshot;
    class Reader;

    std::shared_ptr<const Snapshot> snapshot() const;
    void refresh();
    void readAnew(std::uint32_t changes);

    const Clock _clock;
    std::atomic<std::uint32_t> _changes{1}; // 2^32 of them between two events are as good as none

    std::mutex _reading;     // held while the switch is read; guards the next two
    std::uint32_t _read = 0; // the changes that the snapshot knows of
    bool _failed = false;    // the last read, which was logged

    mutable std::mutex _guard; // leaf; guards the pointer
    std::shared_ptr<const Snapshot> _snapshot;
};

} // namespace cimple

#endif
