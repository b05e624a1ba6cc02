// Locks and conditions on POSIX threads.
#include <cimple/Cond.h>
#include <cimple/Mutex.h>
#include <system_error>

CIMPLE_NAMESPACE_BEGIN

namespace
{
void check(int error, const char* what)
{
    if (error != 0)
        throw std::system_error(error, std::generic_category(), what);
}
} // namespace

Mutex::Mutex(bool recursive)
{
    pthread_mutexattr_t attributes;
    check(pthread_mutexattr_init(&attributes), "cimple::Mutex: pthread_mutexattr_init");
    pthread_mutexattr_settype(&attributes, recursive ? PTHREAD_MUTEX_RECURSIVE : PTHREAD_MUTEX_NORMAL);
    const int error = pthread_mutex_init(&_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
    check(error, "cimple::Mutex: pthread_mutex_init");
}

Mutex::~Mutex()
{
    pthread_mutex_destroy(&_mutex);
}

void Mutex::lock()
{
    check(pthread_mutex_lock(&_mutex), "cimple::Mutex: pthread_mutex_lock");
}

int Mutex::try_lock()
{
    return pthread_mutex_trylock(&_mutex) == 0 ? 0 : -1;
}

void Mutex::unlock()
{
    pthread_mutex_unlock(&_mutex);
}

Cond::Cond()
{
    check(pthread_cond_init(&_cond, nullptr), "cimple::Cond: pthread_cond_init");
}

Cond::~Cond()
{
    pthread_cond_destroy(&_cond);
}

void Cond::signal()
{
    pthread_cond_signal(&_cond);
}

void Cond::wait(Mutex& mutex)
{
    check(pthread_cond_wait(&_cond, &mutex._mutex), "cimple::Cond: pthread_cond_wait");
}

CIMPLE_NAMESPACE_END
