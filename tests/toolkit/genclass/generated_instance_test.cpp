// Instances of generated classes: defaults of every type.
#include <cimple/cimple.h>
#include <gtest/gtest.h>
#include <limits>

#include "repository.h"

using namespace cimple;

namespace
{

template <class C>
struct Owned
{
    explicit Owned(C* created) : instance(created) {}
    ~Owned() { C::destroy(instance); }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    C* operator->() const { return instance; }
    C* instance;
};

template <class T>
void expectElements(const Property<Array<T>>& property, const T& first, const T& second)
{
    EXPECT_FALSE(property.null);
    ASSERT_EQ(property.value.size(), 2u);
    EXPECT_TRUE(property.value[0] == first);
    EXPECT_TRUE(property.value[1] == second);
}

TEST(GeneratedInstance, ScalarDefaultsReachTheLimitsOfEachType)
{
    Owned<Test_Scalars> x(Test_Scalars::create(true));
    EXPECT_EQ(x->B.value, true);
    EXPECT_EQ(x->U8.value, 255);
    EXPECT_EQ(x->S8.value, -128);
    EXPECT_EQ(x->U16.value, 65535);
    EXPECT_EQ(x->S16.value, -32768);
    EXPECT_EQ(x->U32.value, std::numeric_limits<uint32>::max());
    EXPECT_EQ(x->S32.value, std::numeric_limits<sint32>::min());
    EXPECT_EQ(x->U64.value, std::numeric_limits<uint64>::max());
    EXPECT_EQ(x->S64.value, std::numeric_limits<sint64>::min());
    EXPECT_EQ(x->R32.value, -1.5f);
    EXPECT_EQ(x->R64.value, 1.0E300);
    EXPECT_EQ(x->C16.value.code(), '?');
    EXPECT_STREQ(x->S.value.c_str(), "a \"quoted\" \\ line\n?\?/1");
    EXPECT_STREQ(x->D.value.ascii().c_str(), "00000001020304.000005:000");
    EXPECT_TRUE(keys_non_null(x.instance));
}

TEST(GeneratedInstance, ArrayDefaults)
{
    Owned<Test_Arrays> x(Test_Arrays::create(true));
    expectElements<boolean>(x->B, true, false);
    expectElements<uint8>(x->U8, 1, 2);
    expectElements<sint8>(x->S8, -1, 2);
    expectElements<uint16>(x->U16, 1, 2);
    expectElements<sint16>(x->S16, -1, 2);
    expectElements<uint32>(x->U32, 1, 2);
    expectElements<sint32>(x->S32, -1, 2);
    expectElements<uint64>(x->U64, 1, 2);
    expectElements<sint64>(x->S64, -1, 2);
    expectElements<real32>(x->R32, 0.5f, 2.0f);
    expectElements<real64>(x->R64, 0.5, 2.0);
    expectElements<char16>(x->C16, char16('a'), char16(0x20AC));
    expectElements<String>(x->S, "one", "");
    expectElements<Datetime>(
        x->D, Datetime("20060102030405.000006+060"), Datetime("00000001020304.000005:000"));
    EXPECT_TRUE(x->Fixed.null);
    EXPECT_FALSE(x->Empty.null);
    EXPECT_EQ(x->Empty.value.size(), 0u);
}

} // namespace
