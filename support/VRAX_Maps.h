// The process-wide registry of cached instance maps: one map, one lock and one freshness record per class.
#ifndef SUPPORT_VRAX_MAPS_H
#define SUPPORT_VRAX_MAPS_H

#include "support/Inst_Map.h"
#include "support/providerEnum.h"
#include "support/thread_annotations.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include <pthread.h>

namespace cimple
{

// How long a loaded map is served before the switch is read again.
constexpr std::uint32_t kFreshnessMilliseconds = 30000;

class VRAX_CAPABILITY("association-load mutex") Association_Load_Mutex
{
  public:
    Association_Load_Mutex();
    ~Association_Load_Mutex();
    Association_Load_Mutex(const Association_Load_Mutex&) = delete;
    Association_Load_Mutex& operator=(const Association_Load_Mutex&) = delete;

    // The owner may lock again; every lock needs its unlock.
    void lock() VRAX_ACQUIRE();
    void unlock() VRAX_RELEASE();

  private:
    pthread_mutex_t _mutex;
};

// All operations may be called from any thread. The maps themselves are guarded by their locks: read under
// the read lock, change under the write lock.
//
// Lock order: association-load mutex, then maps by rank (maps.def), then the data cache's read lock. A thread
// that holds a map lock must not ask for the association-load mutex unless it already holds it.
class VRAX_Maps
{
  public:
    // Milliseconds of a clock that never goes back.
    typedef std::uint64_t (*Clock)();

    static VRAX_Maps* getInstance();

    // The map of a class, made on the first call with the class' meta data.
    Inst_Map& map(providerEnum_t idx, const Meta_Class& metaClass);
    template <class CLASS>
    Inst_Map& map()
    {
        return map(Map_Index<CLASS>::value, CLASS::static_meta_class);
    }

    // The map's read-write lock, the C library's default kind. Results are errno values, 0 when the lock was
    // obtained. The thread that holds the write lock and asks again, for either, gets EDEADLK at once. A
    // thread must not ask for the write lock while it holds the read lock: it would wait for itself.
    int rdLock(providerEnum_t idx);
    int wrLock(providerEnum_t idx);
    void unlock(providerEnum_t idx);

    // True when the map may be served as it is: it was loaded less than kFreshnessMilliseconds ago and
    // nothing has made it stale since.
    bool InstMapIsFresh(providerEnum_t idx) const;
    // Outcome of a load, recorded under the map's write lock.
    void InstMapLoadSetOK(providerEnum_t idx);
    void InstMapLoadSetFailed(providerEnum_t idx);
    // Makes the map stale; what it holds stays until the next load. Needs no lock.
    void InstMapForceUnload(providerEnum_t idx);
    // Number of times the map was made stale in this way, modulo 2^32. When it changes during a load, the
    // load has read part of the switch too early and must leave the map stale.
    std::uint32_t forcedUnloads(providerEnum_t idx) const;

    // Says that an instance of the map was changed in place, under the map's write lock. The map stays as
    // fresh as it was; maps built from it notice by the count below.
    void InstMapChanged(providerEnum_t idx);

    // Number of successful loads and changes of the map, modulo 2^32: a different number means different
    // instances.
    std::uint32_t loadCount(providerEnum_t idx) const;
    // For a map built from other maps: a mark of the contents it was built from, kept for its loader.
    std::uint32_t builtFrom(providerEnum_t idx) const;
    void setBuiltFrom(providerEnum_t idx, std::uint32_t mark);

    // Held while the end maps of an association are brought up to date.
    Association_Load_Mutex& associationLoadMutex() VRAX_ANNOTATE(lock_returned(_associationLoadMutex))
    {
        return _associationLoadMutex;
    }

    // True when a row of the registered-profile tables with these flags is published: bit 0 is set.
    static bool checkFlags(std::uint32_t flags);
    // The InstanceID of a registered profile: "VRAX:" followed by its name.
    static String formatInstanceID(const char* name);
    // The name in such an InstanceID; empty when `instanceId` has another form.
    static String getNameFromInstanceID(const String& instanceId);

    // Replaces the clock behind freshness; null restores the system's monotonic clock.
    void useClock(Clock clock);

  private:
    struct Slot
    {
        Slot();
        ~Slot();

        pthread_rwlock_t lock;
        std::once_flag once;
        std::unique_ptr<Inst_Map> map;
        // Time of the last successful load in tenths of a second, never 0; 0 while the map is stale. 32 bits,
        // because the target has no wider atomics; the distance to now stays right when the count wraps.
        std::atomic<std::uint32_t> loadedAt{0};
        std::atomic<std::uint32_t> loads{0};
        std::atomic<std::uint32_t> forcedUnloads{0};
        std::atomic<std::uint32_t> builtFrom{0};
    };

    VRAX_Maps() = default;
    VRAX_Maps(const VRAX_Maps&) = delete;
    VRAX_Maps& operator=(const VRAX_Maps&) = delete;

    Slot& slot(providerEnum_t idx) { return _slots[static_cast<std::size_t>(idx)]; }
    const Slot& slot(providerEnum_t idx) const { return _slots[static_cast<std::size_t>(idx)]; }
    std::uint32_t now() const;

    std::array<Slot, kMapCount> _slots;
    Association_Load_Mutex _associationLoadMutex;
    std::atomic<Clock> _clock{nullptr};
};

} // namespace cimple

#endif
