// Measures and prints the figures of the benchmarks.
#ifndef TESTS_BENCH_REPORT_H
#define TESTS_BENCH_REPORT_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench
{

// Seconds that one call of `run` takes: the best of several rounds, each long enough to be timed well.
double secondsPerCall(const std::function<void()>& run);

// Seconds of processor time that one call of `run` takes: the least of a number of calls that does not
// depend on their length, so that other work on the machine counts as little as can be. `prepare` comes
// before every call and is not timed.
double processorSeconds(const std::function<void()>& run, const std::function<void()>& prepare);

// Bytes of heap that are in use now and were not before `make`; whatever make returns is kept alive while
// they are counted.
std::size_t heapGrowth(const std::function<std::function<void()>()>& make);

// A table of one figure at growing sizes. Each row shows the figure per unit of work and its ratio to the row
// before: a ratio near 1 means that the cost per unit does not grow with the size.
class Table
{
  public:
    Table(std::string title, std::string size, std::string unit);

    void row(std::size_t size, double valuePerUnit, const std::string& remark = "");
    void print() const;

  private:
    struct Row
    {
        std::size_t size;
        double value;
        std::string remark;
    };

    std::string _title;
    std::string _size;
    std::string _unit;
    std::vector<Row> _rows;
};

} // namespace bench

#endif
