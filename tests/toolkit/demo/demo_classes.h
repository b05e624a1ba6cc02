// Classes for tests, of the shape that the class generator writes: sensors in racks, and one of every kind of
// feature.
#ifndef TESTS_TOOLKIT_DEMO_DEMO_CLASSES_H
#define TESTS_TOOLKIT_DEMO_DEMO_CLASSES_H

#include <cimple/cimple.h>

CIMPLE_NAMESPACE_BEGIN

class Demo_Limits : public Instance
{
  public:
    Property<sint32> Low;
    Property<sint32> High;

    CIMPLE_CLASS(Demo_Limits)
};

class Demo_Rack : public Instance
{
  public:
    Property<String> Name; // key

    CIMPLE_CLASS(Demo_Rack)
};

class Demo_Element_Reset_method : public Instance
{
  public:
    Property<uint32> return_value;

    CIMPLE_METHOD(Demo_Element_Reset_method)
};

class Demo_Element : public Instance
{
  public:
    Property<uint32> Id;    // key
    Property<String> Label; // "unnamed"

    CIMPLE_CLASS(Demo_Element)
};

// A Demo_Element.
class Demo_Sensor : public Instance
{
  public:
    Property<uint32> Id;
    Property<String> Label;
    Property<Array_uint16> Modes;
    Property<Datetime> Sampled;
    Property<boolean> Enabled; // true
    Property<uint16> Health;
    Demo_Limits* Limits; // embedded

    CIMPLE_CLASS(Demo_Sensor)
};

typedef Demo_Element_Reset_method Demo_Sensor_Reset_method;

class Demo_Sensor_Calibrate_method : public Instance
{
  public:
    Property<uint32> Target; // in
    Property<sint32> Drift;  // out
    Demo_Rack* Where;        // in
    Property<uint32> return_value;

    CIMPLE_METHOD(Demo_Sensor_Calibrate_method)
};

class Demo_Sensor_CountAll_method : public Instance // static
{
  public:
    Property<uint32> return_value;

    CIMPLE_METHOD(Demo_Sensor_CountAll_method)
};

class Demo_SensorInRack : public Instance // association
{
  public:
    Demo_Rack* Rack;     // key
    Demo_Sensor* Sensor; // key
    Property<uint16> Slot;

    CIMPLE_CLASS(Demo_SensorInRack)
};

// Joins two objects of one class.
class Demo_RackAboveRack : public Instance // association
{
  public:
    Demo_Rack* Upper; // key
    Demo_Rack* Lower; // key

    CIMPLE_CLASS(Demo_RackAboveRack)
};

// Joins objects of any class, whose keys may be of any names.
class Demo_Dependency : public Instance // association
{
  public:
    Instance* Antecedent; // key, declared as Demo_Thing
    Instance* Dependent;  // key, declared as Demo_Thing

    CIMPLE_CLASS(Demo_Dependency)
};

// The keyless and abstract root that Demo_Rack and Demo_Element derive from.
class Demo_Thing : public Instance
{
  public:
    CIMPLE_CLASS(Demo_Thing)
};

class Demo_SensorAlert : public Instance // indication
{
  public:
    Property<String> Text;

    CIMPLE_CLASS(Demo_SensorAlert)
};

// Calls MACRO(C++ type, feature name, default, default) for every type: the scalar's default is the first,
// the array's are both.
#define DEMO_FOR_EACH_FEATURE(MACRO)                                                                         \
    MACRO(boolean, Boolean, true, false)                                                                     \
    MACRO(uint8, Uint8, 255, 0)                                                                              \
    MACRO(sint8, Sint8, -128, 127)                                                                           \
    MACRO(uint16, Uint16, 65535, 1)                                                                          \
    MACRO(sint16, Sint16, -32768, 32767)                                                                     \
    MACRO(uint32, Uint32, 4294967295U, 2)                                                                    \
    MACRO(sint32, Sint32, -2147483647 - 1, 3)                                                                \
    MACRO(uint64, Uint64, 18446744073709551615ULL, 4)                                                        \
    MACRO(sint64, Sint64, -9223372036854775807LL - 1, 5)                                                     \
    MACRO(real32, Real32, 1.5F, -0.25F)                                                                      \
    MACRO(real64, Real64, 1e300, -2.5)                                                                       \
    MACRO(char16, Char16, 0x263A, 65)                                                                        \
    MACRO(String, String, "\"quoted\\text\"", "")                                                            \
    MACRO(Datetime, Datetime, "20260314015926.535897+060", "00000001020304.000005:000")

// One property of every type, scalar and array, without and with a default, and every kind of reference.
class Demo_Everything : public Instance
{
  public:
    Property<uint64> Key; // key

#define DEMO_FEATURE(T, NAME, X, Y)                                                                          \
    Property<T> The##NAME;                                                                                   \
    Property<Array<T>> The##NAME##Array;                                                                     \
    Property<T> Default##NAME;                                                                               \
    Property<Array<T>> Default##NAME##Array;
    DEMO_FOR_EACH_FEATURE(DEMO_FEATURE)
#undef DEMO_FEATURE

    Demo_Limits* Embedded;
    Property<Array<Demo_Limits*>> EmbeddedArray;
    Instance* Object;
    Property<Array<Instance*>> ObjectArray;

    CIMPLE_CLASS(Demo_Everything)
};

// All of the above; every class points to it.
extern const Meta_Repository demo_repository;

CIMPLE_NAMESPACE_END

#endif
