// Holds a Mutex for the length of a scope.
#ifndef CIMPLE_AUTO_MUTEX_H
#define CIMPLE_AUTO_MUTEX_H

#include <cimple/Mutex.h>

CIMPLE_NAMESPACE_BEGIN

class Auto_Mutex
{
  public:
    Auto_Mutex(Mutex& mutex) : _mutex(mutex) { _mutex.lock(); }
    ~Auto_Mutex() { _mutex.unlock(); }
    Auto_Mutex(const Auto_Mutex&) = delete;
    Auto_Mutex& operator=(const Auto_Mutex&) = delete;

  private:
    Mutex& _mutex;
};

CIMPLE_NAMESPACE_END

#endif
