// A condition variable for use with Mutex.
#ifndef CIMPLE_COND_H
#define CIMPLE_COND_H

#include <cimple/Mutex.h>

CIMPLE_NAMESPACE_BEGIN

class CIMPLE_CIMPLE_LINKAGE Cond
{
  public:
    Cond(); // throws std::system_error
    ~Cond();
    Cond(const Cond&) = delete;
    Cond& operator=(const Cond&) = delete;

    void signal();           // wakes one waiter
    void wait(Mutex& mutex); // locked once by the caller; may wake without a signal

  private:
    pthread_cond_t _cond;
};

CIMPLE_NAMESPACE_END

#endif
