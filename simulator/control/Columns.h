// Texts in columns that are as wide as what stands in them.
#ifndef SIMULATOR_CONTROL_COLUMNS_H
#define SIMULATOR_CONTROL_COLUMNS_H

#include <algorithm>
#include <string>
#include <vector>

namespace simulator
{

class Columns
{
  public:
    explicit Columns(std::vector<std::string> heads) { add(std::move(heads)); }

    void add(std::vector<std::string> cells)
    {
        _widths.resize(std::max(_widths.size(), cells.size()));
        for (std::size_t i = 0; i < cells.size(); ++i)
            _widths[i] = std::max(_widths[i], cells[i].size());
        _rows.push_back(std::move(cells));
    }

    // A line for each row, without blanks at the ends.
    std::string text() const
    {
        std::string all;
        for (const std::vector<std::string>& row : _rows)
        {
            std::string line;
            for (std::size_t i = 0; i < row.size(); ++i)
                line += row[i] + std::string(_widths[i] - row[i].size() + 2, ' ');
            line.erase(line.find_last_not_of(' ') + 1);
            all += line + '\n';
        }
        return all;
    }

  private:
    std::vector<std::vector<std::string>> _rows;
    std::vector<std::size_t> _widths;
};

} // namespace simulator

#endif
