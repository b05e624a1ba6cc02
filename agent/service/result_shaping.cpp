// Selection of properties.
#include "agent/service/result_shaping.h"

#include "agent/service/outgoing_check.h"

namespace cimd
{

void InstanceShaper::instance(const Instance& instance, const ClassInfo& info)
{
    if (!_properties && !_includeClassOrigin && !_visible)
        return put(instance, info);
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
    put(shaped, info);
}

void InstanceShaper::put(const Instance& instance, const ClassInfo& info)
{
    if constexpr (kChecksOutgoing)
        checkOutgoing(instance, info);
    _sink.put(instance);
}

void PathForwarder::path(const ObjectPath& path, const ClassInfo& info)
{
    if constexpr (kChecksOutgoing)
        checkOutgoing(path, info);
    _sink.put(path);
}

} // namespace cimd
