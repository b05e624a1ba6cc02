// The bounds on everything a client or a provider can make the agent hold or do; limits.def is their table.
#ifndef AGENT_LIMITS_LIMITS_H
#define AGENT_LIMITS_LIMITS_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace cimd
{

// A member for each row, with its default. Tests pass smaller ones.
struct Limits
{
#define LIMIT(member, type, standard, least, most, unit, option, meaning) type member{standard};
#include "agent/limits/limits.def"
#undef LIMIT
};

// A row of the table. Numbers are in `unit`.
struct LimitRow
{
    const char* option; ///< Without the dashes.
    const char* unit;   ///< "bytes", "s", ...; empty for a plain count.
    const char* meaning;
    std::uint64_t standard;
    std::uint64_t least;
    std::uint64_t most;
    std::uint64_t (*get)(const Limits& limits);
    void (*set)(Limits& limits, std::uint64_t value);
};

const std::vector<LimitRow>& limitRows();

// Sets a limit from a command line; std::invalid_argument, saying what may stand there, if it cannot.
void setLimit(Limits& limits, const LimitRow& row, const std::string& value);

// "32768 bytes"
std::string limitText(const LimitRow& row, std::uint64_t value);

// The table for --show-limits; a column with the present values is added if one differs from its default.
std::string limitsTable(const Limits& limits);

} // namespace cimd

#endif
