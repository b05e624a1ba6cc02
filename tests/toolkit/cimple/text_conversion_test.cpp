// Numbers, booleans and octet strings from and to text; names of types and flags.
#include <cimple/cimple.h>
#include <cimple/octets.h>
#include <gtest/gtest.h>

using namespace cimple;

namespace
{
template <class T>
void expect_range(
    int (*parse)(const char*, T&), const char* min, const char* max, const char* below, const char* above)
{
    T x = 1;
    EXPECT_EQ(parse(min, x), 0) << min;
    EXPECT_EQ(x, std::numeric_limits<T>::min());
    EXPECT_EQ(parse(max, x), 0) << max;
    EXPECT_EQ(x, std::numeric_limits<T>::max());
    for (const char* text : {below, above, "", " 1", "1 ", "+", "-", "+-1", "1x", "0x1", "1.0"})
    {
        x = 42;
        EXPECT_EQ(parse(text, x), -1) << text;
        EXPECT_EQ(x, 42) << text;
    }
    EXPECT_EQ(parse("+7", x), 0);
    EXPECT_EQ(x, 7);
}

TEST(TextConversionTest, IntegersMustFit)
{
    expect_range(str_to_uint8, "0", "255", "-1", "256");
    expect_range(str_to_sint8, "-128", "127", "-129", "128");
    expect_range(str_to_uint16, "0", "65535", "-1", "65536");
    expect_range(str_to_sint16, "-32768", "32767", "-32769", "32768");
    expect_range(str_to_uint32, "0", "4294967295", "-1", "4294967296");
    expect_range(str_to_sint32, "-2147483648", "2147483647", "-2147483649", "2147483648");
    expect_range(str_to_uint64, "0", "18446744073709551615", "-1", "18446744073709551616");
    expect_range(str_to_sint64,
                 "-9223372036854775808",
                 "9223372036854775807",
                 "-9223372036854775809",
                 "9223372036854775808");
}

TEST(TextConversionTest, IntegersToText)
{
    char buffer[22];
    size_t size = 0;
    EXPECT_STREQ(uint8_to_str(buffer, 255, size), "255");
    EXPECT_STREQ(sint64_to_str(buffer, CIMPLE_SINT64_MIN, size), "-9223372036854775808");
    EXPECT_EQ(size, 20u);
    EXPECT_STREQ(uint64_to_str(buffer, CIMPLE_UINT64_MAX, size), "18446744073709551615");
    EXPECT_STREQ(sint32_to_str(buffer, 0, size), "0");
    EXPECT_EQ(size, 1u);
}

TEST(TextConversionTest, RealsAndBooleans)
{
    real64 d = 0;
    EXPECT_EQ(str_to_real64("-1.5e3", d), 0);
    EXPECT_EQ(d, -1500);
    EXPECT_EQ(str_to_real64("1.5e3x", d), -1);
    EXPECT_EQ(str_to_real64("1e999", d), -1);
    real32 f = 0;
    EXPECT_EQ(str_to_real32("0.25", f), 0);
    EXPECT_EQ(f, 0.25F);
    EXPECT_EQ(str_to_real32("1e300", f), -1);

    boolean b = false;
    EXPECT_TRUE(str_to_boolean("TRUE", b) == 0 && b);
    EXPECT_TRUE(str_to_boolean("false", b) == 0 && !b);
    for (const char* text : {"", "1", "yes", "truee", "tru"})
        EXPECT_EQ(str_to_boolean(text, b), -1) << text;
}

TEST(TextConversionTest, OctetStrings)
{
    const unsigned char octets[] = {0x00, 0xAB, 0xFF};
    EXPECT_STREQ(octets_to_string(octets, 3).c_str(), "0x0000000700ABFF");
    EXPECT_STREQ(octets_to_string(octets, 0).c_str(), "0x00000004");

    unsigned char buffer[2] = {};
    EXPECT_EQ(string_to_octets("0x0000000700abFF", buffer, 2), 3);
    EXPECT_TRUE(buffer[0] == 0x00 && buffer[1] == 0xAB);

    Array<unsigned char> array = Array<unsigned char>::make(9);
    for (const char* text : {"", "0x", "0x0000000", "00000000700ABFF", "0x00000003", "0x0000000G00ABFF"})
        EXPECT_EQ(string_to_octets(text, array), -1) << text;
    for (const char* text : {"0x0000000800ABFF", "0x0000000700ABF", "0x0000000700ABFG"})
    {
        EXPECT_EQ(string_to_octets(text, array), -1) << text;
        EXPECT_EQ(array.size(), 1u) << text;
    }
    EXPECT_EQ(string_to_octets("0X00000004", array), 0);
    EXPECT_EQ(array.size(), 0u);
}

TEST(NamesTest, TypesAndFlagsByName)
{
    Type type = BOOLEAN;
    EXPECT_TRUE(type_name_to_type("DateTime", type) == 0 && type == DATETIME);
    EXPECT_TRUE(type_name_to_type("uint16", type) == 0 && type == UINT16);
    EXPECT_EQ(type_name_to_type("int", type), -1);
    EXPECT_EQ(1U << flag_name_to_index("key"), CIMPLE_FLAG_KEY);
    EXPECT_EQ(1U << flag_name_to_index("EmbeddedInstance"), CIMPLE_FLAG_EMBEDDED_INSTANCE);
    EXPECT_EQ(1U << flag_name_to_index("IfDeleted"), CIMPLE_FLAG_IF_DELETED);
    EXPECT_EQ(1U << flag_name_to_index("Out"), CIMPLE_FLAG_OUT);
    EXPECT_EQ(flag_name_to_index("Abstrac"), size_t(-1));
}

TEST(ErrorTest, KeepsTheThreadsMessage)
{
    Error::set_prefix("demo: ");
    CIMPLE_ERROR(("port %u of %s", 7u, std::string(5000, 'x').c_str()));
    EXPECT_EQ(std::string(Error::get()), "demo: port 7 of " + std::string(5000, 'x'));
    Error::clear();
    EXPECT_STREQ(Error::get(), "");
    Error::set_prefix("");
}

TEST(ConfigTest, SaysTheByteOrder)
{
#ifdef CIMPLE_BIG_ENDIAN
    const uint16 number = 0x0100;
#endif
#ifdef CIMPLE_LITTLE_ENDIAN
    const uint16 number = 0x0001;
#endif
    EXPECT_EQ(memcmp(&number, "\1", 2), 0);
}
} // namespace
