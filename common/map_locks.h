// Scoped locks on the instance maps.
#ifndef COMMON_MAP_LOCKS_H
#define COMMON_MAP_LOCKS_H

#include "support/VRAX_Maps.h"

namespace cimple
{

// A map guard keeps the result of its lock call and gives back only what it obtained. A failed call is no
// error: it means that the thread already holds the map's write lock further out, and the operation goes on
// under that one.
class MapRdLock
{
  public:
    explicit MapRdLock(providerEnum_t map) : _result(VRAX_Maps::getInstance()->rdLock(map)), _map(map) {}
    ~MapRdLock()
    {
        if (_result == 0)
            VRAX_Maps::getInstance()->unlock(_map);
    }
    MapRdLock(const MapRdLock&) = delete;
    MapRdLock& operator=(const MapRdLock&) = delete;

    bool obtained() const { return _result == 0; }

  private:
    int _result;
    providerEnum_t _map;
};

class MapWrLock
{
  public:
    explicit MapWrLock(providerEnum_t map) : _result(VRAX_Maps::getInstance()->wrLock(map)), _map(map) {}
    ~MapWrLock()
    {
        if (_result == 0)
            VRAX_Maps::getInstance()->unlock(_map);
    }
    MapWrLock(const MapWrLock&) = delete;
    MapWrLock& operator=(const MapWrLock&) = delete;

    bool obtained() const { return _result == 0; }

  private:
    int _result;
    providerEnum_t _map;
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
