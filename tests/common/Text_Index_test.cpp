// Tests of the look-up by text that pairs two maps.
#include "common/Text_Index.h"

#include "VRAX_FCPortStatistics.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

class TextIndex : public testing::Test
{
  protected:
    void TearDown() override { VRAX_Maps::getInstance()->map<VRAX_FCPortStatistics>().clear(); }

    static void add(const char* id, const char* name)
    {
        Owned<VRAX_FCPortStatistics> instance = makeNull<VRAX_FCPortStatistics>();
        instance->InstanceID.set(id);
        if (name != nullptr)
            instance->ElementName.set(name);
        Write_Guard<VRAX_FCPortStatistics> guard;
        ASSERT_TRUE(guard.writer().insert(instance));
    }

    typedef Text_Index<VRAX_FCPortStatistics> Index;
    static Index byName()
    {
        const Read_Guard<VRAX_FCPortStatistics> guard;
        return Index(guard.view(),
                     [](const VRAX_FCPortStatistics& port)
                     { return port.ElementName.null ? nullptr : port.ElementName.value.c_str(); });
    }
    static std::vector<std::string> idsNamed(const Index& index, const char* name)
    {
        std::vector<std::string> ids;
        index.forEach(
            name, [&](const VRAX_FCPortStatistics* port) { ids.push_back(port->InstanceID.value.c_str()); });
        return ids;
    }
};

TEST_F(TextIndex, FindsWithoutRegardToCaseInMapOrder)
{
    add("1", "10000000c9aa");
    add("2", "10000000C9BB");
    add("3", "10000000C9AA");
    add("4", nullptr);
    add("5", "10000000c9Aa");
    const Index index = byName();
    EXPECT_EQ(idsNamed(index, "10000000C9aa"), (std::vector<std::string>{"1", "3", "5"}));
    EXPECT_EQ(idsNamed(index, "10000000c9bb"), (std::vector<std::string>{"2"}));
    EXPECT_TRUE(idsNamed(index, "10000000C9").empty()) << "whole texts only";
    EXPECT_TRUE(idsNamed(index, "").empty()) << "a null text is no text";
    EXPECT_EQ(index.find("10000000C9AA")->InstanceID.value, "1");
    EXPECT_EQ(index.find("x"), nullptr);
}

TEST_F(TextIndex, OfAnEmptyMapFindsNothing)
{
    const Index index = byName();
    EXPECT_EQ(index.find("x"), nullptr);
    EXPECT_EQ(Read_Guard<VRAX_FCPortStatistics>().view().first(), nullptr);
}

TEST_F(TextIndex, ADuplicateKeyStaysItsOwners)
{
    add("1", "a");
    Owned<VRAX_FCPortStatistics> again = makeNull<VRAX_FCPortStatistics>();
    again->InstanceID.set("1");
    Write_Guard<VRAX_FCPortStatistics> guard;
    EXPECT_FALSE(guard.writer().insert(again));
    EXPECT_NE(again, nullptr);
}

} // namespace
} // namespace cimple
