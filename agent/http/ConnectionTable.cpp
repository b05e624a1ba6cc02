// Counting connections.
#include "agent/http/ConnectionTable.h"

#include <algorithm>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::size_t kShownAddresses = 32;

} // namespace

void ConnectionTable::add(const std::string& address, const char* state)
{
    Row& row = _rows[address];
    ++row.count;
    ++row.states[state];
}

std::vector<std::string> ConnectionTable::lines() const
{
    std::vector<const std::pair<const std::string, Row>*> order;
    order.reserve(_rows.size());
    std::size_t all = 0;
    for (const auto& row : _rows)
    {
        order.push_back(&row);
        all += row.second.count;
    }
    std::stable_sort(order.begin(),
                     order.end(),
                     [](const auto* a, const auto* b) { return a->second.count > b->second.count; });
    std::vector<std::string> lines{"connections: " + std::to_string(all) + " of " + std::to_string(_most) +
                                   " from " + std::to_string(order.size()) + " addresses"};
    order.resize(std::min(order.size(), kShownAddresses));
    for (const auto* row : order)
    {
        std::string line = row->first + ": " + std::to_string(row->second.count);
        const char* separator = ": ";
        for (const auto& [state, count] : row->second.states)
            line += std::exchange(separator, ", ") + std::to_string(count) + ' ' + state;
        lines.push_back(std::move(line));
    }
    return lines;
}

} // namespace cimd
