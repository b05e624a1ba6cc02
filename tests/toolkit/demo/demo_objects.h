// Makers of demo instances and texts of instances, for tests of the library and of the adapter.
#ifndef TESTS_TOOLKIT_DEMO_DEMO_OBJECTS_H
#define TESTS_TOOLKIT_DEMO_DEMO_OBJECTS_H

#include <cimple/cimple.h>
#include <string>

#include "repository.h"

// Calls MACRO(C++ type, feature name, default, default) for every type: the scalar's default is the first,
// the array's are both. The same stand in demo.mof.
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
    MACRO(String, String, "a \"quoted\" \\ line\n?\?/1", "")                                                 \
    MACRO(Datetime, Datetime, "20260314015926.535897+060", "00000001020304.000005:000")

namespace demo
{

inline cimple::Ref<cimple::Demo_Rack> rack(const char* name)
{
    cimple::Ref<cimple::Demo_Rack> rack(cimple::Demo_Rack::create(true));
    rack->Name.set(name);
    return rack;
}

inline cimple::Ref<cimple::Demo_Sensor> sensor(cimple::uint32 id, const char* label = nullptr)
{
    cimple::Ref<cimple::Demo_Sensor> sensor(cimple::Demo_Sensor::create(true));
    sensor->Id.set(id);
    if (label)
        sensor->Label.set(label);
    return sensor;
}

inline cimple::Ref<cimple::Demo_Element> element(cimple::uint32 id)
{
    cimple::Ref<cimple::Demo_Element> element(cimple::Demo_Element::create(true));
    element->Id.set(id);
    return element;
}

inline cimple::Ref<cimple::Demo_SensorInRack> sensor_in_rack(const char* name, cimple::uint32 id)
{
    cimple::Ref<cimple::Demo_SensorInRack> link(cimple::Demo_SensorInRack::create(true));
    link->Rack = rack(name).steal();
    link->Sensor = sensor(id).steal();
    return link;
}

inline cimple::Ref<cimple::Demo_RackAboveRack> rack_above_rack(const char* upper, const char* lower)
{
    cimple::Ref<cimple::Demo_RackAboveRack> link(cimple::Demo_RackAboveRack::create(true));
    link->Upper = rack(upper).steal();
    link->Lower = rack(lower).steal();
    return link;
}

// Takes over both ends.
inline cimple::Ref<cimple::Demo_Dependency> dependency(cimple::Instance* antecedent,
                                                       cimple::Instance* dependent)
{
    cimple::Ref<cimple::Demo_Dependency> link(cimple::Demo_Dependency::create(true));
    link->Antecedent = static_cast<cimple::Demo_Thing*>(antecedent);
    link->Dependent = static_cast<cimple::Demo_Thing*>(dependent);
    return link;
}

// An instance whose features all have values that are neither zero nor empty.
cimple::Ref<cimple::Demo_Everything> everything();

// "Class.key=value,..." of an instance, for messages and comparisons.
inline std::string path_of(const cimple::Instance* instance)
{
    cimple::String path;
    return cimple::instance_to_model_path(instance, path) == 0 ? path.c_str() : "(no path)";
}

// The text that fprint writes.
std::string text_of(const cimple::Instance* instance, bool keys_only = false);

} // namespace demo

#endif
