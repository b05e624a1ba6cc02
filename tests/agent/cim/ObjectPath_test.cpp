// Names and paths: equal whatever their letter case and order, and in one text.
#include "agent/cim/ObjectPath.h"

#include "agent/cim/Instance.h"

#include <gtest/gtest.h>
#include <set>
#include <unordered_set>

namespace cimd
{
namespace
{

TEST(CimName, IgnoresLetterCaseButKeepsIt)
{
    const CimName declared("InstanceID");
    const CimName typed("INSTANCEid");
    EXPECT_EQ(declared, typed);
    EXPECT_EQ(declared.hash(), typed.hash());
    EXPECT_FALSE(declared < typed || typed < declared);
    EXPECT_FALSE(declared.identical(typed));
    EXPECT_EQ(typed.str(), "INSTANCEid");
    EXPECT_NE(declared, CimName("InstanceI"));
    EXPECT_NE(CimName("\xC3\xA9"), CimName("\xC3\x89")); // only A to Z are folded
    EXPECT_EQ((std::unordered_set<CimName>{"a", "A", "b"}).size(), 2U);
    EXPECT_EQ((std::set<CimName>{"_x", "X", "a", "A"}).size(), 3U);
}

TEST(ObjectPath, IsTheSameWhateverTheOrderAndCase)
{
    ObjectPath one("root/Test", "Some_Class");
    one.setKey("Zone", CimValue::string("a\"b\\c"));
    one.setKey("alpha", CimValue::uint16(3));
    one.setKey("Beta", CimValue::reference(one));
    ObjectPath other("ROOT/test", "some_class");
    other.setHost("elsewhere");
    other.setKey("BETA", CimValue::boolean(false));
    other.setKey("Alpha", CimValue::uint16(3));
    EXPECT_TRUE(other.setKey("ZONE", CimValue::string("a\"b\\c")));
    EXPECT_FALSE(other.setKey("beta", *one.findKey("beta"))); // replaces, and does not move

    EXPECT_EQ(one, other);
    EXPECT_EQ(
        other.text(),
        "//elsewhere/ROOT/test:some_class.Alpha=3,BETA=\"root/Test:Some_Class.alpha=3,Zone=\\\"a\\\\\\\"b"
        "\\\\\\\\c\\\"\",ZONE=\"a\\\"b\\\\c\"");
    other.setKey("alpha", CimValue::uint32(3));
    EXPECT_NE(one, other); // of another type
    EXPECT_EQ(one.findKey("Alph"), nullptr);
}

TEST(Instance, ComparesPropertiesByName)
{
    Instance one("C");
    one.set("A", CimValue::uint8(1));
    one.set("B", CimValue::embedded(CimType::Instance, Instance("D")));
    Instance other("c");
    other.set("b", CimValue::embedded(CimType::Instance, Instance("d")));
    EXPECT_NE(one, other);
    EXPECT_TRUE(other.set("a", CimValue::uint8(2)));
    EXPECT_NE(one, other);
    EXPECT_FALSE(other.set("A", CimValue::uint8(1)));
    EXPECT_EQ(one, other);
    EXPECT_EQ(*other.find("B"), *one.find("b"));
}

} // namespace
} // namespace cimd
