// The rows of the limits, how one is set and how they are shown.
#include "agent/Limits.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <string_view>
#include <type_traits>

namespace cimd
{

namespace
{

template <class Type>
std::uint64_t numberOf(Type value)
{
    if constexpr (std::is_unsigned_v<Type>)
        return value;
    else
        return static_cast<std::uint64_t>(value.count());
}

template <auto Member>
constexpr auto accessors = std::pair{+[](const Limits& limits) { return numberOf(limits.*Member); },
                                     +[](Limits& limits, std::uint64_t value)
                                     {
                                         using Type = std::remove_reference_t<decltype(limits.*Member)>;
                                         if constexpr (std::is_unsigned_v<Type>)
                                             limits.*Member = static_cast<Type>(value);
                                         else
                                             limits.*Member = Type(static_cast<typename Type::rep>(value));
                                     }};

using Line = std::vector<std::string>;

/** Columns as wide as their widest cell, two spaces between them; numbers to the right. */
std::string aligned(const std::vector<Line>& lines, std::size_t firstNumber, std::size_t endOfNumbers)
{
    std::vector<std::size_t> widths(lines.front().size());
    for (const Line& line : lines)
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], line[i].size());
    std::string text;
    for (const Line& line : lines)
    {
        for (std::size_t i = 0; i + 1 < line.size(); ++i)
        {
            const std::string padding(widths[i] - line[i].size(), ' ');
            const bool isNumber = i >= firstNumber && i < endOfNumbers;
            text += (isNumber ? padding + line[i] : line[i] + padding) + "  ";
        }
        text += line.back() + '\n';
    }
    return text;
}

} // namespace

const std::vector<LimitRow>& limitRows()
{
    static const std::vector<LimitRow> rows = {
#define LIMIT(member, type, standard, least, most, unit, option, meaning)                                    \
    {option,                                                                                                 \
     unit,                                                                                                   \
     meaning,                                                                                                \
     standard,                                                                                               \
     least,                                                                                                  \
     most,                                                                                                   \
     accessors<&Limits::member>.first,                                                                       \
     accessors<&Limits::member>.second},
#include "agent/limits.def"
#undef LIMIT
    };
    return rows;
}

void setLimit(Limits& limits, const LimitRow& row, const std::string& value)
{
    std::uint64_t number = 0;
    const char* const end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, number);
    if (error != std::errc() || stop != end || number < row.least || number > row.most)
        throw std::invalid_argument('"' + value + "\" is not a number from " + std::to_string(row.least) +
                                    " to " + limitText(row, row.most));
    row.set(limits, number);
}

std::string limitText(const LimitRow& row, std::uint64_t value)
{
    return std::to_string(value) + (*row.unit != '\0' ? " " : "") + row.unit;
}

std::string limitsTable(const Limits& limits)
{
    const auto& rows = limitRows();
    const bool anyChanged = std::any_of(
        rows.begin(), rows.end(), [&](const LimitRow& row) { return row.get(limits) != row.standard; });
    std::vector<Line> lines;
    const auto add =
        [&](std::string option, std::string standard, std::string now, std::string unit, std::string meaning)
    {
        Line& line = lines.emplace_back(Line{std::move(option), std::move(standard)});
        if (anyChanged)
            line.push_back(std::move(now));
        line.push_back(std::move(unit));
        line.push_back(std::move(meaning));
    };
    add("OPTION", "DEFAULT", "NOW", "UNIT", "MEANING");
    for (const LimitRow& row : rows)
    {
        const std::uint64_t now = row.get(limits);
        add(std::string("--") + row.option,
            std::to_string(row.standard),
            now != row.standard ? std::to_string(now) : "",
            row.unit,
            row.meaning);
    }
    return aligned(lines, 1, anyChanged ? 3 : 2);
}

} // namespace cimd
