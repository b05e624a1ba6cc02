// Arrays as they are filled: bytes stay bytes as long as none is NULL, and nobody can tell the difference.
#include "agent/cim/CimArray.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

CimValue::Elements elementsOf(const CimArray& array)
{
    CimValue::Elements elements;
    for (std::size_t i = 0; i < array.size(); ++i)
        elements.push_back(array.at(i));
    return elements;
}

TEST(CimArray, KeepsBytesWithoutNullsAsBytes)
{
    const CimValue null = CimValue::null(CimType::Uint8);
    const struct
    {
        CimValue::Elements elements;
        bool areBytes;
    } rows[] = {{{}, true},
                {{CimValue::uint8(0), CimValue::uint8(255)}, true},
                {{null}, false},
                {{CimValue::uint8(0), null, CimValue::uint8(255)}, false},
                {{CimValue::sint8(-1)}, false},
                {{CimValue::string("x"), CimValue::null(CimType::String)}, false}};
    for (const auto& row : rows)
    {
        const CimType type = row.elements.empty() ? CimType::Uint8 : row.elements.front().type();
        const CimValue whole = CimValue::array(type, row.elements);
        EXPECT_EQ(row.areBytes, whole.holdsBytes());
        EXPECT_TRUE(whole.hasType(type, true) && !whole.isNull());
        EXPECT_EQ(row.elements, elementsOf(CimArray(whole)));

        CimArray added(type);
        CimArray set(type, row.elements.size());
        for (std::size_t i = 0; i < row.elements.size(); ++i)
        {
            EXPECT_TRUE(set.at(i).isNull());
            set.set(i, CimValue::null(type));
            set.set(i, row.elements[i]);
            set.set(i, row.elements[i]);
            added.add(row.elements[i]);
        }
        EXPECT_EQ(whole, set.value());
        EXPECT_EQ(whole, CimArray(set).value());
        EXPECT_EQ(whole, std::move(added).value());
    }
    CimArray numbers(CimValue::bytes({1, 2}));
    numbers.set(0, null);
    EXPECT_EQ((CimValue::Elements{null, CimValue::uint8(2)}), numbers.value().elements());
    numbers.set(0, CimValue::uint8(3));
    EXPECT_EQ(CimValue::bytes({3, 2}), numbers.value());
    EXPECT_NE(CimValue::bytes({3}), numbers.value());
    EXPECT_NE(CimValue::bytes({}), CimValue::null(CimType::Uint8, true));
}

} // namespace
} // namespace cimd
