// Arrays: the operations against std::vector, elements with and without destructors, own elements as
// arguments.
#include <algorithm>
#include <cimple/cimple.h>
#include <gtest/gtest.h>
#include <random>
#include <vector>

using namespace cimple;

namespace
{
template <class T>
T make_element(unsigned n);

template <>
uint32 make_element<uint32>(unsigned n)
{
    return n;
}
template <>
String make_element<String>(unsigned n)
{
    return String(std::to_string(n).c_str());
}
template <>
Datetime make_element<Datetime>(unsigned n)
{
    return Datetime(uint64(n));
}
template <>
boolean make_element<boolean>(unsigned n)
{
    return n % 2 != 0;
}

template <class T>
class ArrayTest : public testing::Test
{
};
typedef testing::Types<uint32, String, Datetime, boolean> Element_Types;
TYPED_TEST_SUITE(ArrayTest, Element_Types);

TYPED_TEST(ArrayTest, BehavesLikeAVector)
{
    std::mt19937 random(1);
    const auto below = [&random](size_t n)
    { return std::uniform_int_distribution<size_t>(0, n - 1)(random); };
    Array<TypeParam> array;
    std::vector<TypeParam> oracle;
    for (unsigned step = 0; step < 3000; step++)
    {
        const TypeParam element = make_element<TypeParam>(step);
        const size_t pos = below(oracle.size() + 1);
        const auto at = oracle.begin() + static_cast<std::ptrdiff_t>(pos);
        const size_t n = below(oracle.size() - pos + 1);
        const std::vector<TypeParam> part(at, at + static_cast<std::ptrdiff_t>(n));
        switch (below(7))
        {
        case 0:
        case 1:
            array.append(element);
            oracle.push_back(element);
            break;
        case 2:
            if (pos == 0)
                array.prepend(element);
            else
                array.insert(pos, element);
            oracle.insert(at, element);
            break;
        case 3: // elements of its own
            array.insert(pos / 2, array.data() + pos, n);
            oracle.insert(oracle.begin() + static_cast<std::ptrdiff_t>(pos / 2), part.begin(), part.end());
            break;
        case 4:
            array.remove(pos, n);
            array.remove(array.size(), n); // nothing is there
            oracle.erase(at, at + static_cast<std::ptrdiff_t>(n));
            break;
        case 5:
            array.resize(step % 20);
            oracle.resize(step % 20);
            break;
        default:
        {
            Array<TypeParam> copy;
            copy.assign(array);
            copy.append(element);
            array.swap(copy);
            oracle.push_back(element);
            break;
        }
        }
        ASSERT_EQ(array.size(), oracle.size()) << step;
        for (size_t i = 0; i < oracle.size(); i++)
            ASSERT_TRUE(array[i] == oracle[i]) << step << " " << i;
        ASSERT_GE(array.capacity(), array.size());
    }
}

TYPED_TEST(ArrayTest, FindsTheIndexAndCompares)
{
    const TypeParam zero = make_element<TypeParam>(0);
    const TypeParam one = make_element<TypeParam>(1);
    Array<TypeParam> array = Array<TypeParam>::make(zero, zero, zero, one, zero);
    EXPECT_EQ(array.find(one), 3u);
    EXPECT_EQ(array.find(zero), 0u);
    array.remove(3);
    EXPECT_EQ(array.find(one), size_t(-1));

    Array<TypeParam> copy(array);
    EXPECT_TRUE(copy == array);
    copy[2] = one;
    EXPECT_FALSE(copy == array);
    EXPECT_TRUE(array[2] == zero);
    copy.clear();
    EXPECT_EQ(copy.size(), 0u);
    EXPECT_GE(copy.capacity(), 4u);
    EXPECT_TRUE(copy == Array<TypeParam>());
}

TEST(ArrayMemoryTest, RefusesSizesBeyondTheAddressSpace)
{
    Array_uint64 array;
    EXPECT_THROW(array.reserve(size_t(-1) / 4), std::bad_alloc);
    array.append(1);
    EXPECT_EQ(array[0], 1u);
    if (sizeof(size_t) > sizeof(uint32))
        EXPECT_THROW(Array_uint8().reserve(size_t(UINT32_MAX) + 1), std::bad_alloc)
            << "the head counts in 32 bits";
}

TEST(ArrayMemoryTest, TakesLittleMoreThanItsElements)
{
    Array_uint16 array;
    for (uint16 i = 0; i < 1000; i++)
    {
        array.append(i);
        ASSERT_LE(array.capacity(), std::max<size_t>(2 * array.size(), 8));
        if (array.size() > 64)
            ASSERT_LE(array.capacity(), array.size() + array.size() / 4 + 1);
    }
    Array_uint16 assigned;
    assigned = array;
    for (const Array_uint16& copy : {Array_uint16(array), Array_uint16(array.data(), array.size()), assigned})
        EXPECT_EQ(copy.capacity(), 1000u);
}

TEST(PropertyTest, ComparesFlagAndValue)
{
    Property<uint32> x;
    Property<uint32> y;
    x.set(5);
    y.set(5);
    EXPECT_TRUE(x == y);
    y.null = 1;
    EXPECT_TRUE(x != y);
    x.clear();
    EXPECT_TRUE(x.null != 0 && x.value == 0);
    EXPECT_TRUE(x != y) << "leftover values count";

    Property<Array_String> array;
    array.clear();
    array.set(Array_String::make("a", "b"));
    EXPECT_TRUE(array.null == 0 && array.value.size() == 2);
    array.clear();
    EXPECT_TRUE(array.null != 0 && array.value.size() == 0);
}

TEST(ArrayTest, ARowFedAtItsEndAndTakenFromItsFrontKeepsOrderAndStaysSmall)
{
    Array_String row;
    size_t first = 0;
    for (size_t step = 0; step < 3000; step++)
    {
        row.append(String(std::to_string(step).c_str()));
        if (row.size() > 13) // not a power of two, so that the memory is never quite full
        {
            row.remove(0);
            first++;
        }
        if (step % 500 == 250)
            row.reserve(40);
        for (size_t i = 0; i < row.size(); i++)
            ASSERT_EQ(std::to_string(first + i), row[i].c_str()) << step;
    }
    EXPECT_LE(row.capacity(), 64u);
}
} // namespace
