// A search for many texts at once finds what a search for each alone would.
#include "common/Containing_Search.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

// The place of the first text of `row` with `part`, or -1.
int firstWith(const Texts& row, const std::string& part)
{
    for (std::size_t i = 0; i < row.size(); ++i)
        if (row[i].find(part) != std::string::npos)
            return static_cast<int>(i);
    return -1;
}

void expectSameAsOneByOne(const Texts& row, const Texts& parts)
{
    std::vector<const std::string*> pointers;
    for (const std::string& text : row)
        pointers.push_back(&text);
    Containing_Search<std::string> search;
    std::vector<Containing_Search<std::string>::Number> numbers;
    for (const std::string& part : parts)
        numbers.push_back(search.want(part));
    search.run(pointers, [](const std::string& text) { return text.c_str(); });
    for (std::size_t i = 0; i < parts.size(); ++i)
    {
        const std::string* found = search.find(numbers[i]);
        EXPECT_EQ(found != nullptr ? found - row.data() : -1, firstWith(row, parts[i])) << parts[i];
    }
}

TEST(ContainingSearch, FindsAPartOfAnyText)
{
    const std::string active = "Active:100002A5C0DE0009:";
    const std::string inactive = "Inactive:100002A5C0DE0009:";
    const Texts row = {inactive + "2100AAC5C0DE0011",
                       inactive + "1:AB",
                       inactive + "1:A",
                       active + "1:A",
                       active + "2100AAC5C0DE0011",
                       inactive + "2100AAC5C0DE0012",
                       inactive + "010203",
                       inactive + "010203"};
    expectSameAsOneByOne(row,
                         {"2100AAC5C0DE0011",
                          "1:A",              // part of a longer one before it
                          "1:AB",             // the longer one
                          "9:21",             // across the colon
                          "100002A5C0DE0009", // the switch itself
                          "A5C0DE",           // an address like a part of names
                          "010203",
                          "2100aac5c0de0011", // another letter case
                          "1:A",
                          active + "1:A",
                          active,
                          ""});
    expectSameAsOneByOne({}, {"A", ""});
    expectSameAsOneByOne({"", "A"}, {"A", "", "AA"});
    expectSameAsOneByOne(row, {});
}

// Short texts of few letters: neighbours begin alike, one contains the other, and many parts are nowhere.
TEST(ContainingSearch, FindsWhatASearchForEachAloneFinds)
{
    std::mt19937 random(7);
    const auto text = [&random](std::size_t longest)
    {
        std::string letters(random() % (longest + 1), 'A');
        for (char& letter : letters)
            letter = "AB:"[random() % 3];
        return letters;
    };
    for (int round = 0; round < 300 && !testing::Test::HasFailure(); ++round)
    {
        Texts row(random() % 12);
        for (std::string& one : row)
            one = text(10);
        Texts parts(random() % 20);
        for (std::string& one : parts)
            one = text(6);
        expectSameAsOneByOne(row, parts);
    }
}

} // namespace
} // namespace cimple
