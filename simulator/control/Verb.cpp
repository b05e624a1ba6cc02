// Finding the verb of a command.
#include "simulator/control/Verb.h"

#include "simulator/model/hex.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <optional>
#include <sstream>

namespace simulator
{
namespace
{

Words wordsOf(std::string_view pattern)
{
    std::istringstream stream{std::string(pattern)};
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

bool isAnything(const std::string& word)
{
    return std::isupper(static_cast<unsigned char>(word.front())) != 0;
}

bool fits(const std::string& pattern, const std::string& word)
{
    return isAnything(pattern) || pattern == word;
}

// Whether the pattern begins like the words.
bool beginsSo(const Words& pattern, const Words& words)
{
    return words.size() <= pattern.size() &&
           std::equal(words.begin(),
                      words.end(),
                      pattern.begin(),
                      [](const std::string& word, const std::string& part) { return fits(part, word); });
}

std::string joined(const Words& words)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

// As many of the first words as some pattern begins with, and how such patterns go on.
std::string whatWasExpected(Words command)
{
    while (!command.empty() && nextWords(command).empty())
        command.pop_back();
    std::string text = command.empty() ? "expected " : "after \"" + joined(command) + "\" expected ";
    const Words next = nextWords(command);
    for (std::size_t i = 0; i < next.size(); ++i)
        text += (i == 0 ? "" : i + 1 == next.size() ? " or " : ", ") + next[i];
    return text;
}

} // namespace

const std::vector<Verb>& verbs()
{
    static const std::vector<Verb> all = []
    {
        std::vector<Verb> table;
        for (const auto part : {portVerbs, fabricVerbs, hardwareVerbs, zoningVerbs, userVerbs, showVerbs})
        {
            const std::vector<Verb> rows = part();
            table.insert(table.end(), rows.begin(), rows.end());
        }
        return table;
    }();
    return all;
}

std::string runCommand(const Words& command)
{
    for (const Verb& verb : verbs())
    {
        const Words pattern = wordsOf(verb.pattern);
        if (pattern.size() != command.size() || !beginsSo(pattern, command))
            continue;
        Words values;
        for (std::size_t i = 0; i < pattern.size(); ++i)
            if (isAnything(pattern[i]))
                values.push_back(command[i]);
        return verb.run(values);
    }
    const Words next = nextWords(command);
    if (!command.empty() && next.empty() && !helpOn({command.front()}).empty())
        throw UsageError(joined(command) + ": " + whatWasExpected(command));
    throw UsageError(whatWasExpected(command));
}

std::string helpOn(const Words& beginning)
{
    constexpr std::size_t kMeaningColumn = 44;
    std::string text;
    for (const Verb& verb : verbs())
    {
        if (!beginsSo(wordsOf(verb.pattern), beginning))
            continue;
        std::string line = "  " + std::string(verb.pattern);
        line.resize(std::max(line.size() + 1, kMeaningColumn), ' ');
        text += line.append(verb.meaning) + '\n';
    }
    if (text.empty())
        throw UsageError(joined(beginning) + ": " + whatWasExpected(beginning));
    return text;
}

Words nextWords(const Words& beginning)
{
    Words next;
    for (const Verb& verb : verbs())
    {
        const Words pattern = wordsOf(verb.pattern);
        if (pattern.size() > beginning.size() && beginsSo(pattern, beginning) &&
            std::find(next.begin(), next.end(), pattern[beginning.size()]) == next.end())
            next.push_back(pattern[beginning.size()]);
    }
    return next;
}

int numberOf(const std::string& value, std::string_view what)
{
    int number = 0;
    if (!parseDecimal(value, number))
        throw UsageError(std::string(what) + ": expected a whole number, got \"" + value + '"');
    return number;
}

} // namespace simulator
