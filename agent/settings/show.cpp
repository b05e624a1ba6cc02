// Keys and values as the configuration file has them.
#include "agent/settings/show.h"

#include "agent/base/TextTable.h"
#include "agent/settings/paragraph.h"

#include <cstdio>
#include <string_view>

namespace cimd
{

namespace
{

constexpr std::string_view kSampleHead =
    R"(# Configuration of cimd; see cimd.conf(5). Each key is an option of the same name, which counts more when it stands
# in the command line. cimd --check-config finds faults in this file; SIGHUP has a running cimd take another log-level.
# A key that is commented out has its default, which is shown where it is not a word in capitals.
)";

std::string quoted(const std::string& text)
{
    std::string result = "\"";
    for (const char c : text)
    {
        if (c == '"' || c == '\\')
            result += '\\';
        if (static_cast<unsigned char>(c) < ' ' || c == 127)
        {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(c));
            result += escape;
        }
        else
            result += c;
    }
    return result + '"';
}

std::string valueText(const OptionRow& row, const std::string& value)
{
    const bool isBare = row.access.kind == OptionKind::Flag || row.access.kind == OptionKind::Number;
    return isBare && !value.empty() ? value : quoted(value);
}

} // namespace

std::string configTable(const Settings& settings)
{
    TextTable table({"KEY", "VALUE", "FROM"});
    for (const OptionRow& row : optionRows())
        table.add({row.name, valueText(row, row.access.get(settings.options())), settings.source(row)});
    std::string text;
    for (const std::string& line : table.lines())
        text += line + '\n';
    return text;
}

std::string sampleConfig()
{
    const Options standard;
    std::string text(kSampleHead);
    for (const OptionRow& row : optionRows())
    {
        // Lines are to be valid once they count.
        const char* const example = row.access.kind == OptionKind::Number ? "0" : row.argument;
        const std::string value = row.access.get(standard);
        text += '\n' + paragraph("# ", row.meaning);
        text += std::string("#") + row.name + " = " + valueText(row, value.empty() ? example : value) + '\n';
    }
    return text;
}

} // namespace cimd
