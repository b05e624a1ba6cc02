// From an event to its listeners: one indication.
#ifndef INDICATIONPROVIDERS_DELIVER_H
#define INDICATIONPROVIDERS_DELIVER_H

#include "common/Owned.h"

#include <cstdint>
#include <functional>
#include <initializer_list>

namespace cimple
{

// Numbers of predefined filters (delivery/filter_table.h).
typedef std::initializer_list<std::uint16_t> Filters;

// Sends what build() makes to those who subscribed to one of the filters, which are asked in this order;
// nothing is built when there are none. What build() throws is logged, in the name of `source` and `function`
// unless it is a VRAX_Except, and nothing is sent then. Throws nothing itself; a caller that must not throw
// either passes std::cref(build), which takes no memory.
void deliver(const char* source,
             const char* function,
             const Filters& filters,
             const std::function<Owned<Instance>()>& build);

} // namespace cimple

#endif
