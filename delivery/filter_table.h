// The indication filters that clients can subscribe to.
#ifndef DELIVERY_FILTER_TABLE_H
#define DELIVERY_FILTER_TABLE_H

#include <cstddef>
#include <cstdint>

namespace cimple
{

// One filter. The layout is shared with the switch firmware: numbers are big-endian on every host.
struct Filter_Table_Entry
{
    std::uint8_t number[2]; // the row's place in the table
    char name[34];          // begins with "CQL" when the query is CQL, otherwise it is WQL
    char query[260];
};
static_assert(offsetof(Filter_Table_Entry, name) == 2 && offsetof(Filter_Table_Entry, query) == 36 &&
                  sizeof(Filter_Table_Entry) == 296,
              "layout shared with the switch firmware");

extern const Filter_Table_Entry filterTableEntries[];
extern const std::uint32_t filterTableSize;

} // namespace cimple

#endif
