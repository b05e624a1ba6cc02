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
    int invoke(Instance* record)
    {
        Ref<Test_Twig> twig(Test_Twig::create(true));
        twig->Id.set("twig");
        Twig_Provider provider;
        return Method_Dispatch<Test_Twig>::invoke(&provider, twig.ptr(), record);
    }
};

TEST_F(MethodDispatch, HandsInputsOverAndOutputsBack)
{
    Test_Twig_Move_method* const record = Test_Twig_Move_method::create();
    const Ref<Instance> owned(static_cast<Instance*>(record));
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
}

TEST_F(MethodDispatch, FindsMethodsWithoutRegardToCaseAndRefusesWhatTheProviderDoesNotHave)
{
    Test_Twig_Count_method* const count = Test_Twig_Count_method::create();
    const Ref<Instance> owned(static_cast<Instance*>(count));
    const Meta_Method& own = Test_Twig_Count_method::static_meta_class;
    // clang-format off
    const Meta_Method renamed = {CIMPLE_ATOMIC_INITIALIZER, own.flags, "coUNT", nullptr, 0, own.meta_features,
                                 own.num_meta_features, own.size, own.return_type};
    // clang-format on
    count->meta_class = reinterpret_cast<const Meta_Class*>(&renamed);
    EXPECT_EQ(invoke(count), INVOKE_METHOD_OK);
    EXPECT_EQ(count->return_value.value, 12u);
    count->meta_class = reinterpret_cast<const Meta_Class*>(&own);

    const auto invokeNew = [this](const auto& method)
    {
        const Ref<Instance> record(create(reinterpret_cast<const Meta_Class*>(&method)));
        return invoke(const_cast<Instance*>(record.ptr()));
    };
    EXPECT_EQ(invokeNew(Demo_Sensor_Calibrate_method::static_meta_class), -1);
    for (const Meta_Method* method : {&Test_Twig_Reset_method::static_meta_class,
                                      &Test_Twig_Swap_method::static_meta_class,
                                      &Test_Twig_Center_method::static_meta_class})
        EXPECT_EQ(invokeNew(*method), INVOKE_METHOD_UNSUPPORTED);
    EXPECT_EQ(Twig_Provider::refused, "Reset Swap Center ") << "the schema's spelling, each once";

    struct Link_Provider : Test_LeafLink_Methods<Link_Provider>
    {
    } links; // of a class without methods
    EXPECT_EQ(Method_Dispatch<Test_LeafLink>::invoke(&links, nullptr, count), -1);
}

} // namespace
