// Counting, and showing what was counted.
#include "agent/run/Counters.h"

#include "agent/base/TextTable.h"

#include <algorithm>
#include <functional>
#include <mutex>

namespace cimd
{

namespace
{

void show(TextTable& table, const std::string& className, const Counters::Row& row)
{
    table.add({className,
               std::string(row.operation),
               std::to_string(row.calls),
               std::to_string(row.errors),
               std::to_string(row.total.count()),
               std::to_string(row.longest.count()),
               std::to_string(row.results),
               std::to_string(row.bytes)});
}

} // namespace

void Counters::Row::add(const Row& other)
{
    calls += other.calls;
    errors += other.errors;
    total += other.total;
    longest = std::max(longest, other.longest);
    results += other.results;
    bytes += other.bytes;
    std::transform(steps.begin(), steps.end(), other.steps.begin(), steps.begin(), std::plus<>());
}

struct Counters::ClassRows
{
    explicit ClassRows(std::string name) : className(std::move(name)) {}

    const std::string className;
    std::mutex mutex;
    std::vector<Row> rows;
};

Counters::Counters(const std::vector<CimName>& classes)
{
    for (const CimName& name : classes)
        _byName.emplace(name, _all.emplace_back(std::make_unique<ClassRows>(name.str())).get());
    _all.push_back(std::make_unique<ClassRows>("-"));
    _all.push_back(std::make_unique<ClassRows>("(unknown)"));
}

Counters::~Counters() = default;

Counters::ClassRows& Counters::rowsOf(std::string_view className)
{
    if (className.empty())
        return **(_all.end() - 2);
    const auto place = _byName.find(CimName(className));
    return place != _byName.end() ? *place->second : *_all.back();
}

void Counters::add(const Call& call)
{
    const std::string_view operation = call.operation.empty() ? "(unknown)" : call.operation;
    ClassRows& of = rowsOf(call.className);
    const std::lock_guard<std::mutex> lock(of.mutex);
    auto row = std::find_if(
        of.rows.begin(), of.rows.end(), [&](const Row& known) { return known.operation == operation; });
    if (row == of.rows.end())
    {
        row = of.rows.insert(row, Row());
        row->operation = operation;
    }
    Row one{operation, 1, call.hasFailed ? 1U : 0U, call.time, call.time, call.results, call.bytes, {}};
    const auto step = std::lower_bound(kTimeSteps.begin(), kTimeSteps.end(), call.time);
    if (step != kTimeSteps.end())
        one.steps[static_cast<std::size_t>(step - kTimeSteps.begin())] = 1;
    row->add(one);
}

std::vector<Counters::ClassRow> Counters::rows() const
{
    std::vector<ClassRow> all;
    for (const auto& of : _all)
    {
        const std::lock_guard<std::mutex> lock(of->mutex);
        for (const Row& row : of->rows)
            all.push_back({of->className, row});
    }
    return all;
}

std::vector<std::string> Counters::table() const
{
    TextTable table(
        {"CLASS", "OPERATION", ">CALLS", ">ERRORS", ">TOTAL us", ">LONGEST us", ">RESULTS", ">BYTES"});
    Row sum;
    for (const auto& [className, row] : rows())
    {
        show(table, className, row);
        sum.add(row);
    }
    show(table, "all", sum);
    return table.lines();
}

} // namespace cimd
