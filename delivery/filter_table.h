// The predefined indication filters, by number.
#ifndef DELIVERY_FILTER_TABLE_H
#define DELIVERY_FILTER_TABLE_H

#include <cstddef>
#include <cstdint>
#include <optional>

namespace cimple
{

// One filter. Its number is its place in the table, and what is known of it elsewhere: subscriptions are
// looked up by it. The layout is the same on every machine.
struct Filter_Table_Entry
{
    std::uint8_t bigEndianNumber[2];
    char name[34]; // what a subscription of the switch names. Those that begin with "CQL" are CQL, others WQL
    char query[260]; // what a client reads; events are matched by number, never by query

    constexpr std::uint16_t number() const
    {
        return static_cast<std::uint16_t>(bigEndianNumber[0] << 8 | bigEndianNumber[1]);
    }
};

static_assert(offsetof(Filter_Table_Entry, bigEndianNumber) == 0 && offsetof(Filter_Table_Entry, name) == 2 &&
                  offsetof(Filter_Table_Entry, query) == 36 && sizeof(Filter_Table_Entry) == 296 &&
                  alignof(Filter_Table_Entry) == 1,
              "rows of 296 bytes: number, name, query");

extern const Filter_Table_Entry filterTableEntries[];
extern const std::uint16_t filterTableSize; // rows

// The number of the filter of this name, letter case included.
std::optional<std::uint16_t> filterNumber(const char* name);

} // namespace cimple

#endif
