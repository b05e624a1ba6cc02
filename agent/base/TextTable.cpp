// Aligning the columns of a table.
#include "agent/base/TextTable.h"

#include <algorithm>

namespace cimd
{

TextTable::TextTable(const std::vector<std::string>& headings) : _lines(1)
{
    for (const std::string& heading : headings)
    {
        _isNumber.push_back(heading.front() == '>');
        _lines.front().push_back(heading.substr(_isNumber.back() ? 1 : 0));
    }
}

std::vector<std::string> TextTable::lines() const
{
    std::vector<std::size_t> widths(_isNumber.size());
    for (const auto& cells : _lines)
        for (std::size_t i = 0; i < cells.size(); ++i)
            widths[i] = std::max(widths[i], cells[i].size());
    std::vector<std::string> texts;
    for (const auto& cells : _lines)
    {
        std::string& text = texts.emplace_back();
        for (std::size_t i = 0; i < cells.size(); ++i)
        {
            const std::string padding(widths[i] - cells[i].size(), ' ');
            text += (i > 0 ? "  " : "") + (_isNumber[i] ? padding + cells[i] : cells[i] + padding);
        }
        text.erase(text.find_last_not_of(' ') + 1);
    }
    return texts;
}

} // namespace cimd
