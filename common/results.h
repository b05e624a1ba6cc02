// Tables from what a client asks for, or from what the switch answers, to what a method does and returns.
#ifndef COMMON_RESULTS_H
#define COMMON_RESULTS_H

#include "support/cim_log.h"
#include "support/substitute.h"

#include <cimple/cimple.h>

#include <cstddef>
#include <limits>
#include <string>

namespace cimple
{

// What RequestStateChange does about a state that it knows.
enum class State_Action
{
    SetAdminState, // in the configuration record
    RewriteRecord, // unchanged; the switch resets the link of a port whose record is written so
    ForceReset,    // of the whole switch; its record is not touched
    Refuse         // not supported
};

struct State_Change
{
    uint16 requested;
    State_Action action;
    std::int32_t adminState; // an xpl_AdminState; 0 with the other actions
    const char* logged;      // at the information level; null: nothing
};

// The row of the requested state, or null. Logs its line.
template <std::size_t N>
const State_Change* stateChange(const State_Change (&rows)[N], uint16 requested)
{
    for (const State_Change& row : rows)
    {
        if (row.requested != requested)
            continue;
        if (row.logged != nullptr)
            cim_log(kLogInfo, "%s", row.logged);
        return &row;
    }
    return nullptr;
}

// What a result of the switch means to the client of a method: the line for the log, and the method's return
// value. A table ends with a row for kAnyOther.
struct Method_Result
{
    std::int32_t result;
    const char* logged; // at the information level, with the result for its "%d"; null: nothing
    uint32 returned;
};
constexpr std::int32_t kAnyOther = std::numeric_limits<std::int32_t>::min();

// The return value for a result. Logs its line.
template <std::size_t N>
uint32 conclude(const Method_Result (&rows)[N], std::int32_t result)
{
    const Method_Result* row = rows;
    while (row->result != result && row->result != kAnyOther)
        ++row;
    if (row->logged != nullptr)
    {
        char line[256];
        substitute(line, sizeof(line), row->logged, {std::to_string(result).c_str()});
        cim_log(kLogInfo, "%s", line);
    }
    return row->returned;
}

} // namespace cimple

#endif
