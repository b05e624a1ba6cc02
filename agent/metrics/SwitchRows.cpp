// Keeping instances small, and writing them family by family.
#include "agent/metrics/SwitchRows.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <utility>

namespace cimd
{

namespace
{

constexpr const char* kPossibleStates = "PossibleStates";
constexpr const char* kModifier = "UnitModifier";
constexpr std::uint64_t kMostExponent = 99; // no unit is farther away

std::unique_ptr<SwitchRow::States> statesOf(const Instance& instance, const CimName& property)
{
    const CimValue* const possible = valueOf(instance, kPossibleStates);
    const CimValue* const present = valueOf(instance, property);
    if (possible == nullptr || present == nullptr || !possible->isArray() || possible->holdsBytes())
        return nullptr;
    auto states = std::make_unique<SwitchRow::States>();
    for (const CimValue& state : possible->elements())
        states->possible.push_back(textOf(state.isNull() ? nullptr : &state));
    states->present = textOf(present);
    return states;
}

} // namespace

std::uint64_t wwnOf(std::string_view text)
{
    constexpr int kHexadecimal = 16;
    std::uint64_t wwn = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, wwn, kHexadecimal);
    return error == std::errc() && stop == end ? wwn : 0;
}

std::string_view lastPart(std::string_view text)
{
    return text.substr(text.rfind(':') + 1); // all of it if there is no colon
}

PortKey portKeyOf(std::string_view name)
{
    const std::string_view port = lastPart(name);
    if (port.size() == name.size())
        return {0, wwnOf(port)};
    return {wwnOf(lastPart(name.substr(0, name.size() - port.size() - 1))), wwnOf(port)};
}

std::vector<CimName> SwitchRows::properties() const
{
    std::vector<CimName> names;
    bool hasModifier = false;
    for (const SwitchFamily& family : _table->families)
    {
        names.emplace_back(family.property);
        if (family.metric.type == MetricType::StateSet)
            names.emplace_back(kPossibleStates);
        hasModifier = hasModifier || family.exponent == kUnitModifier;
    }
    if (hasModifier)
        names.emplace_back(kModifier);
    return names;
}

void SwitchRows::add(SwitchRow row, const Instance& instance)
{
    for (const SwitchFamily& family : _table->families)
    {
        std::int32_t exponent = family.exponent;
        if (exponent == kUnitModifier)
        {
            const Decimal modifier = numberOf(valueOf(instance, kModifier));
            exponent = static_cast<std::int32_t>(std::min(modifier.magnitude, kMostExponent));
            exponent = modifier.isNegative ? -exponent : exponent;
        }
        if (family.metric.type == MetricType::StateSet)
            row.states = statesOf(instance, family.property);
        _numbers.push_back(numberOf(firstOf(valueOf(instance, family.property)), exponent));
    }
    _rows.push_back(std::move(row));
}

void SwitchRows::sort()
{
    _order.resize(_rows.size());
    std::iota(_order.begin(), _order.end(), std::size_t{0});
    std::stable_sort(_order.begin(),
                     _order.end(),
                     [this](std::size_t a, std::size_t b) { return _rows[a].key < _rows[b].key; });
}

const SwitchRow* SwitchRows::find(const PortKey& key) const
{
    const auto place =
        std::lower_bound(_order.begin(),
                         _order.end(),
                         key,
                         [this](std::size_t row, const PortKey& wanted) { return _rows[row].key < wanted; });
    if (key.port == 0 || place == _order.end() || key < _rows[*place].key)
        return nullptr;
    return &_rows[*place];
}

void SwitchRows::write(OpenMetricsWriter& out) const
{
    const std::size_t width = _table->families.size();
    for (std::size_t column = 0; column < width; ++column)
    {
        const MetricFamily& metric = _table->families[column].metric;
        out.begin(metric);
        if (metric.type == MetricType::StateSet)
        {
            writeStates(out, metric.name);
            continue;
        }
        for (std::size_t row = 0; row < _rows.size(); ++row)
        {
            const std::string_view labels = _rows[row].labels;
            if (!_rows[row].isDevice)
                out.sample(metric.type == MetricType::Counter ? labels.substr(0, _rows[row].lasting) : labels,
                           _numbers[row * width + column]);
        }
    }
}

void SwitchRows::writeStates(OpenMetricsWriter& out, const char* label) const
{
    for (const SwitchRow& row : _rows)
    {
        if (row.states == nullptr)
            continue;
        for (const std::string& state : row.states->possible)
        {
            std::string labels = row.labels;
            appendLabel(labels, label, state);
            out.sample(labels, {state == row.states->present ? 1U : 0U});
        }
    }
}

} // namespace cimd
