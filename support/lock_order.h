// Debug check of the order in which each thread takes the module's locks.
//
// The order: association-load mutex, then instance maps by rank, then the data cache's read lock. The lock of
// an event list is taken alone. The check
// is active where VRAX_LOCK_CHECKS is defined (debug builds) and costs nothing elsewhere. An inversion stops
// the program with the names of both locks, also when no other thread happened to be in the way.
#ifndef SUPPORT_LOCK_ORDER_H
#define SUPPORT_LOCK_ORDER_H

#include "support/providerEnum.h"

namespace cimple
{
namespace lock_order
{

// A lock of the module.
class Lock
{
  public:
    static constexpr Lock associationLoad() { return Lock(-1, No_Class_Idx); }
    static constexpr Lock map(providerEnum_t map) { return Lock(mapRank(map), map); }
    static constexpr Lock dataCache() { return Lock(kDataCacheRank, No_Class_Idx); }
    // Of switch events.
    static constexpr Lock eventList() { return Lock(kEventListRank, No_Class_Idx); }

    constexpr int rank() const { return _rank; }
    constexpr bool isAlone() const { return _rank == kEventListRank; }
    constexpr bool isMap() const { return _rank >= 0 && _rank < kDataCacheRank; }
    constexpr bool operator==(const Lock& other) const { return _rank == other._rank && _map == other._map; }
    const char* name() const;

  private:
    static constexpr int kDataCacheRank = 1000;
    static constexpr int kEventListRank = 2000;
    constexpr Lock(int rank, providerEnum_t map) : _rank(rank), _map(map) {}
    int _rank;
    providerEnum_t _map;
};

enum class Mode
{
    Read,
    Write
};

#ifdef VRAX_LOCK_CHECKS
// The calling thread is about to ask for the lock: stops the program when that can deadlock.
void asking(Lock lock, Mode mode);
// The calling thread has obtained / has given back the lock.
void obtained(Lock lock, Mode mode);
void released(Lock lock);
// The calling thread changes what the lock guards: stops the program unless it holds it for writing.
void requireWriting(Lock lock);
#else
inline void asking(Lock, Mode) {}
inline void obtained(Lock, Mode) {}
inline void released(Lock) {}
inline void requireWriting(Lock) {}
#endif

} // namespace lock_order
} // namespace cimple

#endif
