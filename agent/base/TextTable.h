// Tables for people: columns as wide as their widest cell.
#ifndef AGENT_BASE_TEXTTABLE_H
#define AGENT_BASE_TEXTTABLE_H

#include <cstddef>
#include <string>
#include <vector>

namespace cimd
{

class TextTable
{
  public:
    // The headings; one that starts with '>' heads a column of numbers, which stand to the right.
    explicit TextTable(const std::vector<std::string>& headings);

    // As many cells as there are headings.
    void add(std::vector<std::string> cells) { _lines.push_back(std::move(cells)); }

    // Headings and rows, without line ends.
    std::vector<std::string> lines() const;

  private:
    std::vector<bool> _isNumber;
    std::vector<std::vector<std::string>> _lines;
};

} // namespace cimd

#endif
