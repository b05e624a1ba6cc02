// Strings: edges of every operation, sharing of representations, text that is its own argument.
#include <cimple/cimple.h>
#include <gtest/gtest.h>
#include <string>
#include <thread>

using cimple::String;

namespace
{
const size_t kNone = size_t(-1);

TEST(StringTest, ConstructsFromTextAndPieces)
{
    const std::string long_text(1000, 'x');
    const struct
    {
        String string;
        std::string expected;
    } rows[] = {
        {String(), ""},
        {String(""), ""},
        {String("abc"), "abc"},
        {String("a", "bc"), "abc"},
        {String("a", "", "bc"), "abc"},
        {String("abcdef", 3), "abc"},
        {String("abc", size_t(0)), ""},
        {String("a\0b", 3), std::string("a\0b", 3)},
        {String(long_text.c_str()), long_text},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(std::string(row.string.c_str(), row.string.size()), row.expected);
        EXPECT_EQ(row.string.empty(), row.expected.empty());
        EXPECT_EQ(row.string[row.string.size()], '\0');
        EXPECT_GE(row.string.capacity(), row.string.size());
    }
}

TEST(StringTest, RefusesRoomBeyondFourGibibytes)
{
    String text("abc");
    EXPECT_THROW(text.reserve(UINT32_MAX), std::bad_alloc);
    EXPECT_STREQ(text.c_str(), "abc");
}

TEST(StringTest, ChangesLeaveCopiesAlone)
{
    typedef void (*Change)(String&);
    const struct
    {
        const char* what;
        Change change;
        const char* expected;
    } rows[] = {
        {"append text", [](String& s) { s.append("de"); }, "abcde"},
        {"append char", [](String& s) { s.append('d'); }, "abcd"},
        {"append part", [](String& s) { s.append("defg", 2); }, "abcde"},
        {"append much",
         [](String& s)
         {
             for (char c : std::string("0123456789012345678901234567890123456789"))
                 s.append(c);
         },
         "abc0123456789012345678901234567890123456789"},
        {"append nothing", [](String& s) { s.append(""); }, "abc"},
        {"append itself", [](String& s) { s.append(s); }, "abcabc"},
        {"append own tail", [](String& s) { s.append(s.c_str() + 1); }, "abcbc"},
        {"assign own tail", [](String& s) { s = s.c_str() + 1; }, "bc"},
        {"assign itself", [](String& s) { s.assign(s); }, "abc"},
        {"assign part", [](String& s) { s.assign("xyz", 2); }, "xy"},
        {"remove start", [](String& s) { s.remove(0, 1); }, "bc"},
        {"remove middle", [](String& s) { s.remove(1, 1); }, "ac"},
        {"remove to the end", [](String& s) { s.remove(1, kNone); }, "a"},
        {"remove nothing", [](String& s) { s.remove(3, kNone); }, "abc"},
        {"remove all", [](String& s) { s.remove(0, 3); }, ""},
        {"set", [](String& s) { s.set(1, 'X'); }, "aXc"},
        {"clear", [](String& s) { s.clear(); }, ""},
        {"reserve", [](String& s) { s.reserve(100); }, "abc"},
    };
    for (const auto& row : rows)
    {
        String changed("abc");
        const String copy(changed);
        row.change(changed);
        EXPECT_STREQ(changed.c_str(), row.expected) << row.what;
        EXPECT_EQ(changed.size(), strlen(row.expected)) << row.what;
        EXPECT_STREQ(copy.c_str(), "abc") << row.what;

        String alone("abc"); // the same without anybody sharing
        row.change(alone);
        EXPECT_STREQ(alone.c_str(), row.expected) << row.what;
    }
}

TEST(StringTest, FindsAndCutsOut)
{
    String s("hello world");
    EXPECT_EQ(s.find('o'), 4u);
    EXPECT_EQ(s.find('o', 5), 7u);
    EXPECT_EQ(s.find('o', 11), kNone);
    EXPECT_EQ(s.find('z'), kNone);
    EXPECT_EQ(s.find('\0'), kNone);
    EXPECT_EQ(s.find("wor"), 6u);
    EXPECT_EQ(s.find(""), 0u);
    EXPECT_EQ(s.find(String("world!")), kNone);
    EXPECT_EQ(String().find('a'), kNone);
    EXPECT_EQ(s.substr(6), "world");
    EXPECT_EQ(s.substr(0, 5), "hello");
    EXPECT_EQ(s.substr(6, 100), "world");
    EXPECT_EQ(s.substr(11), "");
}

TEST(StringTest, Compares)
{
    const String s("Port");
    EXPECT_TRUE(s == String("Port") && s == "Port" && "Port" == s);
    EXPECT_TRUE(s != String("port") && s != "Por" && "Ports" != s);
    EXPECT_TRUE(String() == "" && String() == String(""));
    EXPECT_TRUE(s.equal("Portal", 4) && !s.equal("Port", 3) && s.equal(1, "or", 2));
    EXPECT_TRUE(s.equali("pORT") && s.equali(String("PORT")) && s.equali("porto", 4));
    EXPECT_FALSE(s.equali("por") || s.equali("ports") || s.equali("P\xF6rt"));
    EXPECT_TRUE(cimple::eqi(s, "port") && cimple::eqi("port", s) && cimple::eqi(s, String("PORT")));
    EXPECT_FALSE(cimple::eqi("[", "{")) << "only letters have two cases";
    EXPECT_FALSE(String("a\0b", 3) == String("a\0c", 3));
}

TEST(StringTest, CopiesMayBeUsedByDifferentThreads)
{
    const String shared("shared by all threads");
    const auto use = [&shared]
    {
        for (int i = 0; i < 1000; i++)
        {
            String copy(shared);
            String other;
            other = copy;
            other.append('!');
            ASSERT_EQ(copy, "shared by all threads");
        }
    };
    std::thread t1(use);
    std::thread t2(use);
    t1.join();
    t2.join();
    EXPECT_EQ(shared, "shared by all threads");
}

TEST(StringsTest, CopiesWithTruncation)
{
    char buffer[6];
    EXPECT_EQ(cimple::strlcpy(buffer, "abcdefgh", sizeof buffer), 8u);
    EXPECT_STREQ(buffer, "abcde");
    EXPECT_EQ(cimple::strlcpy(buffer, "ab", sizeof buffer), 2u);
    EXPECT_EQ(cimple::strlcat(buffer, "cde", sizeof buffer), 5u);
    EXPECT_STREQ(buffer, "abcde");
    EXPECT_EQ(cimple::strlcat(buffer, "fg", sizeof buffer), 7u);
    EXPECT_STREQ(buffer, "abcde");
    EXPECT_EQ(cimple::strlcpy(buffer, "xyz", 0), 3u);
    EXPECT_STREQ(buffer, "abcde");
}

TEST(StringsTest, SplitsIntoTokens)
{
    const char* start = nullptr;
    const char* end = nullptr;
    ASSERT_EQ(cimple::find_token("  one, two", " ,", start, end), 0);
    EXPECT_EQ(std::string(start, end), "one");
    ASSERT_EQ(cimple::find_token(end, " ,", start, end), 0);
    EXPECT_EQ(std::string(start, end), "two");
    EXPECT_EQ(cimple::find_token(end, " ,", start, end), -1);
}
} // namespace
