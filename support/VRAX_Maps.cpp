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

Inst_Map& VRAX_Maps::Slot::map(const Meta_Class& metaClass)
{
    std::call_once(_once, [&] { _map.store(new Inst_Map(&metaClass)); });
    return *_map.load();
}

void VRAX_Maps::Slot::clearMap()
{
    if (Inst_Map* const map = _map.load())
        map->clear();
}

VRAX_Maps* VRAX_Maps::getInstance()
{
    static VRAX_Maps* const maps = new VRAX_Maps;
    return maps;
}

Inst_Map& VRAX_Maps::map(providerEnum_t idx, const Meta_Class& metaClass)
{
    return slot(idx).map(metaClass);
}

int VRAX_Maps::rdLock(providerEnum_t idx)
{
    lock_order::asking(lock_order::Lock::map(idx), lock_order::Mode::Read);
    const int result = slot(idx).lock.read();
    if (result == 0)
        lock_order::obtained(lock_order::Lock::map(idx), lock_order::Mode::Read);
    return result;
}

int VRAX_Maps::wrLock(providerEnum_t idx)
{
    lock_order::asking(lock_order::Lock::map(idx), lock_order::Mode::Write);
    const int result = slot(idx).lock.write();
    if (result == 0)
        lock_order::obtained(lock_order::Lock::map(idx), lock_order::Mode::Write);
    return result;
}

void VRAX_Maps::unlock(providerEnum_t idx)
{
    lock_order::released(lock_order::Lock::map(idx));
    slot(idx).lock.unlock();
}

bool VRAX_Maps::InstMapIsFresh(providerEnum_t idx) const
{
    return slot(idx).freshness().isFresh(now());
}

bool VRAX_Maps::InstMapIsComplete(providerEnum_t idx) const
{
    return slot(idx).freshness().isComplete();
}

void VRAX_Maps::InstMapForceUnload(providerEnum_t idx)
{
    slot(idx).forceStale();
}

void VRAX_Maps::InstMapLoadBegan(providerEnum_t idx, std::uint32_t builtFrom)
{
    Slot& target = slot(idx);
    target.lock.assertWriting(idx);
    target.freshnessToWrite().loadBegan(builtFrom);
}

void VRAX_Maps::InstMapLoadSetOK(providerEnum_t idx)
{
    Slot& target = slot(idx);
    target.lock.assertWriting(idx);
    target.freshnessToWrite().loadSucceeded(now());
}

void VRAX_Maps::InstMapLoadSetFailed(providerEnum_t idx)
{
    Slot& target = slot(idx);
    target.lock.assertWriting(idx);
    target.freshnessToWrite().loadFailed();
    target.clearMap();
}

void VRAX_Maps::InstMapChanged(providerEnum_t idx)
{
    Slot& target = slot(idx);
    target.lock.assertWriting(idx);
    target.freshnessToWrite().changed();
}

void VRAX_Maps::InstMapClear(providerEnum_t idx)
{
    Slot& target = slot(idx);
    target.lock.assertWriting(idx);
    target.freshnessToWrite().cleared();
    target.clearMap();
}

std::uint32_t VRAX_Maps::loadCount(providerEnum_t idx) const
{
    return slot(idx).freshness().contents();
}

std::uint32_t VRAX_Maps::builtFrom(providerEnum_t idx) const
{
    return slot(idx).freshness().builtFrom();
}

bool VRAX_Maps::checkFlags(std::uint32_t flags, Switch_Role role)
{
    return role == Switch_Role::Domain || (flags & 1U) != 0;
}

String VRAX_Maps::formatInstanceID(const char* name)
{
    return String(kInstanceIdPrefix, name);
}

std::optional<String> VRAX_Maps::getNameFromInstanceID(const String& instanceId)
{
    const char* const colon = std::strrchr(instanceId.c_str(), ':');
    if (colon == nullptr)
        return std::nullopt;
    return String(colon + 1);
}

void VRAX_Maps::useClock(Clock clock)
{
    _clock.store(clock);
}

std::uint64_t VRAX_Maps::now() const
{
    const Clock clock = _clock.load();
    return clock ? clock() : steadyMilliseconds();
}

} // namespace cimple
