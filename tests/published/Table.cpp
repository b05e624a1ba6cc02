// Reads the table of what a class publishes.
#include "tests/published/Table.h"

#include <fstream>
#include <stdexcept>

namespace published
{

namespace
{

std::string trimmed(const std::string& text)
{
    const std::size_t from = text.find_first_not_of(' ');
    return from == text.npos ? "" : text.substr(from, text.find_last_not_of(' ') + 1 - from);
}

// What stands before and behind the separator; the second part is empty where there is none.
std::pair<std::string, std::string> cut(const std::string& text, const std::string& separator)
{
    const std::size_t at = text.find(separator);
    if (at == text.npos)
        return {trimmed(text), ""};
    return {trimmed(text.substr(0, at)), trimmed(text.substr(at + separator.size()))};
}

void require(bool holds, const char* expected)
{
    if (!holds)
        throw std::runtime_error(std::string("expected ") + expected);
}

class Reader
{
  public:
    void read(const std::string& line)
    {
        const bool indented = line[0] == ' ';
        const auto [word, rest] = cut(trimmed(line), " ");
        require(!indented || !table.entries.empty(), "an instance before its properties");
        if (word == "when")
            readWhen(rest, indented);
        else if (word == "given")
            table.given = split(rest, " and ");
        else if (indented)
            readProperty(word, rest);
        else if (word == "instance")
            readEntry(rest);
        else if (word == "pair")
            table.entries.push_back({rest, "", _ends, {}});
        else if (word == "from" || word == "keys" || word == "methods" || word == "ends")
            readDeclaration(word, rest);
        else if (word == "calls")
            table.calls.emplace_back(cut(rest, " ").first, std::stoul(cut(rest, " ").second));
        else
            require(word == "none", "from, keys, methods, ends, given, instance, pair, calls, when or none");
    }

    Table finished()
    {
        for (Entry& entry : table.entries)
        {
            for (const Entry& other : table.entries)
                if (other.name == entry.like && other.like.empty())
                    entry.properties = other.properties;
            require(!entry.properties.empty(), ("properties of " + entry.name).c_str());
        }
        return table;
    }

  private:
    Table table;

    void readEntry(const std::string& text)
    {
        const auto [name, like] = cut(text, " like ");
        table.entries.push_back({name, like, {}, {}});
    }
    void readDeclaration(const std::string& word, const std::string& text)
    {
        table.declaration[word] = text;
        for (const std::string& end : word == "ends" ? split(text, ", ") : Texts())
            _ends[cut(end, " ").first] = "-> " + cut(end, " ").second;
    }
    void readProperty(const std::string& name, const std::string& text)
    {
        Entry& entry = table.entries.back();
        const auto [value, source] = cut(" " + text, " < ");
        const bool isEnd = _ends.count(name) != 0; // of a class derived from the role's
        if (name != "-")
            require(entry.properties.insert_or_assign(name, unquoted(value)).second || isEnd,
                    "each property once");
        if (source.empty())
            return;
        const auto [key, answer] = cut(source, " = ");
        entry.sources.push_back(
            {key, answer.empty() ? std::nullopt : std::optional<std::string>(unquoted(answer))});
    }
    void readWhen(const std::string& text, bool ofEntry)
    {
        const auto [conditions, effects] = cut(text, " -> ");
        require(!effects.empty(), "' -> ' and an effect");
        When when = {text, std::nullopt, split(conditions, " and "), split(effects, "; ")};
        if (ofEntry)
            when.entry = table.entries.size() - 1;
        table.whens.push_back(when);
    }

    Properties _ends;
};

} // namespace

std::string unquoted(const std::string& text)
{
    return text == "\"\"" ? "" : text;
}

Texts split(const std::string& text, const std::string& separator)
{
    Texts parts;
    for (std::string rest = text; !rest.empty();)
    {
        const auto [part, behind] = cut(rest, separator);
        parts.push_back(part);
        rest = behind;
    }
    return parts;
}

Table readTable(const std::string& path)
{
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error(path + ": the class has no table");
    Reader reader;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number)
    {
        if (trimmed(line).empty() || line[0] == '#')
            continue;
        try
        {
            reader.read(line);
        }
        catch (const std::exception& mistake)
        {
            throw std::runtime_error(path + ":" + std::to_string(number) + ": " + mistake.what());
        }
    }
    return reader.finished();
}

} // namespace published
