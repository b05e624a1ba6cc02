// Values made to fit a declared type, or refused.
#include "agent/cim/coercion.h"

#include "agent/cim/Instance.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace cimd
{
namespace
{

using Maybe = std::optional<CimValue>;

CimValue time(const char* text)
{
    return CimValue::dateTime(CimDateTime::parse(text).value());
}

TEST(Coercion, WidensAndNarrowsKeysWithoutLoss)
{
    const char* const when = "20240229120000.000000+000";
    const struct
    {
        CimValue given;
        CimType type;
        Maybe expected;
    } rows[] = {
        {CimValue::sint64(7), CimType::Uint8, CimValue::uint8(7)},
        {CimValue::sint64(-1), CimType::Uint64, {}},
        {CimValue::uint64(128), CimType::Sint8, {}},
        {CimValue::uint64(UINT64_MAX), CimType::Sint64, {}},
        {CimValue::sint64(-129), CimType::Sint8, {}},
        {CimValue::real64(0.5), CimType::Real32, CimValue::real32(0.5F)},
        {CimValue::real64(0.5), CimType::Uint8, {}},
        {CimValue::string(when), CimType::DateTime, time(when)},
        {time(when), CimType::String, CimValue::string(when)},
        {CimValue::string("x"), CimType::DateTime, {}},
        {CimValue::string("x"), CimType::Char16, CimValue::char16(u'x')},
        {CimValue::string("12"), CimType::Uint8, CimValue::uint8(12)},
        {CimValue::boolean(true), CimType::Uint8, {}},
        {CimValue::null(CimType::Uint8), CimType::Uint8, {}},
        {CimValue::array(CimType::Uint8, {}), CimType::Uint8, {}},
        {CimValue::reference(ObjectPath("n", "C")), CimType::String, {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(coerceKey(row.given, row.type), row.expected)
            << typeText(row.given.type(), row.given.isArray()) << " as " << typeText(row.type, false);
}

TEST(Coercion, ConformsNullsAndEmbeddedObjectsOnly)
{
    const CimValue instance = CimValue::embedded(CimType::Instance, Instance("C"));
    const CimValue object = CimValue::embedded(CimType::Object, instance.sharedInstance());
    EXPECT_EQ(conform(CimValue(), CimType::Uint8, true), CimValue::null(CimType::Uint8, true));
    EXPECT_EQ(conform(instance, CimType::Object, false), object);
    const CimValue instances =
        CimValue::array(CimType::Instance, {instance, CimValue::null(CimType::Instance)});
    EXPECT_EQ(conform(instances, CimType::Object, true),
              CimValue::array(CimType::Object, {object, CimValue::null(CimType::Object)}));
    EXPECT_FALSE(conform(instance, CimType::Object, true));
    EXPECT_FALSE(conform(CimValue::uint8(1), CimType::Uint16, false));
}

TEST(Coercion, ReadsUntypedArguments)
{
    const auto texts = [](CimValue first) {
        return CimValue::array(CimType::String, {std::move(first), CimValue::null(CimType::String)});
    };
    const CimValue numbers = texts(CimValue::string("0x10"));
    EXPECT_EQ(readUntyped(numbers, CimType::Uint8, true),
              CimValue::array(CimType::Uint8, {CimValue::uint8(16), CimValue::null(CimType::Uint8)}));
    EXPECT_EQ(readUntyped(CimValue::string("1"), CimType::String, false), CimValue::string("1"));
    EXPECT_EQ(readUntyped(CimValue(), CimType::Uint8, false), CimValue::null(CimType::Uint8));
    EXPECT_FALSE(readUntyped(numbers, CimType::Uint8, false));
    EXPECT_FALSE(readUntyped(CimValue::string("many"), CimType::Uint8, false));
    EXPECT_FALSE(readUntyped(texts(CimValue::string("256")), CimType::Uint8, true));
}

TEST(Coercion, RefusesValuesOutOfTheirType)
{
    EXPECT_THROW(CimValue::unsignedInteger(CimType::Uint8, 256), std::out_of_range);
    EXPECT_THROW(CimValue::signedInteger(CimType::Sint8, -129), std::out_of_range);
    EXPECT_THROW(CimValue::unsignedInteger(CimType::Sint8, 1), std::out_of_range);
    EXPECT_THROW(CimValue::array(CimType::Uint8, {CimValue::uint16(1)}), std::invalid_argument);
}

} // namespace
} // namespace cimd
