// Following associations: every combination of role, result role and result class.
#include "demo_objects.h"
#include <gtest/gtest.h>
#include <vector>

using namespace cimple;

namespace
{
typedef std::vector<std::string> Paths;

// The other ends, or one entry "-1" if the source is no end.
Paths associators(const Instance* source,
                  const Instance* association,
                  const char* result_class,
                  const char* role,
                  const char* result_role)
{
    const Instance* ends[CIMPLE_MAX_REFERENCES_PER_CLASS];
    const ssize_t n = get_associators(source, association, result_class, role, result_role, ends);
    if (n < 0)
        return {"-1"};
    Paths paths;
    for (ssize_t i = 0; i < n; i++)
        paths.push_back(demo::path_of(ends[i]));
    return paths;
}

TEST(AssociationTest, FollowsFromEitherEnd)
{
    const Ref<Demo_SensorInRack> link = demo::sensor_in_rack("r", 1);
    const Ref<Demo_Rack> rack = demo::rack("r");
    const Ref<Demo_Sensor> sensor = demo::sensor(1);
    const Paths no_source = {"-1"};
    const Paths none = {};
    const Paths the_rack = {"Demo_Rack.Name=\"r\""};
    const Paths the_sensor = {"Demo_Sensor.Id=1"};
    const struct
    {
        const Instance* source;
        const char* result_class;
        const char* role;
        const char* result_role;
        Paths expected;
    } rows[] = {
        {rack.ptr(), "", "", "", the_sensor},
        {rack.ptr(), nullptr, nullptr, nullptr, the_sensor},
        {sensor.ptr(), "", "", "", the_rack},
        {rack.ptr(), "", "RACK", "sensor", the_sensor},
        {rack.ptr(), "", "Sensor", "", no_source},
        {rack.ptr(), "", "", "Rack", none},
        {rack.ptr(), "", "Rack", "Rack", none},
        {rack.ptr(), "demo_sensor", "", "", the_sensor},
        {rack.ptr(), "Demo_Element", "", "", the_sensor},
        {rack.ptr(), "Demo_Thing", "Rack", "Sensor", the_sensor},
        {rack.ptr(), "Demo_Rack", "", "", none},
        {rack.ptr(), "Demo_Unknown", "", "", none},
        {sensor.ptr(), "Demo_Rack", "Sensor", "Rack", the_rack},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(associators(row.source, link.ptr(), row.result_class, row.role, row.result_role),
                  row.expected)
            << demo::path_of(row.source) << " class " << (row.result_class ? row.result_class : "(null)")
            << " role " << (row.role ? row.role : "(null)") << " result role "
            << (row.result_role ? row.result_role : "(null)");
    }
    EXPECT_EQ(associators(demo::rack("other").ptr(), link.ptr(), "", "", ""), no_source);
    EXPECT_EQ(associators(demo::element(1).ptr(), link.ptr(), "", "", ""), no_source)
        << "an element is not of the end's class";
}

TEST(AssociationTest, JoinsObjectsOfOneClass)
{
    const Ref<Demo_RackAboveRack> link = demo::rack_above_rack("a", "b");
    const Ref<Demo_Rack> a = demo::rack("a");
    const Ref<Demo_Rack> b = demo::rack("b");
    const Paths path_a = {"Demo_Rack.Name=\"a\""};
    const Paths path_b = {"Demo_Rack.Name=\"b\""};
    EXPECT_EQ(associators(a.ptr(), link.ptr(), "", "", ""), path_b);
    EXPECT_EQ(associators(b.ptr(), link.ptr(), "", "", ""), path_a);
    EXPECT_EQ(associators(b.ptr(), link.ptr(), "", "Lower", "Upper"), path_a);
    EXPECT_EQ(associators(b.ptr(), link.ptr(), "", "Upper", ""), Paths({"-1"}));

    // An object joined to itself is its own other end, from whichever side.
    const Ref<Demo_RackAboveRack> loop = demo::rack_above_rack("a", "a");
    EXPECT_EQ(associators(a.ptr(), loop.ptr(), "", "", ""), path_a);
    EXPECT_EQ(associators(a.ptr(), loop.ptr(), "", "Upper", ""), path_a);
    EXPECT_EQ(associators(a.ptr(), loop.ptr(), "", "", "Upper"), path_a);
    EXPECT_EQ(associators(a.ptr(), loop.ptr(), "", "Upper", "Lower"), path_a);
    EXPECT_EQ(associators(a.ptr(), loop.ptr(), "", "Upper", "Upper"), Paths());
    EXPECT_EQ(associators(b.ptr(), loop.ptr(), "", "", ""), Paths({"-1"}));
}

TEST(AssociationTest, JoinsObjectsOfAnyClass)
{
    const Ref<Demo_Dependency> link = demo::dependency(demo::sensor(1).steal(), demo::rack("r").steal());
    EXPECT_EQ(associators(demo::rack("r").ptr(), link.ptr(), "", "", ""), Paths({"Demo_Sensor.Id=1"}));
    EXPECT_EQ(associators(demo::sensor(1).ptr(), link.ptr(), "Demo_Rack", "", ""),
              Paths({"Demo_Rack.Name=\"r\""}));
    EXPECT_EQ(associators(demo::rack("r").ptr(), link.ptr(), "Demo_Rack", "", ""), Paths());
}

TEST(AssociationTest, PassesOverNullReferences)
{
    Ref<Demo_SensorInRack> link = demo::sensor_in_rack("r", 1);
    unref(link->Sensor);
    link->Sensor = nullptr;
    EXPECT_EQ(associators(demo::rack("r").ptr(), link.ptr(), "", "", ""), Paths());
    EXPECT_EQ(associators(demo::sensor(1).ptr(), link.ptr(), "", "", ""), Paths({"-1"}));
    EXPECT_FALSE(is_reference_of(demo::sensor(1).ptr(), link.ptr(), ""));
}

TEST(AssociationTest, KnowsItsReferences)
{
    const Ref<Demo_RackAboveRack> link = demo::rack_above_rack("a", "b");
    const Ref<Demo_Rack> a = demo::rack("a");
    EXPECT_TRUE(is_reference_of(a.ptr(), link.ptr(), ""));
    EXPECT_TRUE(is_reference_of(a.ptr(), link.ptr(), nullptr));
    EXPECT_TRUE(is_reference_of(a.ptr(), link.ptr(), "upper"));
    EXPECT_FALSE(is_reference_of(a.ptr(), link.ptr(), "Lower"));
    EXPECT_FALSE(is_reference_of(a.ptr(), link.ptr(), "Middle"));
    EXPECT_FALSE(is_reference_of(demo::rack("c").ptr(), link.ptr(), ""));
}
} // namespace
