// Scoped owner of a value that the switch-access library hands out in a cell.
#ifndef SWITCHACCESS_XPL_MEM_H
#define SWITCHACCESS_XPL_MEM_H

#include "platform/xpl_lib.h"

#include <cstdio>
#include <cstdlib>

namespace cimple
{

// The cell holds a T made with malloc (or null) and is itself the library's memory. The cell may be null.
// Construct it on the line that receives the cell:
//     XPL_Mem<char*> wwn(get_Local_Switch_World_Wide_Name());
template <class T>
class XPL_Mem
{
  public:
    explicit XPL_Mem(T* cell) : _p(cell) {}
    ~XPL_Mem()
    {
        if (_p == nullptr)
            return;
        std::free(*_p);
        *_p = nullptr;
        xpl_libFreeMemory(_p);
    }
    XPL_Mem(const XPL_Mem&) = delete;
    XPL_Mem& operator=(const XPL_Mem&) = delete;

    bool empty() const { return _p == nullptr; }

    // The value, which stays owned by this object. Stops the program when there is no cell, in every kind of
    // build: going on would read through a null pointer.
    T& operator*() const
    {
        if (_p == nullptr)
        {
            std::fprintf(stderr,
                         "%s:%d: %s: Assertion `%s' failed.\n",
                         "apps/cimd/XPL_Mem",
                         __LINE__,
                         "T& XPL_Mem<T>::operator*() const [with T = char*]",
                         "_p != 0");
            std::abort();
        }
        return *_p;
    }

  private:
    T* _p;
};

} // namespace cimple

#endif
