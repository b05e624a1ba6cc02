// Selection of properties.
#include "agent/service/ResultShaping.h"

namespace cimd
{

void InstanceShaper::instance(const Instance& instance, const ClassInfo& info)
{
    if (!_properties && !_includeClassOrigin && !_visible)
    {
        _sink.put(instance);
        return;
    }
    Instance shaped(instance.className());
    shaped.setPath(instance.path());
    for (std::size_t i = 0; i < instance.properties().size(); ++i)
    {
        const Property& property = instance.properties()[i];
        if (!isListed(_properties, property.name) ||
            (_visible && !_visible->findProperty(property.name.str())))
            continue;
        shaped.properties().push_back(property);
        if (_includeClassOrigin)
            shaped.properties().back().classOrigin = info.properties()[i]->classOrigin;
    }
    _sink.put(shaped);
}

} // namespace cimd
