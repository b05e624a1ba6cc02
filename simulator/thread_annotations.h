// Lock types that clang's -Wthread-safety can check, and the annotations they need; plain locks for other
// compilers.
#ifndef SIMULATOR_THREAD_ANNOTATIONS_H
#define SIMULATOR_THREAD_ANNOTATIONS_H

#include <mutex>
#include <shared_mutex>

#if defined(__clang__)
#define SIM_ATTRIBUTE(x) __attribute__((x))
#else
#define SIM_ATTRIBUTE(x)
#endif

#define SIM_GUARDED_BY(x) SIM_ATTRIBUTE(guarded_by(x))
#define SIM_REQUIRES(...) SIM_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define SIM_EXCLUDES(...) SIM_ATTRIBUTE(locks_excluded(__VA_ARGS__))

namespace simulator
{

class SIM_ATTRIBUTE(capability("mutex")) Mutex
{
  public:
    void lock() SIM_ATTRIBUTE(acquire_capability()) { _mutex.lock(); }
    void unlock() SIM_ATTRIBUTE(release_capability()) { _mutex.unlock(); }

  private:
    std::mutex _mutex;
};

class SIM_ATTRIBUTE(capability("shared mutex")) SharedMutex
{
  public:
    void lock() SIM_ATTRIBUTE(acquire_capability()) { _mutex.lock(); }
    void unlock() SIM_ATTRIBUTE(release_capability()) { _mutex.unlock(); }
    void lockShared() SIM_ATTRIBUTE(acquire_shared_capability()) { _mutex.lock_shared(); }
    void unlockShared() SIM_ATTRIBUTE(release_shared_capability()) { _mutex.unlock_shared(); }

  private:
    std::shared_mutex _mutex;
};

template <class M>
class SIM_ATTRIBUTE(scoped_lockable) Locked
{
  public:
    explicit Locked(M& mutex) SIM_ATTRIBUTE(acquire_capability(mutex)) : _mutex(mutex) { _mutex.lock(); }
    ~Locked() SIM_ATTRIBUTE(release_capability()) { _mutex.unlock(); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

  private:
    M& _mutex;
};

class SIM_ATTRIBUTE(scoped_lockable) SharedLocked
{
  public:
    explicit SharedLocked(SharedMutex& mutex) SIM_ATTRIBUTE(acquire_shared_capability(mutex)) : _mutex(mutex)
    {
        _mutex.lockShared();
    }
    ~SharedLocked() SIM_ATTRIBUTE(release_generic_capability()) { _mutex.unlockShared(); }
    SharedLocked(const SharedLocked&) = delete;
    SharedLocked& operator=(const SharedLocked&) = delete;

  private:
    SharedMutex& _mutex;
};

} // namespace simulator

#endif
