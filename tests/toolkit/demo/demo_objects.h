// Makers of demo instances and texts of instances, for tests of the library and of the adapter.
#ifndef TESTS_TOOLKIT_DEMO_DEMO_OBJECTS_H
#define TESTS_TOOLKIT_DEMO_DEMO_OBJECTS_H

#include "demo_classes.h"
#include <string>

namespace demo
{

inline cimple::Ref<cimple::Demo_Rack> rack(const char* name)
{
    cimple::Ref<cimple::Demo_Rack> rack(cimple::Demo_Rack::create(true));
    rack->Name.set(name);
    return rack;
}

inline cimple::Ref<cimple::Demo_Sensor> sensor(cimple::uint32 id)
{
    cimple::Ref<cimple::Demo_Sensor> sensor(cimple::Demo_Sensor::create(true));
    sensor->Id.set(id);
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
    link->Antecedent = antecedent;
    link->Dependent = dependent;
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
