// Scoped locks on the instance maps.
#ifndef COMMON_MAP_LOCKS_H
#define COMMON_MAP_LOCKS_H

#include "support/VRAX_Maps.h"

namespace cimple
{

// What both map guards do: keep the result of the lock call and give back only what it obtained. A failed
// call is no error: it means that the thread already holds the map's write lock further out, and the
// operation goes on under that one.
class Map_Lock
{
  public:
    Map_Lock(const Map_Lock&) = delete;
    Map_Lock& operator=(const Map_Lock&) = delete;

    bool obtained() const { return _result == 0; }

  protected:
    Map_Lock(int result, providerEnum_t map) : _result(result), _map(map) {}
    ~Map_Lock()
    {
        if (_result == 0)
            VRAX_Maps::getInstance()->unlock(_map);
    }

  private:
    int _result;
    providerEnum_t _map;
};

class MapRdLock : public Map_Lock
{
  public:
    explicit MapRdLock(providerEnum_t map) : Map_Lock(VRAX_Maps::getInstance()->rdLock(map), map) {}
};

class MapWrLock : public Map_Lock
{
  public:
    explicit MapWrLock(providerEnum_t map) : Map_Lock(VRAX_Maps::getInstance()->wrLock(map), map) {}
};

// Holds the association-load mutex until unlock() or the end of the scope.
class VRAX_SCOPED_CAPABILITY Association_Load_Lock
{
  public:
    Association_Load_Lock() VRAX_ACQUIRE(VRAX_Maps::getInstance()->associationLoadMutex())
    {
        VRAX_Maps::getInstance()->associationLoadMutex().lock();
    }
    ~Association_Load_Lock() VRAX_RELEASE()
    {
        if (_held)
            VRAX_Maps::getInstance()->associationLoadMutex().unlock();
    }
    Association_Load_Lock(const Association_Load_Lock&) = delete;
    Association_Load_Lock& operator=(const Association_Load_Lock&) = delete;

    void unlock() VRAX_RELEASE()
    {
        _held = false;
        VRAX_Maps::getInstance()->associationLoadMutex().unlock();
    }

  private:
    bool _held = true;
};

} // namespace cimple

#endif
