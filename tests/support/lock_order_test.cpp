// Tests of the lock-order check: what it lets through and what it stops.
#include "support/lock_order.h"

#include "support/VRAX_Maps.h"

#include <gtest/gtest.h>

#ifdef VRAX_LOCK_CHECKS

namespace cimple
{
namespace
{

VRAX_Maps& maps()
{
    return *VRAX_Maps::getInstance();
}

void holdDataCache()
{
    lock_order::asking(lock_order::Lock::dataCache(), lock_order::Mode::Read);
    lock_order::obtained(lock_order::Lock::dataCache(), lock_order::Mode::Read);
}

TEST(LockOrderDeathTest, StopsInversionsWithBothNames)
{
    typedef int (VRAX_Maps::*Lock)(providerEnum_t);
    constexpr Lock kRead = &VRAX_Maps::rdLock, kWrite = &VRAX_Maps::wrLock;
    const struct
    {
        Lock lock;
        providerEnum_t held;
        providerEnum_t asked;
        const char* message;
    } rows[] = {
        {kWrite,
         VRAX_Namespace_Idx,
         VRAX_ObjectManager_Idx,
         "VRAX_ObjectManager asked for while holding VRAX_Nam"},
        {kRead,
         VRAX_Namespace_Idx,
         VRAX_NamespaceInManager_Idx,
         "VRAX_NamespaceInManager asked for while holdi"},
        {kWrite,
         VRAX_FCSwitchZone_Idx,
         VRAX_FabricZone_Idx,
         "VRAX_FabricZone asked for while holding VRAX_FCSw"},
        {kRead, VRAX_Namespace_Idx, VRAX_Namespace_Idx, "VRAX_Namespace asked for .*: a writer that waits"},
    };
    for (const auto& row : rows)
    {
        const auto take = [&]
        {
            (maps().*row.lock)(row.held);
            (maps().*row.lock)(row.asked);
        };
        EXPECT_DEATH(take(), row.message);
    }
    maps().rdLock(VRAX_Namespace_Idx);
    EXPECT_DEATH(maps().wrLock(VRAX_Namespace_Idx), "a read lock cannot become a write lock");
    EXPECT_DEATH(maps().InstMapLoadSetOK(VRAX_Namespace_Idx),
                 "VRAX_Namespace is changed without its write lock");
    EXPECT_DEATH(maps().associationLoadMutex().lock(),
                 "the association-load mutex asked for while holding VRAX_Namespace");
    maps().unlock(VRAX_Namespace_Idx);
    holdDataCache();
    EXPECT_DEATH(maps().wrLock(VRAX_FCPort_Idx), "VRAX_FCPort asked for while holding the data cache");
    lock_order::released(lock_order::Lock::dataCache());
}

TEST(LockOrder, LetsTheGivenOrderAndNestedAttemptsThrough)
{
    maps().associationLoadMutex().lock();
    EXPECT_EQ(maps().wrLock(VRAX_NamespaceInManager_Idx), 0);
    EXPECT_EQ(maps().wrLock(VRAX_ObjectManager_Idx), 0);
    EXPECT_EQ(maps().wrLock(VRAX_Namespace_Idx), 0);
    // A nested load asks again for what this thread holds, mutex included.
    maps().associationLoadMutex().lock();
    EXPECT_NE(maps().wrLock(VRAX_ObjectManager_Idx), 0);
    EXPECT_NE(maps().rdLock(VRAX_ObjectManager_Idx), 0);
    maps().associationLoadMutex().unlock();
    maps().associationLoadMutex().unlock();
    holdDataCache();
    holdDataCache();
    lock_order::released(lock_order::Lock::dataCache());
    lock_order::released(lock_order::Lock::dataCache());
    maps().unlock(VRAX_Namespace_Idx);
    maps().unlock(VRAX_ObjectManager_Idx);
    maps().unlock(VRAX_NamespaceInManager_Idx);
    // Nothing is left behind that would forbid a lower lock.
    maps().associationLoadMutex().lock();
    maps().associationLoadMutex().unlock();
}

} // namespace
} // namespace cimple

#endif
