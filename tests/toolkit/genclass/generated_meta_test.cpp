// The meta data that the generator writes: feature order, kinds, flags, defaults, offsets and keys.
#include <cimple/cimple.h>
#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "repository.h"

using namespace cimple;

namespace
{

constexpr uint32 P = CIMPLE_FLAG_PROPERTY, R = CIMPLE_FLAG_REFERENCE, M = CIMPLE_FLAG_METHOD;
constexpr uint32 KEY = CIMPLE_FLAG_KEY, READ = CIMPLE_FLAG_READ, WRITE = CIMPLE_FLAG_WRITE;
constexpr uint32 IN = CIMPLE_FLAG_IN, OUT = CIMPLE_FLAG_OUT, EMBEDDED = CIMPLE_FLAG_EMBEDDED_INSTANCE;

struct Row
{
    const char* name;
    uint32 flags;
    int local;
    int detail = 0;               // subscript; for methods the type of the result
    const char* target = nullptr; // class of references; for properties nothing
};

template <class Kind>
const Kind& as(const Meta_Feature* feature)
{
    return *reinterpret_cast<const Kind*>(feature);
}

void expectFeature(const Meta_Feature* feature, const Row& row)
{
    SCOPED_TRACE(row.name);
    EXPECT_STREQ(feature->name, row.name);
    EXPECT_EQ(feature->flags, row.flags);
    if (row.flags & M)
        EXPECT_EQ(int{as<Meta_Method>(feature).return_type}, row.detail);
    else if (row.flags & R)
    {
        EXPECT_EQ(int{as<Meta_Reference>(feature).subscript}, row.detail);
        EXPECT_STREQ(as<Meta_Reference>(feature).meta_class->name, row.target);
    }
    else
        EXPECT_EQ(int{as<Meta_Property>(feature).subscript}, row.detail);
}

void expectClass(
    const Meta_Class& mc, uint32 flags, const char* super, size_t keys, const std::vector<Row>& rows)
{
    SCOPED_TRACE(mc.name);
    EXPECT_EQ(mc.flags, flags);
    EXPECT_STREQ(mc.super_meta_class ? mc.super_meta_class->name : "", super);
    EXPECT_EQ(mc.num_keys, keys);
    ASSERT_EQ(mc.num_meta_features, rows.size());
    for (size_t i = 0; i < rows.size(); ++i)
    {
        expectFeature(mc.meta_features[i], rows[i]);
        EXPECT_EQ(int{mc.locals[i].local}, rows[i].local) << rows[i].name;
    }
}

TEST(GeneratedMeta, FeaturesOfASubclassFollowThoseItInheritsAndOverridesStayInPlace)
{
    expectClass(Test_Twig::static_meta_class,
                CIMPLE_FLAG_CLASS,
                "Test_Leaf",
                2,
                {{"Id", P | KEY | READ, 0},
                 {"Reset", M, 1, UINT32},
                 {"Slot", P | KEY | READ, 0},
                 {"Level", P | READ | WRITE, 1},
                 {"Swap", M, 0, UINT32},
                 {"Label", P | READ | CIMPLE_FLAG_REQUIRED, 0},
                 {"Corner", R | READ | EMBEDDED, 0, 0, "Test_Point"},
                 {"Outline", R | READ | EMBEDDED, 0, -1, "Test_Point"},
                 {"Move", M, 0, UINT16},
                 {"Anything", R | READ | CIMPLE_FLAG_EMBEDDED_OBJECT, 0, 0, "Instance"},
                 {"Things", R | READ | CIMPLE_FLAG_EMBEDDED_OBJECT, 0, -1, "Instance"},
                 {"Count", M | CIMPLE_FLAG_STATIC, 0, UINT32},
                 {"Center", M, 0, STRING},
                 {"Moves", P | READ | CIMPLE_FLAG_COUNTER, 0},
                 {"Age", P | READ, 1}});
}

TEST(GeneratedMeta, KindsOfClasses)
{
    expectClass(Test_Nothing::static_meta_class, CIMPLE_FLAG_CLASS, "", 0, {});
    EXPECT_EQ(Test_Base::static_meta_class.flags, CIMPLE_FLAG_CLASS | CIMPLE_FLAG_ABSTRACT);
    EXPECT_EQ(Test_Base::static_meta_class.num_meta_features, 6u);
    expectClass(Test_Link::static_meta_class,
                CIMPLE_FLAG_ASSOCIATION | CIMPLE_FLAG_AGGREGATION,
                "",
                2,
                {{"Whole", R | KEY | CIMPLE_FLAG_AGGREGATE, 1, 0, "Test_Base"},
                 {"Part", R | KEY | CIMPLE_FLAG_WEAK, 1, 0, "Test_Base"},
                 {"Active", P | READ, 1}});
    expectClass(Test_LeafLink::static_meta_class,
                CIMPLE_FLAG_ASSOCIATION | CIMPLE_FLAG_AGGREGATION,
                "Test_Link",
                2,
                {{"Whole", R | KEY | CIMPLE_FLAG_AGGREGATE, 0, 0, "Test_Base"},
                 {"Part", R | KEY | CIMPLE_FLAG_WEAK, 1, 0, "Test_Leaf"},
                 {"Active", P | READ, 0}});
    expectClass(
        Test_Event::static_meta_class,
        CIMPLE_FLAG_INDICATION,
        "",
        0,
        {{"Text", P | READ, 1}, {"Source", R | READ | CIMPLE_FLAG_EMBEDDED_OBJECT, 1, 0, "Instance"}});
}

TEST(GeneratedMeta, ParametersStandInOrderWithTheResultLast)
{
    const Meta_Method& move = Test_Twig_Move_method::static_meta_class;
    const std::vector<Row> rows = {{"Steps", P | IN, 0},
                                   {"Path", P | OUT, 0},
                                   {"Rest", P | IN | OUT, 0},
                                   {"Weights", P | IN, 0, -1},
                                   {"From", R | IN | EMBEDDED, 0, 0, "Test_Point"},
                                   {"To", R | OUT | EMBEDDED, 0, 0, "Test_Point"},
                                   {"Where", R | IN, 0, 0, "Test_Base"},
                                   {"Stops", R | IN, 0, -1, "Test_Base"},
                                   {"Links", R | OUT, 0, -1, "Test_Link"},
                                   {"Last", R | OUT, 0, 0, "Test_Leaf"},
                                   {"return_value", P | OUT, 0}};
    ASSERT_EQ(move.num_meta_features, rows.size());
    for (size_t i = 0; i < rows.size(); ++i)
        expectFeature(move.meta_features[i], rows[i]);
    EXPECT_EQ(move.size, sizeof(Test_Twig_Move_method));

    const Meta_Method& center = Test_Leaf_Center_method::static_meta_class;
    ASSERT_EQ(center.num_meta_features, 1u);
    expectFeature(center.meta_features[0], {"return_value", R | OUT | EMBEDDED, 0, 0, "Test_Point"});
}

TEST(GeneratedMeta, ASubclassBeginsLikeItsSuperclassInEveryClass)
{
    const Meta_Repository& repository = *Test_Twig::static_meta_class.meta_repository;
    EXPECT_EQ(repository.num_meta_classes, 19u);
    std::set<std::string> seen;
    for (size_t c = 0; c < repository.num_meta_classes; ++c)
    {
        const Meta_Class& mc = *repository.meta_classes[c];
        SCOPED_TRACE(mc.name);
        EXPECT_EQ(mc.meta_repository, &repository);
        const Meta_Class* super = mc.super_meta_class;
        seen.insert(mc.name);
        if (!super)
            continue;
        EXPECT_TRUE(seen.count(super->name)) << "a superclass comes first";
        ASSERT_GE(mc.num_meta_features, super->num_meta_features);
        for (size_t i = 0; i < super->num_meta_features; ++i)
        {
            const Meta_Feature *own = mc.meta_features[i], *inherited = super->meta_features[i];
            EXPECT_STREQ(own->name, inherited->name);
            EXPECT_EQ(own == inherited, mc.locals[i].local == 0) << own->name;
            const auto offset = [](const Meta_Feature* mf) {
                return mf->flags & P   ? as<Meta_Property>(mf).offset
                       : mf->flags & R ? as<Meta_Reference>(mf).offset
                                       : 0;
            };
            EXPECT_EQ(offset(own), offset(inherited)) << own->name;
        }
    }
}

TEST(GeneratedMeta, AnOverrideHasTheDefaultItDeclaresAndNoOther)
{
    auto defaultOf = [](const Meta_Class& mc)
    {
        const Meta_Value* value = find_property(&mc, "Level")->value;
        return value ? int{reinterpret_cast<const Meta_Value_Scalar<uint8>*>(value)->value} : -1;
    };
    EXPECT_EQ(defaultOf(Test_Base::static_meta_class), 7);
    EXPECT_EQ(defaultOf(Test_Leaf::static_meta_class), 9);
    EXPECT_EQ(defaultOf(Test_Twig::static_meta_class), -1);
}

} // namespace
