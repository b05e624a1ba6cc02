// The process-wide registry of cached instance maps: one map, one lock and one freshness record per class;
// and of the indication providers' event lists.
#ifndef SUPPORT_VRAX_MAPS_H
#define SUPPORT_VRAX_MAPS_H

#include "support/Event_List.h"
#include "support/Freshness.h"
#include "support/Inst_Map.h"
#include "support/Map_RwLock.h"
#include "support/providerEnum.h"
#include "support/thread_annotations.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>

#include <pthread.h>

namespace cimple
{

// What the switch is for the fabric, of which the published profiles depend.
enum class Switch_Role
{
    Domain,     // a domain of its own
    Transparent // has no domain, and so no fabric, zoning or blades of its own
};

// The indication providers, of which each has a list of the switch events that it has not handled yet.
enum class Indication_Kind
{
    Alert,
    Creation,
    Deletion,
    Modification
};
constexpr std::size_t kIndicationKinds = 4;

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
// that holds a map lock must not ask for the association-load mutex unless it already holds it. Event lists
// have locks of their own, taken with no other.
//
// Lives as long as the process and is never destroyed: requests may still be running while it exits.
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

    // The map's lock (Map_RwLock), with the debug check of the lock order.
    int rdLock(providerEnum_t idx);
    int wrLock(providerEnum_t idx);
    void unlock(providerEnum_t idx);
    Map_RwLock& lockOf(providerEnum_t idx) { return slot(idx).lock; }

    // True when the map may be served as it is: it was loaded less than kFreshnessMilliseconds ago and
    // nothing has made it stale since.
    bool InstMapIsFresh(providerEnum_t idx) const;
    // True when the map holds all that a load has brought (Freshness::isComplete).
    bool InstMapIsComplete(providerEnum_t idx) const;
    // Makes the map stale; what it holds stays until the next load. A load under way leaves the map stale.
    // Needs no lock.
    void InstMapForceUnload(providerEnum_t idx);

    // For the thread that holds the map's write lock, which debug builds check. A load that began ends in one
    // of the outcomes; a failed one empties the map. `builtFrom`: for a map built from other maps, a mark of
    // their contents.
    void InstMapLoadBegan(providerEnum_t idx, std::uint32_t builtFrom = 0);
    void InstMapLoadSetOK(providerEnum_t idx);
    void InstMapLoadSetFailed(providerEnum_t idx);
    // An instance of the map was replaced. The map stays as fresh as it was.
    void InstMapChanged(providerEnum_t idx);
    // Empties the map, which is then stale.
    void InstMapClear(providerEnum_t idx);

    // Number of successful loads and changes of the map, modulo 2^32: a different number means different
    // instances.
    std::uint32_t loadCount(providerEnum_t idx) const;
    // The mark that the map's last load was given.
    std::uint32_t builtFrom(providerEnum_t idx) const;

    // Held while the end maps of an association are brought up to date.
    Association_Load_Mutex& associationLoadMutex() VRAX_ANNOTATE(lock_returned(_associationLoadMutex))
    {
        return _associationLoadMutex;
    }

    // Where an indication provider registers to get its events (support/receiveSwitchEvent.h).
    Event_List& eventList(Indication_Kind kind) { return _eventLists[static_cast<std::size_t>(kind)]; }

    // True when a row of the registered-profile tables with these flags is published by a switch of this
    // role: a domain publishes every row, a transparent switch those with bit 0.
    static bool checkFlags(std::uint32_t flags, Switch_Role role);
    // The InstanceID of a registered profile: "VRAX:" followed by its name.
    static String formatInstanceID(const char* name);
    // The text after the last ":" of an InstanceID; none when there is no ":".
    static std::optional<String> getNameFromInstanceID(const String& instanceId);

    // Replaces the clock behind freshness; null restores the system's monotonic clock.
    void useClock(Clock clock);

  private:
    // One map with its lock and its freshness. Freshness is read, and staleness forced, without the lock;
    // what else changes it is the writer's.
    class Slot
    {
      public:
        Map_RwLock lock;

        const Freshness& freshness() const { return _freshness; }
        void forceStale() { _freshness.forceStale(); }
        Freshness& freshnessToWrite() VRAX_REQUIRES(lock) { return _freshness; }

        Inst_Map& map(const Meta_Class& metaClass);
        // Releases the instances; nothing when the map was never asked for.
        void clearMap() VRAX_REQUIRES(lock);

      private:
        std::once_flag _once;
        std::atomic<Inst_Map*> _map{nullptr};
        Freshness _freshness;
    };

    VRAX_Maps() = default;
    ~VRAX_Maps() = delete;
    VRAX_Maps(const VRAX_Maps&) = delete;
    VRAX_Maps& operator=(const VRAX_Maps&) = delete;

    Slot& slot(providerEnum_t idx) { return _slots[static_cast<std::size_t>(idx)]; }
    const Slot& slot(providerEnum_t idx) const { return _slots[static_cast<std::size_t>(idx)]; }
    std::uint64_t now() const;

    std::array<Slot, kMapCount> _slots;
    Association_Load_Mutex _associationLoadMutex;
    std::atomic<Clock> _clock{nullptr};
    static std::uint64_t registryNow() { return getInstance()->now(); }
    std::array<Event_List, kIndicationKinds> _eventLists{
        {Event_List(registryNow), Event_List(registryNow), Event_List(registryNow), Event_List(registryNow)}};
};

} // namespace cimple

#endif
