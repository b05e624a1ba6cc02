// Tests of the conversions of switch texts.
#include "switchaccess/string_helpers.h"

#include <climits>
#include <string>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

TEST(StrToInt, ReadsHundredths)
{
    const std::pair<const char*, int> rows[] = {
        {"12.34", 1234},
        {"-1.5", -150},
        {"abc", 0},
        {"", 0},
        {"0", 0},
        {"0.004", 0},
        {"0.006", 1},
        {"-0.006", -1},
        {" 3.3 V", 330},
        {"47 C", 4700},
        {".5", 50},
        {"1e2", 10000},
        {"nan", 0},
        {"99999999999", INT_MAX},
        {"-99999999999", INT_MIN},
        {"inf", INT_MAX},
        {"-inf", INT_MIN},
    };
    for (const auto& [text, hundredths] : rows)
        EXPECT_EQ(strToInt(text), hundredths) << '"' << text << '"';
}

TEST(StrToUpper, ChangesLettersAndNothingElse)
{
    const std::pair<const char*, const char*> rows[] = {
        {"", ""}, {"10000000c9fFaB01", "10000000C9FFAB01"}, {"a:z-{}`@", "A:Z-{}`@"}, {"\xe4", "\xe4"}};
    for (const auto& [before, after] : rows)
    {
        for (char* (*convert)(char*) : {strToUpper, convertToUpper})
        {
            std::string text(before);
            EXPECT_EQ(convert(text.data()), text.data());
            EXPECT_EQ(text, after);
        }
        EXPECT_EQ(upperCased(before), after);
    }
}

TEST(IsHexStr, AcceptsDigitsOnly)
{
    const std::pair<const char*, int> rows[] = {
        {"", 1}, {"0123456789ABCDEFabcdef", 1}, {"0x1F", 0}, {"1F ", 0}, {" 1F", 0}, {"G", 0}, {"-1", 0}};
    for (const auto& [text, isHex] : rows)
        EXPECT_EQ(IS_HEX_STR(text), isHex) << '"' << text << '"';
}

} // namespace
} // namespace cimple
