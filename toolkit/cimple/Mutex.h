// A mutual exclusion lock, by default one that its owner may lock again.
#ifndef CIMPLE_MUTEX_H
#define CIMPLE_MUTEX_H

#include <cimple/config.h>
#include <pthread.h>

CIMPLE_NAMESPACE_BEGIN

class CIMPLE_CIMPLE_LINKAGE Mutex
{
  public:
    explicit Mutex(bool recursive = true); // throws std::system_error
    ~Mutex();
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    void lock();    // throws std::system_error if the lock cannot be had at all
    int try_lock(); // 0 acquired, -1 otherwise
    void unlock();

  private:
    friend class Cond;

    pthread_mutex_t _mutex;
};

CIMPLE_NAMESPACE_END

#endif
