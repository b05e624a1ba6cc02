// The configuration file in TOML.
#include "agent/settings/config_file.h"

#include "agent/settings/StartError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#define TOML_ENABLE_FORMATTERS 0
#include <toml++/toml.h>

namespace cimd
{

namespace
{

// "a string": what stands in the file.
std::string nameOf(toml::node_type type)
{
    switch (type)
    {
    case toml::node_type::table:
        return "a table";
    case toml::node_type::array:
        return "an array";
    case toml::node_type::string:
        return "a string";
    case toml::node_type::integer:
        return "a whole number";
    case toml::node_type::floating_point:
        return "a number with a fraction";
    case toml::node_type::boolean:
        return "true or false";
    default:
        return "a date or time";
    }
}

toml::node_type typeOf(OptionKind kind)
{
    switch (kind)
    {
    case OptionKind::Flag:
        return toml::node_type::boolean;
    case OptionKind::Number:
        return toml::node_type::integer;
    case OptionKind::Text:
    case OptionKind::File:
        break;
    }
    return toml::node_type::string;
}

std::string textOf(const toml::node& node, OptionKind kind, const std::filesystem::path& directory)
{
    if (const auto* const flag = node.as_boolean())
        return **flag ? "true" : "false";
    if (const auto* const number = node.as_integer())
        return std::to_string(**number);
    const std::string text = **node.as_string();
    return kind == OptionKind::File && !text.empty() && text != "-" ? (directory / text).string() : text;
}

// False, and what is wrong with it, for a value that the option cannot take.
bool accepts(const OptionRow& row, const std::string& value, std::string& what)
try
{
    Options scratch;
    row.access.set(scratch, value);
    return true;
}
catch (const std::invalid_argument& error)
{
    what = error.what();
    return false;
}

std::optional<std::string> contentsOf(const std::string& path)
{
    const auto fail = [&path]
    { throw StartError("cannot read " + path + ": " + std::generic_category().message(errno)); };
    errno = 0;
    std::ifstream file(path);
    if (!file && (errno == ENOENT || errno == ENOTDIR))
        return std::nullopt;
    if (!file)
        fail();
    std::ostringstream text;
    text << file.rdbuf();
    if (errno != 0)
        fail();
    return text.str();
}

toml::table parse(const std::string& text, const std::string& path)
try
{
    return toml::parse(text, path);
}
catch (const toml::parse_error& error)
{
    throw StartError(path + ":" + std::to_string(error.source().begin.line) + ": " +
                     std::string(error.description()));
}

} // namespace

std::optional<std::vector<FileValue>> readConfigFile(const std::string& path)
{
    const std::optional<std::string> text = contentsOf(path);
    if (!text)
        return std::nullopt;
    const std::filesystem::path directory = std::filesystem::path(path).parent_path();
    std::vector<FileValue> values;
    std::vector<std::pair<unsigned, std::string>> faults; // by line
    for (const auto& [key, node] : parse(*text, path))
    {
        const unsigned line = key.source().begin.line;
        const auto addFault = [&, name = std::string(key.str())](const std::string& what)
        { faults.emplace_back(line, path + ":" + std::to_string(line) + ": " + name + ": " + what); };
        const OptionRow* const row = findOption(key.str());
        std::string what;
        if (row == nullptr)
            addFault("there is no such key");
        else if (const toml::node_type wanted = typeOf(row->access.kind); node.type() != wanted)
            addFault(nameOf(wanted) + " is wanted, not " + nameOf(node.type()));
        else if (std::string value = textOf(node, row->access.kind, directory); accepts(*row, value, what))
            values.push_back({row, std::move(value), line});
        else
            addFault(what);
    }
    if (!faults.empty())
    {
        std::sort(faults.begin(), faults.end());
        std::vector<std::string> texts;
        texts.reserve(faults.size());
        for (auto& fault : faults)
            texts.push_back(std::move(fault.second));
        throw StartError(std::move(texts));
    }
    return values;
}

} // namespace cimd
