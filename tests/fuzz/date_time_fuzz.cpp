// Fuzzes the readers of date-times, the agent's and the toolkit's, and of the other scalar texts.
#include "agent/cim/value_text.h"
#include "tests/fuzz/fuzz.h"

#include <cimple/cimple.h>

namespace
{

using cimd::CimDateTime;

void checkDateTime(const std::string& text)
{
    const std::optional<CimDateTime> parsed = CimDateTime::parse(text);
    cimple::Datetime toolkits;
    const bool taken = toolkits.set(text.c_str());
    if (!parsed)
        return;
    fuzz::requireEqual("text of the date-time", text, parsed->text());
    const std::optional<CimDateTime> again =
        parsed->isInterval() ? CimDateTime::intervalFromMicroseconds(parsed->microseconds())
                             : CimDateTime::fromMicroseconds(parsed->microseconds());
    // Far from Greenwich, the last hours of the year 9999 lie beyond it.
    if (again)
        fuzz::requireEqual(
            "microseconds", std::to_string(parsed->microseconds()), std::to_string(again->microseconds()));
    // The toolkit knows no blanked digits, may move a 61st second and has one name for UTC; all else it
    // keeps.
    if (text.find('*') != std::string::npos || text.substr(12, 2) == "60" || text.substr(21) == "-000")
        return;
    if (!taken)
        fuzz::requireEqual("the toolkit's date-time", text, "refused");
    fuzz::requireEqual("the toolkit's date-time", text, toolkits.ascii().c_str());
}

void checkScalars(std::string_view text)
{
    using cimd::CimType;
    for (const CimType type : {CimType::Boolean,
                               CimType::Char16,
                               CimType::Uint8,
                               CimType::Sint8,
                               CimType::Uint16,
                               CimType::Sint16,
                               CimType::Uint32,
                               CimType::Sint32,
                               CimType::Uint64,
                               CimType::Sint64,
                               CimType::Real32,
                               CimType::Real64})
    {
        const std::optional<cimd::CimValue> value = cimd::parseScalar(type, text);
        if (!value)
            continue;
        std::string first;
        appendText(first, *value);
        std::string second;
        const std::optional<cimd::CimValue> again = cimd::parseScalar(type, first);
        if (again)
            appendText(second, *again);
        fuzz::requireEqual("scalar", first, second);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text = fuzz::textOf(data, size);
    checkDateTime(std::string(text));
    checkScalars(text);
    return 0;
}
