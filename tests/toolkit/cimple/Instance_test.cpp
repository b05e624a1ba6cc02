// Instances: what create, clone, copy and clear leave, who owns references, how instances compare.
#include "demo_objects.h"
#include <functional>
#include <gtest/gtest.h>
#include <vector>

using namespace cimple;

namespace
{
int count(const Instance* instance)
{
    return Atomic_get(&instance->__refs);
}

TEST(InstanceTest, CreatesAndClearsEveryFeature)
{
    Ref<Demo_Everything> zero(Demo_Everything::create());
    Ref<Demo_Everything> born(Demo_Everything::create(true));
    Ref<Demo_Everything> cleared = demo::everything();
    clear(cleared.ptr());
#define CHECK(T, NAME, X, Y)                                                                                 \
    for (const Property<T>* x : {&zero->The##NAME, &zero->Default##NAME})                                    \
        EXPECT_TRUE(x->null == 0 && x->value == T()) << #NAME;                                               \
    for (const Property<Array<T>>* x : {&zero->The##NAME##Array, &zero->Default##NAME##Array})               \
        EXPECT_TRUE(x->null == 0 && x->value.size() == 0) << #NAME;                                          \
    for (const Demo_Everything* x : {born.ptr(), cleared.ptr()})                                             \
        EXPECT_TRUE(x->The##NAME.null && x->The##NAME.value == T() && x->The##NAME##Array.null &&            \
                    x->The##NAME##Array.value.size() == 0)                                                   \
            << #NAME;                                                                                        \
    EXPECT_TRUE(born->Default##NAME.null == 0 && born->Default##NAME.value == T(X)) << #NAME;                \
    EXPECT_TRUE(born->Default##NAME##Array.null == 0) << #NAME;                                              \
    EXPECT_TRUE(born->Default##NAME##Array.value == Array<T>::make(T(X), T(Y))) << #NAME;
    DEMO_FOR_EACH_FEATURE(CHECK)
#undef CHECK
    EXPECT_EQ(count(zero.ptr()), 1);
    EXPECT_EQ(zero->__magic, CIMPLE_INSTANCE_MAGIC);
    for (const Demo_Everything* x : {zero.ptr(), cleared.ptr()})
        EXPECT_TRUE(x->__name_space.empty() && !x->Embedded && !x->Object &&
                    x->ObjectArray.value.size() == 0);
    EXPECT_TRUE(cleared->ObjectArray.null && !zero->ObjectArray.null && !zero->EmbeddedArray.null);
    EXPECT_TRUE(born->EmptyArray.null == 0 && born->EmptyArray.value.size() == 0 &&
                born->FixedArray.null != 0);
    EXPECT_EQ(find_property(born->meta_class, "FixedArray")->subscript, 4);
    EXPECT_TRUE(born->EmbeddedArray.null == 0) << "arrays of references are never born null";

    const Ref<Demo_Sensor> sensor(Demo_Sensor::create(true));
    EXPECT_TRUE(sensor->Label.value == "unnamed") << "inherited default";
    EXPECT_TRUE(sensor->Enabled.value && sensor->Id.null != 0);
}

TEST(InstanceTest, ClonesDeeply)
{
    Ref<Demo_Everything> x = demo::everything();
    Ref<Demo_Everything> y(x->clone());
    EXPECT_TRUE(identical(x.ptr(), y.ptr()));
    EXPECT_EQ(count(y.ptr()), 1);
    EXPECT_EQ(y->__name_space, "root/demo");
    EXPECT_TRUE(y->Embedded != x->Embedded && y->Object != x->Object);
    EXPECT_TRUE(y->ObjectArray.value[1] != x->ObjectArray.value[1]);
    EXPECT_EQ(y->EmbeddedArray.value[1], nullptr);

    x->Embedded->High.set(99);
    x->TheStringArray.value[0].append("changed");
    EXPECT_TRUE(y->Embedded->High.value == 1);
    EXPECT_FALSE(y->TheStringArray == x->TheStringArray);
}

TEST(InstanceTest, KeyClonesOnlyKeys)
{
    Ref<Demo_Sensor> s = demo::sensor(7);
    s->__name_space = "root/demo";
    s->Limits = Demo_Limits::create();
    const Ref<Instance> keys(key_clone(s.ptr()));
    const Demo_Sensor* const k = cast<Demo_Sensor*>(keys.ptr());
    EXPECT_TRUE(k->Id.value == 7 && k->Id.null == 0);
    EXPECT_TRUE(k->Label.null && k->Enabled.null && k->Modes.null && !k->Limits);
    EXPECT_TRUE(k->__name_space.empty());

    Ref<Demo_SensorInRack> link = demo::sensor_in_rack("r1", 7);
    link->Slot.set(3);
    const Ref<Instance> link_keys(key_clone(link.ptr()));
    const Demo_SensorInRack* const l = cast<Demo_SensorInRack*>(link_keys.ptr());
    EXPECT_TRUE(l->Rack != link->Rack && l->Rack->Name.value == "r1" && l->Slot.null);
}

TEST(InstanceTest, OwnsItsReferences)
{
    Ref<Demo_Rack> rack = demo::rack("shared");
    {
        Ref<Demo_Everything> x(Demo_Everything::create());
        ref(rack.ptr());
        x->Object = rack.ptr();
        ref(rack.ptr());
        x->ObjectArray.value.append(rack.ptr());
        EXPECT_EQ(rack.count(), 3u);
        Ref<Demo_Everything> y(x->clone());
        EXPECT_EQ(rack.count(), 3u) << "clones have objects of their own";
        clear(x.ptr());
        EXPECT_EQ(rack.count(), 1u);
        ref(rack.ptr());
        x->Object = rack.ptr();
        copy(x.ptr(), y.ptr());
        EXPECT_EQ(rack.count(), 1u) << "what is copied over is released";
        EXPECT_EQ(x->ObjectArray.value.size(), 1u);
    }
    EXPECT_EQ(rack.count(), 1u);
}

TEST(InstanceTest, CopiesWhatTheModelAsksFor)
{
    Ref<Demo_Sensor> dest = demo::sensor(1);
    dest->Health.set(5);
    Ref<Demo_Sensor> src = demo::sensor(2);
    src->Label.set("new");
    src->Limits = Demo_Limits::create();
    src->Modes.set(Array_uint16::make(1, 2));

    Ref<Demo_Sensor> model(Demo_Sensor::create(true));
    nullify_properties(model.ptr());
    model->Label.null = 0;
    model->Health.null = 0;
    copy(dest.ptr(), src.ptr(), model.ptr());
    EXPECT_TRUE(dest->Label.value == "new" && dest->Id.value == 1 && !dest->Limits && dest->Modes.null);
    EXPECT_TRUE(dest->Health.null) << "asked for, and null in the source";

    __create_refs(model.ptr());
    copy(dest.ptr(), src.ptr(), model.ptr());
    EXPECT_TRUE(dest->Limits && dest->Limits != src->Limits);

    const Ref<Demo_Element> element_model =
        demo::element(0); // of the superclass, which knows only two features
    copy(dest.ptr(), src.ptr(), element_model.ptr());
    EXPECT_TRUE(dest->Id.value == 2 && dest->Modes.null);

    copy(dest.ptr(), src.ptr());
    EXPECT_TRUE(identical(dest.ptr(), src.ptr()));
    copy(dest.ptr(), dest.ptr());
    EXPECT_TRUE(identical(dest.ptr(), src.ptr()));
}

TEST(InstanceTest, ComparesKeys)
{
    Ref<Demo_Sensor> renamed = demo::sensor(7);
    renamed->Label.set("other");
    renamed->__name_space = "elsewhere";
    Ref<Demo_Sensor> null_key = demo::sensor(7);
    null_key->Id.null = 1;
    Ref<Demo_Sensor> other_null_key = demo::sensor(8);
    other_null_key->Id.null = 1;
    Ref<Demo_SensorInRack> no_rack = demo::sensor_in_rack("r", 7);
    unref(std::exchange(no_rack->Rack, nullptr));

    const auto agree = [](const Ref<Instance>& a, const Ref<Instance>& b)
    {
        EXPECT_EQ(key_eq(a.ptr(), b.ptr()), key_eq(b.ptr(), a.ptr())) << "from either side";
        return key_eq(a.ptr(), b.ptr());
    };
    const auto link = [](uint32 id) { return demo::sensor_in_rack("r", id).steal(); };
    const auto depends = [](Instance* on) { return demo::dependency(demo::rack("r").steal(), on).steal(); };
    EXPECT_TRUE(agree(demo::sensor(7).steal(), renamed.steal()));
    EXPECT_FALSE(agree(demo::sensor(7).steal(), demo::sensor(8).steal()));
    EXPECT_TRUE(agree(demo::sensor(7).steal(), demo::element(7).steal())) << "superclass";
    EXPECT_FALSE(agree(demo::rack("7").steal(), demo::sensor(7).steal())) << "other type of key";
    EXPECT_FALSE(agree(demo::sensor(7).steal(), clone(null_key.ptr())));
    EXPECT_TRUE(agree(null_key.steal(), other_null_key.steal()));
    EXPECT_TRUE(agree(link(1), link(1)));
    EXPECT_FALSE(agree(link(1), link(2)));
    EXPECT_FALSE(agree(link(7), clone(no_rack.ptr())));
    EXPECT_TRUE(agree(clone(no_rack.ptr()), clone(no_rack.ptr())));
    EXPECT_TRUE(agree(depends(demo::sensor(1).steal()), depends(demo::element(1).steal())));
    // The empty set of keys is part of every other.
    const Ref<Instance> keyless(static_cast<Instance*>(Demo_Limits::create()));
    EXPECT_TRUE(key_eq(keyless.ptr(), demo::sensor(1).ptr()));
    EXPECT_FALSE(key_eq(demo::sensor(1).ptr(), keyless.ptr()));
}

TEST(InstanceTest, IdenticalMeansEveryFeature)
{
    std::vector<std::function<void(Demo_Everything*)>> changes;
#define ADD_CHANGES(T, NAME, X, Y)                                                                           \
    changes.push_back([](Demo_Everything* x) { x->The##NAME.null = 1; });                                    \
    changes.push_back([](Demo_Everything* x) { x->The##NAME.set(T()); });                                    \
    changes.push_back([](Demo_Everything* x) { x->The##NAME##Array.value.remove(0); });
    DEMO_FOR_EACH_FEATURE(ADD_CHANGES)
#undef ADD_CHANGES
    changes.push_back([](Demo_Everything* x) { x->Embedded->Low.set(7); });
    changes.push_back([](Demo_Everything* x) { x->EmbeddedArray.value.remove(1); });
    changes.push_back([](Demo_Everything* x) { x->EmbeddedArray.null = 1; });
    changes.push_back([](Demo_Everything* x) { x->Object->__name_space = "elsewhere"; });
    changes.push_back([](Demo_Everything* x) { unref(std::exchange(x->Object, nullptr)); });
    changes.push_back([](Demo_Everything* x) { x->__name_space = "elsewhere"; });

    for (size_t i = 0; i < changes.size(); i++)
    {
        Ref<Demo_Everything> x = demo::everything();
        Ref<Demo_Everything> y(x->clone());
        changes[i](y.ptr());
        EXPECT_FALSE(identical(x.ptr(), y.ptr())) << "change " << i;
    }

    Ref<Demo_Sensor> a = demo::sensor(1);
    const Ref<Demo_Sensor> b = demo::sensor(1);
    a->Health.value = 9; // null on both sides: what is left in the value does not count
    EXPECT_TRUE(identical(a.ptr(), b.ptr()));
    EXPECT_FALSE(identical(demo::element(1).ptr(), b.ptr())) << "other class";
}

TEST(InstanceTest, CastsBySchema)
{
    const Ref<Demo_Sensor> sensor = demo::sensor(7);
    EXPECT_EQ(static_cast<void*>(cast<Demo_Element*>(sensor.ptr())), sensor.ptr());
    EXPECT_NE(cast<Demo_Thing*>(sensor.ptr()), nullptr);
    EXPECT_EQ(cast<Demo_Rack*>(sensor.ptr()), nullptr);
    EXPECT_EQ(cast<Demo_Sensor*>(demo::element(7).ptr()), nullptr);
    EXPECT_EQ(cast<Demo_Sensor*>(nullptr), nullptr);
    EXPECT_TRUE(is_a<Demo_Element>(sensor.ptr()) && is_a<Instance>(sensor.ptr()) &&
                !is_a<Demo_Rack>(sensor.ptr()));
}

TEST(RefTest, CountsAndAdopts)
{
    Demo_Rack* const rack = Demo_Rack::create();
    Ref<Instance> adopted(rack);
    EXPECT_EQ(adopted.count(), 1u);
    Ref<Demo_Rack> shared;
    EXPECT_TRUE(!shared && shared.count() == 0);
    shared.reset(rack);
    EXPECT_EQ(adopted.count(), 2u);
    shared.reset(rack);
    EXPECT_EQ(adopted.count(), 2u);
    const Ref<Demo_Rack>& same = shared;
    shared = same;
    EXPECT_EQ(adopted.count(), 2u);

    Ref<Demo_Sensor> wrong(rack); // not a sensor: nothing is taken over
    EXPECT_FALSE(wrong);
    wrong.reset();
    EXPECT_EQ(adopted.count(), 2u);

    Demo_Rack* const stolen = shared.steal();
    EXPECT_TRUE(!shared && stolen == rack && adopted.count() == 2u);
    unref(stolen);
    Ref<Instance> moved(std::move(adopted));
    EXPECT_TRUE(moved && moved.count() == 1u);
    unref(static_cast<Instance*>(nullptr));
    ref(static_cast<Instance*>(nullptr));
    destroyer(nullptr);
}
} // namespace
