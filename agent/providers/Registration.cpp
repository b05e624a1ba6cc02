// Reading the registration file.
#include "agent/providers/Registration.h"

#include "agent/cim/value_text.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <sstream>

namespace cimd
{
namespace
{

std::vector<std::string> words(std::string_view text)
{
    std::istringstream stream{std::string(text)};
    return {std::istream_iterator<std::string>(stream), {}};
}

class Reader
{
  public:
    explicit Reader(const std::string& name) : _name(name) {}

    void line(std::string_view text);
    std::vector<Registration> finish();

  private:
    std::string place() const { return _name + ":" + std::to_string(_line); }
    [[noreturn]] void fail(const std::string& reason) const
    {
        throw RegistrationError(place() + ": " + reason);
    }

    void begin(std::string_view header);
    void entry(std::string_view keyword, std::string_view value);
    void types(std::string_view value);
    void checkLast() const;

    const std::string& _name;
    std::size_t _line = 0;
    std::vector<Registration> _entries;
};

void Reader::line(std::string_view raw)
{
    ++_line;
    const std::string_view text = trimmed(raw);
    if (text.empty() || text[0] == '#')
        return;
    if (text[0] == '[')
    {
        begin(text);
        return;
    }
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        fail("expected \"[Class]\" or \"keyword: value\", found \"" + std::string(text) + "\"");
    entry(trimmed(text.substr(0, colon)), trimmed(text.substr(colon + 1)));
}

void Reader::begin(std::string_view header)
{
    checkLast();
    if (header.back() != ']' || trimmed(header.substr(1, header.size() - 2)).empty())
        fail("expected \"[Class]\", found \"" + std::string(header) + "\"");
    Registration next;
    next.className = CimName(trimmed(header.substr(1, header.size() - 2)));
    next.place = place();
    _entries.push_back(std::move(next));
}

void Reader::entry(std::string_view keyword, std::string_view value)
{
    constexpr std::array<std::string_view, 4> kWithoutEffect{"unload", "group", "user", "parameters"};
    if (_entries.empty())
        fail("\"" + std::string(keyword) + "\" before the first \"[Class]\"");
    if (value.empty())
        fail("\"" + std::string(keyword) + "\" has no value");
    Registration& current = _entries.back();
    if (keyword == "provider")
        current.provider = value;
    else if (keyword == "location")
        current.location = value;
    else if (keyword == "type")
        types(value);
    else if (keyword == "namespace")
        current.nameSpaces = words(value);
    else if (std::find(kWithoutEffect.begin(), kWithoutEffect.end(), keyword) == kWithoutEffect.end())
        fail("unknown keyword \"" + std::string(keyword) + "\"");
}

void Reader::types(std::string_view value)
{
    for (const std::string& word : words(value))
    {
        const auto* const known = std::find_if(kProviderKinds.begin(),
                                               kProviderKinds.end(),
                                               [&](const auto& kind) { return kind.second == word; });
        if (known == kProviderKinds.end())
            fail("type \"" + word + "\" is none of instance, association, method, indication");
        _entries.back().kinds.insert(known->first);
    }
}

void Reader::checkLast() const
{
    if (_entries.empty())
        return;
    const Registration& last = _entries.back();
    const auto need = [&](bool isGiven, const char* keyword)
    {
        if (!isGiven)
            throw RegistrationError(last.place + ": class " + last.className.str() + ": no \"" + keyword +
                                    "\"");
    };
    need(!last.provider.empty(), "provider");
    need(!last.location.empty(), "location");
    need(!last.kinds.empty(), "type");
    need(!last.nameSpaces.empty(), "namespace");
}

std::vector<Registration> Reader::finish()
{
    checkLast();
    return std::move(_entries);
}

} // namespace

std::vector<Registration> loadRegistrations(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw RegistrationError(file + ": cannot be opened for reading");
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (stream.bad())
        throw RegistrationError(file + ": cannot be read");
    return parseRegistrations(text, file);
}

std::vector<Registration> parseRegistrations(std::string_view text, const std::string& name)
{
    Reader reader(name);
    while (!text.empty())
    {
        const std::size_t end = std::min(text.find('\n'), text.size());
        reader.line(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return reader.finish();
}

} // namespace cimd
