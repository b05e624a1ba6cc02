// Lock types that clang's -Wthread-safety can check, and the annotations they need; plain locks for other
// compilers.
#ifndef SIMULATOR_THREAD_ANNOTATIONS_H
#define SIMULATOR_THREAD_ANNOTATIONS_H

#include <mutex>
#include <shared_mutex>

// The macros read as those of support/thread_annotations.h, letter by letter: tests include both.
#ifdef __clang__
#define VRAX_ANNOTATE(x) __attribute__((x))
#else
#define VRAX_ANNOTATE(x)
#endif

#define VRAX_CAPABILITY(name) VRAX_ANNOTATE(capability(name))
#define VRAX_SCOPED_CAPABILITY VRAX_ANNOTATE(scoped_lockable)
#define VRAX_GUARDED_BY(x) VRAX_ANNOTATE(guarded_by(x))
#define VRAX_ACQUIRE(...) VRAX_ANNOTATE(acquire_capability(__VA_ARGS__))
#define VRAX_ACQUIRE_SHARED(...) VRAX_ANNOTATE(acquire_shared_capability(__VA_ARGS__))
#define VRAX_RELEASE(...) VRAX_ANNOTATE(release_capability(__VA_ARGS__))
#define VRAX_RELEASE_SHARED(...) VRAX_ANNOTATE(release_shared_capability(__VA_ARGS__))
#define VRAX_RELEASE_GENERIC(...) VRAX_ANNOTATE(release_generic_capability(__VA_ARGS__))
#define VRAX_EXCLUDES(...) VRAX_ANNOTATE(locks_excluded(__VA_ARGS__))
#define VRAX_REQUIRES(...) VRAX_ANNOTATE(requires_capability(__VA_ARGS__))

namespace simulator
{

class VRAX_CAPABILITY("mutex") Mutex
{
  public:
    void lock() VRAX_ACQUIRE() { _mutex.lock(); }
    void unlock() VRAX_RELEASE() { _mutex.unlock(); }

  private:
    std::mutex _mutex;
};

class VRAX_CAPABILITY("shared mutex") SharedMutex
{
  public:
    void lock() VRAX_ACQUIRE() { _mutex.lock(); }
    void unlock() VRAX_RELEASE() { _mutex.unlock(); }
    void lockShared() VRAX_ACQUIRE_SHARED() { _mutex.lock_shared(); }
    void unlockShared() VRAX_RELEASE_SHARED() { _mutex.unlock_shared(); }

  private:
    std::shared_mutex _mutex;
};

template <class M>
class VRAX_SCOPED_CAPABILITY Locked
{
  public:
    explicit Locked(M& mutex) VRAX_ACQUIRE(mutex) : _mutex(mutex) { _mutex.lock(); }
    ~Locked() VRAX_RELEASE() { _mutex.unlock(); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

  private:
    M& _mutex;
};

class VRAX_SCOPED_CAPABILITY SharedLocked
{
  public:
    explicit SharedLocked(SharedMutex& mutex) VRAX_ACQUIRE_SHARED(mutex) : _mutex(mutex)
    {
        _mutex.lockShared();
    }
    ~SharedLocked() VRAX_RELEASE_GENERIC() { _mutex.unlockShared(); }
    SharedLocked(const SharedLocked&) = delete;
    SharedLocked& operator=(const SharedLocked&) = delete;

  private:
    SharedMutex& _mutex;
};

} // namespace simulator

#endif
