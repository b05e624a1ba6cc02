// Scoped owner of a list that the fabric services hand out.
#ifndef SWITCHACCESS_FCS_LIST_H
#define SWITCHACCESS_FCS_LIST_H

#include "platform/xpl_fcs.h"
#include "switchaccess/XPL_Mem.h"

namespace cimple
{

// Asks the switch at construction; the elements are valid until the end of the scope, whatever happens to the
// fabric:
//     const Fcs_List<xpl_fcsPort> ports(&xpl_fcsGetPortList, domainId);
//     for (const xpl_fcsPort& port : ports)
template <class ELEMENT>
class Fcs_List
{
  public:
    template <class CALL, class... ARGUMENTS>
    explicit Fcs_List(CALL call, ARGUMENTS... arguments)
        : _cell(call(hSwitch, arguments..., &_count, &_error))
    {
    }

    // 0, or the status with which the call failed; the list is empty then.
    std::int32_t error() const { return _error; }

    const ELEMENT* begin() const { return _count > 0 ? *_cell : nullptr; }
    const ELEMENT* end() const { return _count > 0 ? *_cell + _count : nullptr; }

  private:
    std::uint32_t _count = 0;
    std::int32_t _error = 0;
    XPL_Mem<ELEMENT*> _cell;
};

} // namespace cimple

#endif
