// Counting connections.
#include "agent/http/connection_lines.h"

#include <algorithm>
#include <utility>

namespace cimd
{

std::vector<std::string> connectionLines(const ConnectionCounts& counts, std::size_t most)
{
    constexpr std::size_t kShownAddresses = 32;
    std::vector<std::pair<std::size_t, std::string>> rows;
    std::size_t all = 0;
    for (const auto& [address, states] : counts)
    {
        std::size_t sum = 0;
        std::string text;
        for (const auto& [state, count] : states)
        {
            sum += count;
            text += (text.empty() ? ": " : ", ") + std::to_string(count) + ' ' + state;
        }
        rows.emplace_back(sum, address + ": " + std::to_string(sum) + text);
        all += sum;
    }
    std::stable_sort(
        rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
    std::vector<std::string> lines{"connections: " + std::to_string(all) + " of " + std::to_string(most) +
                                   " from " + std::to_string(rows.size()) + " addresses"};
    rows.resize(std::min(rows.size(), kShownAddresses));
    for (auto& row : rows)
        lines.push_back(std::move(row.second));
    return lines;
}

} // namespace cimd
