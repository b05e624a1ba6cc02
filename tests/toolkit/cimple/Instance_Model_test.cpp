// Instances as models: null flags, filters; namespaces; diagnostic text; paths.
#include "demo_objects.h"
#include <gtest/gtest.h>
#include <set>

using namespace cimple;

namespace
{
// Names of the properties that are not null, and of references that are set.
std::set<std::string> present(const Instance* instance)
{
    std::set<std::string> names;
    const Meta_Class* const mc = instance->meta_class;
    for (size_t i = 0; i < mc->num_meta_features; i++)
    {
        const char* const name = mc->meta_features[i]->name;
        if (const Meta_Property* mp = find_property(mc, name))
        {
            if (null_of(mp, __property_of(instance, mp)) == 0)
                names.insert(name);
        }
        else if (const Meta_Reference* mr = find_reference(mc, name))
        {
            if (mr->subscript == 0 ? __ref_of(instance, mr) != nullptr
                                   : __array_ref_of(instance, mr).null == 0)
                names.insert(name);
        }
    }
    return names;
}

TEST(NullFlagsTest, TouchPropertiesOnly)
{
    typedef std::set<std::string> Names;
    const Names keys = {"Id"};
    const Names others = {"Label", "Modes", "Sampled", "Enabled", "Health"};
    Names all = others;
    all.insert("Id");
    const struct
    {
        const char* what;
        void (*call)(const Instance*);
        bool born_null;
        Names expected;
    } rows[] = {
        {"nullify_properties", nullify_properties, false, {}},
        {"de_nullify_properties", de_nullify_properties, true, all},
        {"nullify_keys", nullify_keys, false, others},
        {"nullify_non_keys", nullify_non_keys, false, keys},
        {"de_nullify_keys", de_nullify_keys, true, keys},
    };
    for (const auto& row : rows)
    {
        Ref<Demo_Sensor> sensor(Demo_Sensor::create());
        sensor->Id.set(7);
        __set_null_flags(sensor.ptr(), true, true, row.born_null);
        row.call(sensor.ptr());
        EXPECT_EQ(present(sensor.ptr()), row.expected) << row.what;
        EXPECT_EQ(sensor->Id.value, 7u) << row.what << ": values stay";

        sensor->Limits = Demo_Limits::create();
        row.call(sensor.ptr());
        EXPECT_TRUE(sensor->Limits && sensor->Limits->Low.null == 0) << row.what << ": references stay";
    }
}

TEST(FilterTest, MakesModels)
{
    const char* const label_and_limits[] = {"label", "LIMITS", "Unknown", nullptr};
    const char* const key_and_modes[] = {"Id", "Modes", nullptr};
    const char* const nothing[] = {nullptr};
    const char* const method[] = {"Label", "Reset", nullptr};
    typedef std::set<std::string> Names;
    const struct
    {
        const char* what;
        const char* const* list;
        bool keep_keys;
        int result;
        Names expected;
    } rows[] = {
        {"no list", nullptr, true, 0, {"Id", "Label", "Modes", "Sampled", "Enabled", "Health"}},
        {"empty list", nothing, true, 0, {"Id"}},
        {"empty list, no keys", nothing, false, 0, {}},
        {"names in any case", label_and_limits, true, 0, {"Id", "Label", "Limits"}},
        {"keys are not for the list", key_and_modes, false, 0, {"Modes"}},
        {"a method", method, true, -1, {"Id", "Label"}},
    };
    for (const auto& row : rows)
    {
        Ref<Demo_Sensor> sensor = demo::sensor(7);
        EXPECT_EQ(filter_properties(sensor.ptr(), row.list, row.keep_keys), row.result) << row.what;
        EXPECT_EQ(present(sensor.ptr()), row.expected) << row.what;
    }

    Ref<Demo_Everything> x(Demo_Everything::create());
    x->EmbeddedArray.null = 1;
    const char* const arrays[] = {"EmbeddedArray", nullptr};
    EXPECT_EQ(filter_properties(x.ptr(), arrays), 0);
    EXPECT_EQ(x->EmbeddedArray.null, 0);
}

TEST(KeysNonNullTest, NeedsEveryKey)
{
    Ref<Demo_SensorInRack> link = demo::sensor_in_rack("r", 1);
    EXPECT_TRUE(keys_non_null(link.ptr()) && keys_non_null(link->Sensor));
    link->Sensor->Id.null = 1;
    EXPECT_FALSE(keys_non_null(link->Sensor));
    unref(std::exchange(link->Sensor, nullptr));
    EXPECT_FALSE(keys_non_null(link.ptr()));
}

TEST(NameSpaceTest, ReachesEverything)
{
    Ref<Demo_Everything> x = demo::everything(); // in root/demo, what it contains in none
    __set_name_space_recursive(x.ptr(), "root/other", false);
    EXPECT_EQ(x->__name_space, "root/demo");
    EXPECT_EQ(x->Embedded->__name_space, "root/other");
    EXPECT_EQ(x->EmbeddedArray.value[0]->__name_space, "root/other");
    EXPECT_EQ(x->ObjectArray.value[1]->__name_space, "root/other");
    __set_name_space_recursive(x.ptr(), "root/third", true);
    EXPECT_EQ(x->__name_space, "root/third");
    EXPECT_EQ(x->Object->__name_space, "root/third");
}

TEST(PrintTest, ShowsValuesAndNulls)
{
    Ref<Demo_Sensor> sensor = demo::sensor(7);
    sensor->__name_space = "root/demo";
    sensor->Label.set("a \"b\"\n");
    sensor->Modes.set(Array_uint16::make(1, 2));
    sensor->Limits = Demo_Limits::create();
    EXPECT_EQ(demo::text_of(sensor.ptr()),
              "Demo_Sensor\n"
              "{\n"
              "    string __name_space = \"root/demo\";\n"
              "    uint32 Id = 7;\n"
              "    string Label = \"a \\\"b\\\"\\n\";\n"
              "    uint16 Modes = { 1, 2 };\n"
              "    datetime Sampled = NULL;\n"
              "    boolean Enabled = true;\n"
              "    uint16 Health = NULL;\n"
              "    Demo_Limits Limits = Demo_Limits\n"
              "    {\n"
              "    };\n"
              "}\n");
    EXPECT_EQ(demo::text_of(demo::sensor_in_rack("r", 1).ptr(), true),
              "Demo_SensorInRack\n"
              "{\n"
              "    Demo_Rack Rack = Demo_Rack\n"
              "    {\n"
              "        string Name = \"r\";\n"
              "    };\n"
              "    Demo_Sensor Sensor = Demo_Sensor\n"
              "    {\n"
              "        uint32 Id = 1;\n"
              "    };\n"
              "}\n");
    const std::string text = demo::text_of(demo::everything().ptr());
    for (const char* line :
         {"sint8 TheSint8 = -128;",
          "uint64 TheUint64Array = { 18446744073709551615, 4 };",
          "real32 TheReal32 = 1.5;",
          "datetime TheDatetimeArray = { 20260314015926.535897+060, 00000001020304.000005:000 };",
          "boolean TheBooleanArray = { true, false };",
          "char16 TheChar16 = 9786;"})
        EXPECT_NE(text.find(line), std::string::npos) << line << " in\n" << text;
}

TEST(ModelPathTest, GoesBothWays)
{
    const struct
    {
        Ref<Instance> instance;
        const char* path;
    } rows[] = {
        {demo::sensor(7).steal(), "Demo_Sensor.Id=7"},
        {demo::rack("r1").steal(), "Demo_Rack.Name=\"r1\""},
        {demo::rack("a,b=\"c\\d\"").steal(), "Demo_Rack.Name=\"a,b=\\\"c\\\\d\\\"\""},
        {demo::rack("").steal(), "Demo_Rack.Name=\"\""},
        {demo::sensor_in_rack("r1", 7).steal(),
         "Demo_SensorInRack.Rack=\"Demo_Rack.Name=\\\"r1\\\"\",Sensor=\"Demo_Sensor.Id=7\""},
    };
    for (const auto& row : rows)
    {
        String path;
        ASSERT_EQ(instance_to_model_path(row.instance.ptr(), path), 0) << row.path;
        EXPECT_STREQ(path.c_str(), row.path);
        const Ref<Instance> back(model_path_to_instance(&Demo_Limits::static_meta_class, row.path));
        ASSERT_TRUE(back) << row.path;
        EXPECT_EQ(back->meta_class, row.instance->meta_class);
        EXPECT_TRUE(key_eq(back.ptr(), row.instance.ptr())) << row.path;
    }
}

TEST(ModelPathTest, RefusesWhatIsNoPath)
{
    String path("as it was");
    EXPECT_EQ(instance_to_model_path(Ref<Demo_Limits>(Demo_Limits::create()).ptr(), path), -1) << "no keys";
    EXPECT_EQ(instance_to_model_path(Ref<Demo_Rack>(Demo_Rack::create(true)).ptr(), path), -1) << "null key";
    EXPECT_EQ(instance_to_model_path(Ref<Demo_SensorInRack>(Demo_SensorInRack::create()).ptr(), path), -1);
    EXPECT_EQ(path, "as it was");

    for (const char* text : {"",
                             "Demo_Sensor",
                             "Demo_Sensor.",
                             "Demo_Sensor.Id",
                             "Demo_Sensor.Id=",
                             "Demo_Sensor.Id=x",
                             "Demo_Sensor.Id=4294967296",
                             "Demo_Sensor.Id=7,",
                             "Demo_Sensor.Id=7,Id=7",
                             "Demo_Sensor.Label=\"x\"",
                             "Demo_Unknown.Id=7",
                             "Demo_Rack.Name=r1",
                             "Demo_Rack.Name=\"r1",
                             "Demo_Rack.Name=\"r1\\",
                             "Demo_Rack.Name=\"r1\"x",
                             "Demo_SensorInRack.Rack=\"Demo_Rack.Name=\\\"r1\\\"\"",
                             "Demo_SensorInRack.Rack=\"Demo_Sensor.Id=7\",Sensor=\"Demo_Sensor.Id=7\""})
        EXPECT_EQ(model_path_to_instance(&Demo_Sensor::static_meta_class, text), nullptr) << text;
}

TEST(PutPropertyTest, ParsesByType)
{
    const std::pair<const char*, const char*> rows[] = {{"TheBoolean", "1"},
                                                        {"TheUint8", "256"},
                                                        {"TheReal64", "1e3"},
                                                        {"TheChar16", "65"},
                                                        {"TheDatetime", "20260115120000.000000+000"},
                                                        {"TheDatetime", "2026"},
                                                        {"TheUint32Array", "-5"},
                                                        {"TheUint32Array", "5"},
                                                        {"TheUint32Array", "6"}};
    Ref<Demo_Everything> x(Demo_Everything::create(true));
    std::string refused;
    for (const auto& [name, text] : rows)
        if (__put_property_from_str(x.ptr(), find_property(x->meta_class, name), text) != 0)
            refused += text + std::string(" ");
    EXPECT_EQ(refused, "1 256 2026 -5 ");
    EXPECT_TRUE(x->TheBoolean.null && x->TheUint8.null && x->TheReal64.value == 1000 &&
                x->TheChar16.value == 65);
    EXPECT_STREQ(x->TheDatetime.value.ascii().c_str(), rows[4].second);
    EXPECT_TRUE(x->TheUint32Array.value == Array_uint32::make(5, 6)) << "arrays collect";
}
} // namespace
