// The process-wide registry of cached instance maps.
#include "support/VRAX_Maps.h"

#include "support/lock_order.h"

#include <chrono>
#include <cstring>
#include <system_error>

namespace cimple
{

namespace
{

constexpr std::uint32_t kMillisecondsPerTick = 100;
constexpr std::uint32_t kFreshnessTicks = kFreshnessMilliseconds / kMillisecondsPerTick;
constexpr char kInstanceIdPrefix[] = "VRAX:";

std::uint64_t steadyMilliseconds()
{
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

void require(int result, const char* what)
{
    if (result != 0)
        throw std::system_error(result, std::generic_category(), what);
}

} // namespace

Association_Load_Mutex::Association_Load_Mutex()
{
    pthread_mutexattr_t attributes;
    require(pthread_mutexattr_init(&attributes), "association-load mutex");
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int result = pthread_mutex_init(&_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    require(result, "association-load mutex");
}

Association_Load_Mutex::~Association_Load_Mutex()
{
    pthread_mutex_destroy(&_mutex);
}

void Association_Load_Mutex::lock() VRAX_NO_THREAD_SAFETY_ANALYSIS
{
    lock_order::asking(lock_order::Lock::associationLoad(), lock_order::Mode::Write);
    pthread_mutex_lock(&_mutex);
    lock_order::obtained(lock_order::Lock::associationLoad(), lock_order::Mode::Write);
}

void Association_Load_Mutex::unlock() VRAX_NO_THREAD_SAFETY_ANALYSIS
{
    lock_order::released(lock_order::Lock::associationLoad());
    pthread_mutex_unlock(&_mutex);
}

VRAX_Maps::Slot::Slot()
{
    require(pthread_rwlock_init(&lock, nullptr), "instance map lock");
}

VRAX_Maps::Slot::~Slot()
{
    pthread_rwlock_destroy(&lock);
}

VRAX_Maps* VRAX_Maps::getInstance()
{
    static VRAX_Maps maps;
    return &maps;
}

Inst_Map& VRAX_Maps::map(providerEnum_t idx, const Meta_Class& metaClass)
{
    Slot& target = slot(idx);
    std::call_once(target.once, [&] { target.map = std::make_unique<Inst_Map>(&metaClass); });
    return *target.map;
}

int VRAX_Maps::rdLock(providerEnum_t idx)
{
    lock_order::asking(lock_order::Lock::map(idx), lock_order::Mode::Read);
    const int result = pthread_rwlock_rdlock(&slot(idx).lock);
    if (result == 0)
        lock_order::obtained(lock_order::Lock::map(idx), lock_order::Mode::Read);
    return result;
}

int VRAX_Maps::wrLock(providerEnum_t idx)
{
    lock_order::asking(lock_order::Lock::map(idx), lock_order::Mode::Write);
    const int result = pthread_rwlock_wrlock(&slot(idx).lock);
    if (result == 0)
        lock_order::obtained(lock_order::Lock::map(idx), lock_order::Mode::Write);
    return result;
}

void VRAX_Maps::unlock(providerEnum_t idx)
{
    lock_order::released(lock_order::Lock::map(idx));
    pthread_rwlock_unlock(&slot(idx).lock);
}

bool VRAX_Maps::InstMapIsFresh(providerEnum_t idx) const
{
    const std::uint32_t loadedAt = slot(idx).loadedAt.load();
    return loadedAt != 0 && now() - loadedAt < kFreshnessTicks;
}

void VRAX_Maps::InstMapLoadSetOK(providerEnum_t idx)
{
    Slot& target = slot(idx);
    if (target.map)
        target.map->setComplete(true);
    target.loads.fetch_add(1);
    target.loadedAt.store(now());
}

void VRAX_Maps::InstMapLoadSetFailed(providerEnum_t idx)
{
    Slot& target = slot(idx);
    target.loadedAt.store(0);
    if (target.map)
        target.map->setComplete(false);
}

void VRAX_Maps::InstMapForceUnload(providerEnum_t idx)
{
    // Counted first: a load that misses the count has recorded its success already, and that ends here.
    slot(idx).forcedUnloads.fetch_add(1);
    slot(idx).loadedAt.store(0);
}

std::uint32_t VRAX_Maps::forcedUnloads(providerEnum_t idx) const
{
    return slot(idx).forcedUnloads.load();
}

void VRAX_Maps::InstMapChanged(providerEnum_t idx)
{
    slot(idx).loads.fetch_add(1);
}

std::uint32_t VRAX_Maps::loadCount(providerEnum_t idx) const
{
    return slot(idx).loads.load();
}

std::uint32_t VRAX_Maps::builtFrom(providerEnum_t idx) const
{
    return slot(idx).builtFrom.load();
}

void VRAX_Maps::setBuiltFrom(providerEnum_t idx, std::uint32_t mark)
{
    slot(idx).builtFrom.store(mark);
}

bool VRAX_Maps::checkFlags(std::uint32_t flags)
{
    return (flags & 1U) != 0;
}

String VRAX_Maps::formatInstanceID(const char* name)
{
    String id(kInstanceIdPrefix);
    id.append(name);
    return id;
}

String VRAX_Maps::getNameFromInstanceID(const String& instanceId)
{
    constexpr std::size_t prefixLength = sizeof(kInstanceIdPrefix) - 1;
    if (std::strncmp(instanceId.c_str(), kInstanceIdPrefix, prefixLength) != 0)
        return String();
    return String(instanceId.c_str() + prefixLength);
}

void VRAX_Maps::useClock(Clock clock)
{
    _clock.store(clock);
}

std::uint32_t VRAX_Maps::now() const
{
    const Clock clock = _clock.load();
    const std::uint64_t milliseconds = clock ? clock() : steadyMilliseconds();
    const auto ticks = static_cast<std::uint32_t>(milliseconds / kMillisecondsPerTick + 1);
    return ticks != 0 ? ticks : 1;
}

} // namespace cimple
