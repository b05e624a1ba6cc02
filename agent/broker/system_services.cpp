// Operating system services of the broker: threads, locks and conditions for providers.
#include "agent/broker/tables.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <new>
#include <pthread.h>
#include <string>

namespace cimd
{
namespace
{

static_assert(sizeof(pthread_t) <= sizeof(CMPI_THREAD_TYPE), "thread ids travel in pointers");
static_assert(sizeof(pthread_key_t) == sizeof(CMPI_THREAD_KEY_TYPE), "keys travel as they are");

pthread_t threadOf(CMPI_THREAD_TYPE thread)
{
    pthread_t id = 0;
    std::memcpy(&id, &thread, sizeof(id));
    return id;
}

char* resolveFileName(const char* name)
{
    const std::string file = "lib" + std::string(name ? name : "") + ".so";
    return strdup(file.c_str());
}

CMPI_THREAD_TYPE newThread(CMPIThreadFunc start, void* argument, int detached)
{
    pthread_t id{};
    if (pthread_create(&id, nullptr, start, argument) != 0)
        return nullptr;
    if (detached != 0)
        pthread_detach(id);
    CMPI_THREAD_TYPE thread = nullptr;
    std::memcpy(&thread, &id, sizeof(id));
    return thread;
}

int joinThread(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN* result)
{
    return pthread_join(threadOf(thread), result);
}

int exitThread(CMPI_THREAD_RETURN result)
{
    pthread_exit(result);
}

int cancelThread(CMPI_THREAD_TYPE thread)
{
    return pthread_cancel(threadOf(thread));
}

int threadSleep(CMPIUint32 milliseconds)
{
    timespec left{static_cast<time_t>(milliseconds / 1000),
                  static_cast<long>(milliseconds % 1000) * 1'000'000};
    return nanosleep(&left, nullptr) == 0 ? 0 : errno;
}

// *once is 0 before, 1 while the function runs, 2 after: an int the provider initialised, so no
// pthread_once_t.
int threadOnce(int* once, CMPIThreadOnceFunc function)
{
    static auto& mutex = *new std::recursive_mutex;
    const std::lock_guard lock(mutex);
    if (*once != 0)
        return 0;
    *once = 1;
    function();
    *once = 2;
    return 0;
}

int createThreadKey(CMPI_THREAD_KEY_TYPE* key, CMPIThreadKeyCleanupFunc cleanup)
{
    return pthread_key_create(key, cleanup);
}

int destroyThreadKey(CMPI_THREAD_KEY_TYPE key)
{
    return pthread_key_delete(key);
}

void* getThreadSpecific(CMPI_THREAD_KEY_TYPE key)
{
    return pthread_getspecific(key);
}

int setThreadSpecific(CMPI_THREAD_KEY_TYPE key, void* value)
{
    return pthread_setspecific(key, value);
}

pthread_mutex_t* mutexOf(CMPI_MUTEX_TYPE mutex)
{
    return static_cast<pthread_mutex_t*>(mutex);
}

pthread_cond_t* conditionOf(CMPI_COND_TYPE condition)
{
    return static_cast<pthread_cond_t*>(condition);
}

CMPI_MUTEX_TYPE newMutex(int)
{
    pthread_mutexattr_t attributes;
    if (pthread_mutexattr_init(&attributes) != 0)
        return nullptr;
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    std::unique_ptr<pthread_mutex_t> mutex(new (std::nothrow) pthread_mutex_t);
    const bool isMade = mutex && pthread_mutex_init(mutex.get(), &attributes) == 0;
    pthread_mutexattr_destroy(&attributes);
    return isMade ? mutex.release() : nullptr;
}

void destroyMutex(CMPI_MUTEX_TYPE mutex)
{
    const std::unique_ptr<pthread_mutex_t> owned(mutexOf(mutex));
    if (owned)
        pthread_mutex_destroy(owned.get());
}

void lockMutex(CMPI_MUTEX_TYPE mutex)
{
    pthread_mutex_lock(mutexOf(mutex));
}

void unlockMutex(CMPI_MUTEX_TYPE mutex)
{
    pthread_mutex_unlock(mutexOf(mutex));
}

CMPI_COND_TYPE newCondition(int)
{
    std::unique_ptr<pthread_cond_t> condition(new (std::nothrow) pthread_cond_t);
    return condition && pthread_cond_init(condition.get(), nullptr) == 0 ? condition.release() : nullptr;
}

void destroyCondition(CMPI_COND_TYPE condition)
{
    const std::unique_ptr<pthread_cond_t> owned(conditionOf(condition));
    if (owned)
        pthread_cond_destroy(owned.get());
}

int condWait(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex)
{
    return pthread_cond_wait(conditionOf(condition), mutexOf(mutex));
}

int timedCondWait(CMPI_COND_TYPE condition, CMPI_MUTEX_TYPE mutex, struct timespec* until)
{
    return pthread_cond_timedwait(conditionOf(condition), mutexOf(mutex), until);
}

int signalCondition(CMPI_COND_TYPE condition)
{
    return pthread_cond_signal(conditionOf(condition));
}

} // namespace

const CMPIBrokerExtFT kSystemTable{
    CMPIVersion200, resolveFileName, newThread,       joinThread,       exitThread,        cancelThread,
    threadSleep,    threadOnce,      createThreadKey, destroyThreadKey, getThreadSpecific, setThreadSpecific,
    newMutex,       destroyMutex,    lockMutex,       unlockMutex,      newCondition,      destroyCondition,
    condWait,       timedCondWait,   signalCondition};

} // namespace cimd
