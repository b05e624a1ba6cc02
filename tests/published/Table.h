// The table of what a class publishes, as it is written in <Class>.txt; README.md says how to read one.
#ifndef TESTS_PUBLISHED_TABLE_H
#define TESTS_PUBLISHED_TABLE_H

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace published
{

typedef std::vector<std::string> Texts;
typedef std::map<std::string, std::string> Properties; // values by name

typedef std::map<std::string, std::string> Declaration; // what follows "from", "keys", "methods" and "ends"

struct Source
{
    std::string key;
    std::optional<std::string> answer;
};

struct Entry
{
    std::string name;
    std::string like; // of another entry; empty for one with rows of its own
    Properties properties;
    std::vector<Source> sources; // in the order of the batch
};

struct When
{
    std::string text; // the line
    std::optional<std::size_t> entry;
    Texts conditions;
    Texts effects;
};

struct Table
{
    Declaration declaration;
    Texts given; // places of the fabric that are another thing
    std::vector<Entry> entries;
    std::vector<std::pair<std::string, std::size_t>> calls;
    std::vector<When> whens;
};

// Throws std::runtime_error with file and line of a mistake, also when there is no such file.
Table readTable(const std::string& path);

// The parts of a text between separators; none of an empty text.
Texts split(const std::string& text, const std::string& separator);

// A value as it is meant: an empty text is written as two quotes.
std::string unquoted(const std::string& text);

} // namespace published

#endif
