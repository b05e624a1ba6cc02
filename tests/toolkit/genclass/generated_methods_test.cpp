// The generated mix-in of unsupported methods and the dispatch that unpacks method records.
#include <cimple/cimple.h>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>

#include "Demo_Sensor.h"
#include "Test_Event_Methods.h"
#include "Test_LeafLink_Methods.h"
#include "Test_Twig_Methods.h"

using namespace cimple;

namespace
{

struct Twig_Provider : Test_Twig_Methods<Twig_Provider>
{
    static Invoke_Method_Status unsupported_method(const char* name)
    {
        refused += std::string(name) + " ";
        return INVOKE_METHOD_UNSUPPORTED;
    }

    Invoke_Method_Status Move(const Test_Twig* self,
                              const Property<uint32>& steps,
                              Property<String>& path,
                              Property<sint64>& rest,
                              const Property<Array_real64>& weights,
                              const Test_Point* from,
                              Test_Point*& to,
                              const Test_Base* where,
                              const Property<Array<Test_Base*>>& stops,
                              Property<Array<Test_Link*>>& links,
                              Test_Leaf*& last,
                              Property<uint16>& return_value)
    {
        path.set(self->Id.value);
        rest.set(rest.value + steps.value);
        to = from->clone();
        links.value.append(Test_Link::create(true));
        last = Test_Leaf::create(true);
        last->Id.set(where->Id.value);
        return_value.set(static_cast<uint16>(weights.value.size() * 10 + stops.value.size()));
        return INVOKE_METHOD_OK;
    }

    Invoke_Method_Status Count(Property<uint32>& return_value)
    {
        return_value.set(12);
        return INVOKE_METHOD_OK;
    }

    static std::string refused;
};

std::string Twig_Provider::refused;

class MethodDispatch : public ::testing::Test
{
  protected:
    MethodDispatch() : twig(Test_Twig::create(true))
    {
        twig->Id.set("twig");
        Twig_Provider::refused.clear();
    }
    ~MethodDispatch() override { Test_Twig::destroy(twig); }

    int invoke(Instance* record) { return Method_Dispatch<Test_Twig>::invoke(&provider, twig, record); }

    Twig_Provider provider;
    Test_Twig* twig;
};

TEST_F(MethodDispatch, HandsInputsOverAndOutputsBack)
{
    Test_Twig_Move_method* record = Test_Twig_Move_method::create();
    record->Steps.set(5);
    record->Rest.set(-7);
    record->Weights.value.append(0.5);
    record->From = Test_Point::create(true);
    record->From->X.set(9);
    record->Where = Test_Base::create(true);
    record->Where->Id.set("there");
    record->Stops.value.append(Test_Base::create(true));

    EXPECT_EQ(invoke(record), INVOKE_METHOD_OK);
    EXPECT_STREQ(record->Path.value.c_str(), "twig");
    EXPECT_EQ(record->Rest.value, -2);
    EXPECT_EQ(record->To->X.value, 9);
    EXPECT_EQ(record->Links.value.size(), 1u);
    EXPECT_STREQ(record->Last->Id.value.c_str(), "there");
    EXPECT_EQ(record->return_value.value, 11);
    Test_Twig_Move_method::destroy(record);
}

TEST_F(MethodDispatch, FindsMethodsWithoutRegardToCaseAndRefusesWhatTheProviderDoesNotHave)
{
    Test_Twig_Count_method* count = Test_Twig_Count_method::create();
    const Meta_Method& own = Test_Twig_Count_method::static_meta_class;
    const Meta_Method renamed = {CIMPLE_ATOMIC_INITIALIZER,
                                 own.flags,
                                 "coUNT",
                                 nullptr,
                                 0,
                                 own.meta_features,
                                 own.num_meta_features,
                                 own.size,
                                 own.return_type};
    count->meta_class = reinterpret_cast<const Meta_Class*>(&renamed);
    EXPECT_EQ(invoke(count), INVOKE_METHOD_OK);
    EXPECT_EQ(count->return_value.value, 12u);
    Test_Twig_Count_method::destroy(count);
    Demo_Sensor_Calibrate_method* foreign = Demo_Sensor_Calibrate_method::create();
    EXPECT_EQ(invoke(foreign), -1);
    Demo_Sensor_Calibrate_method::destroy(foreign);

    Test_Twig_Reset_method* reset = Test_Twig_Reset_method::create();
    Test_Twig_Swap_method* swap = Test_Twig_Swap_method::create();
    Test_Twig_Center_method* center = Test_Twig_Center_method::create();
    EXPECT_EQ(invoke(reset), INVOKE_METHOD_UNSUPPORTED);
    EXPECT_EQ(invoke(swap), INVOKE_METHOD_UNSUPPORTED);
    EXPECT_EQ(invoke(center), INVOKE_METHOD_UNSUPPORTED);
    EXPECT_EQ(Twig_Provider::refused, "Reset Swap Center ") << "the schema's spelling, each once";
    Test_Twig_Reset_method::destroy(reset);
    Test_Twig_Swap_method::destroy(swap);
    Test_Twig_Center_method::destroy(center);
}

TEST_F(MethodDispatch, AClassWithoutMethodsKnowsNone)
{
    struct Link_Provider : Test_LeafLink_Methods<Link_Provider>
    {
    } links;
    Test_Twig_Reset_method* reset = Test_Twig_Reset_method::create();
    EXPECT_EQ(Method_Dispatch<Test_LeafLink>::invoke(&links, nullptr, reset), -1);
    Test_Twig_Reset_method::destroy(reset);
}

} // namespace
