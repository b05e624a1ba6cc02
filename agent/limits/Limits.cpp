// The rows of the limits, how one is set and how they are shown.
#include "agent/limits/Limits.h"

#include "agent/base/TextTable.h"

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
#include "agent/limits/limits.def"
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
    const auto cells =
        [anyChanged](
            std::string option, std::string standard, std::string now, std::string unit, std::string meaning)
    {
        std::vector<std::string> all{std::move(option), std::move(standard)};
        if (anyChanged)
            all.push_back(std::move(now));
        all.push_back(std::move(unit));
        all.push_back(std::move(meaning));
        return all;
    };
    TextTable table(cells("OPTION", ">DEFAULT", ">NOW", "UNIT", "MEANING"));
    for (const LimitRow& row : rows)
    {
        const std::uint64_t now = row.get(limits);
        table.add(cells(std::string("--") + row.option,
                        std::to_string(row.standard),
                        now != row.standard ? std::to_string(now) : "",
                        row.unit,
                        row.meaning));
    }
    std::string text;
    for (const std::string& line : table.lines())
        text += line + '\n';
    return text;
}

} // namespace cimd
