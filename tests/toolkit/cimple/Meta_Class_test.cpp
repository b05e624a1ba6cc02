// Look-ups in meta data: features of every kind, inheritance by name, repositories.
#include "demo_objects.h"
#include <gtest/gtest.h>

using namespace cimple;

namespace
{
const Meta_Repository* const kRepository = Demo_Sensor::static_meta_class.meta_repository;

// A class without features and repository.
Meta_Class class_named(const char* name, const Meta_Class* super)
{
    return {CIMPLE_ATOMIC_INITIALIZER,
            CIMPLE_FLAG_CLASS,
            name,
            nullptr,
            0,
            nullptr,
            0,
            0,
            nullptr,
            super,
            0,
            nullptr};
}

TEST(MetaClassTest, FindsFeaturesByKindAndName)
{
    const Meta_Class* const mc = &Demo_Sensor::static_meta_class;
    EXPECT_STREQ(find_property(mc, "sampled")->name, "Sampled");
    EXPECT_EQ(find_property(mc, "Limits"), nullptr);
    EXPECT_EQ(find_reference(mc, "LIMITS")->meta_class, &Demo_Limits::static_meta_class);
    EXPECT_EQ(find_method(mc, "calibrate"), &Demo_Sensor_Calibrate_method::static_meta_class);
    EXPECT_EQ(find_method(mc, "RESET"), &Demo_Element_Reset_method::static_meta_class);
    EXPECT_EQ(find_method(mc, "Label"), nullptr);
    EXPECT_EQ(find_feature(mc, "Label", CIMPLE_FLAG_REFERENCE | CIMPLE_FLAG_METHOD), nullptr);
    EXPECT_EQ(find_feature(mc, "Labe"), nullptr);

    const Meta_Method* const mm = find_method(mc, "Calibrate");
    EXPECT_EQ(find_parameter(mm, "drift")->type, SINT32);
    EXPECT_EQ(find_parameter(mm, "Where"), nullptr);
    EXPECT_STREQ(find_reference(mm, "where")->name, "Where");
    EXPECT_NE(find_feature(mm, "RETURN_VALUE"), nullptr);

    EXPECT_TRUE(has_methods(mc) && !has_methods(&Demo_Rack::static_meta_class));
    EXPECT_TRUE(has_references(mc) && !has_references(&Demo_Element::static_meta_class));
}

TEST(MetaClassTest, KnowsSubclassesByName)
{
    // The same class as another library would describe it.
    const Meta_Class foreign_element = class_named("DEMO_ELEMENT", nullptr);
    const Meta_Class* const sensor = &Demo_Sensor::static_meta_class;
    const Meta_Class* const element = &Demo_Element::static_meta_class;
    const Meta_Class* const rack = &Demo_Rack::static_meta_class;
    EXPECT_TRUE(is_subclass(element, sensor) && is_subclass(sensor, sensor));
    EXPECT_FALSE(is_subclass(sensor, element) || is_subclass(rack, sensor));
    EXPECT_TRUE(is_subclass(&foreign_element, sensor));
    EXPECT_TRUE(is_subclass(&Instance::static_meta_class, rack));
    EXPECT_FALSE(is_subclass(rack, &Instance::static_meta_class));

    EXPECT_EQ(is_subclass(kRepository, "demo_thing", "Demo_Sensor"), 0);
    EXPECT_EQ(is_subclass(kRepository, "Demo_Sensor", "Demo_Thing"), 1);
    EXPECT_EQ(is_subclass(kRepository, "Demo_Sensor", "Demo_Unknown"), -1);
    EXPECT_EQ(is_subclass(kRepository, nullptr, "Demo_Sensor"), -1);
    EXPECT_EQ(is_subclass(nullptr, "Demo_Thing", "Demo_Sensor"), -1);
}

TEST(MetaClassTest, FindsClasses)
{
    EXPECT_EQ(find_meta_class(&Demo_Sensor::static_meta_class, "demo_rack"), &Demo_Rack::static_meta_class);
    EXPECT_EQ(find_meta_class(&Demo_Sensor::static_meta_class, "Demo_Ra"), nullptr);
    EXPECT_EQ(find_meta_class(kRepository, "DEMO_EVERYTHING"), &Demo_Everything::static_meta_class);

    const Meta_Class orphan = class_named("Demo_Orphan", &Demo_Rack::static_meta_class);
    EXPECT_EQ(find_meta_class(&orphan, "Demo_Orphan"), &orphan);
    EXPECT_EQ(find_meta_class(&orphan, "Demo_Rack"), &Demo_Rack::static_meta_class);
    EXPECT_EQ(find_meta_class(&orphan, "Demo_Sensor"), nullptr) << "it has no repository";
}

TEST(MetaClassTest, FindsQualifiers)
{
    const Meta_Qualifier max_len = {CIMPLE_ATOMIC_INITIALIZER, "MaxLen", UINT32, 0, 0, nullptr};
    const Meta_Qualifier* const qualifiers[] = {&max_len};
    EXPECT_EQ(find(qualifiers, 1, "MAXLEN"), &max_len);
    EXPECT_EQ(find(qualifiers, 1, "MinLen"), nullptr);
    EXPECT_EQ(find(qualifiers, 0, "MaxLen"), nullptr);
}
} // namespace
