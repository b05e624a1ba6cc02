// What loads ask of the local switch: its name and its ports.
#ifndef COMMON_LOCAL_SWITCH_H
#define COMMON_LOCAL_SWITCH_H

#include "common/XPL_Mem.h"

#include <string>

class DataCache;

namespace cimple
{

// The WWN of the local switch; owns the platform's text until the end of the scope.
class Local_Switch_Wwn
{
  public:
    // Asks the switch; throws a critical VRAX_Except in the name of `source`'s load, at the caller's line,
    // when there is no WWN.
    explicit Local_Switch_Wwn(const char* source, int line = __builtin_LINE());

    const char* text() const { return *_cell; }

  private:
    XPL_Mem<char*> _cell;
};

// The indexes of the local ports in the data cache's order, for a range-based for:
//     for (const std::string& portIndex : Root_Ports(cache))
// The caller holds the cache's read lock (CacheLock) throughout.
class Root_Ports
{
  public:
    class Iterator
    {
      public:
        Iterator(const DataCache* cache, std::string index) : _cache(cache), _index(std::move(index)) {}
        const std::string& operator*() const { return _index; }
        Iterator& operator++();
        // The walk ends at the empty index.
        bool operator!=(const Iterator& end) const { return _index != end._index; }

      private:
        const DataCache* _cache;
        std::string _index;
    };

    explicit Root_Ports(const DataCache& cache) : _cache(&cache) {}
    Iterator begin() const;
    Iterator end() const { return Iterator(_cache, std::string()); }

  private:
    const DataCache* _cache;
};

} // namespace cimple

#endif
