// Property access and comparison of instances.
#include "agent/cim/Instance.h"

#include <algorithm>

namespace cimd
{

bool Instance::set(const CimName& name, CimValue value)
{
    const auto place = std::find_if(
        _properties.begin(), _properties.end(), [&](const Property& p) { return p.name == name; });
    if (place != _properties.end())
    {
        place->value = std::move(value);
        return false;
    }
    _properties.push_back({name, std::move(value), {}});
    return true;
}

const CimValue* Instance::find(const CimName& name) const
{
    const auto place = std::find_if(
        _properties.begin(), _properties.end(), [&](const Property& p) { return p.name == name; });
    return place == _properties.end() ? nullptr : &place->value;
}

bool operator==(const Instance& left, const Instance& right)
{
    return left._className == right._className && left._path == right._path &&
           left._properties.size() == right._properties.size() &&
           std::all_of(left._properties.begin(),
                       left._properties.end(),
                       [&](const Property& property)
                       {
                           const CimValue* other = right.find(property.name);
                           return other && *other == property.value;
                       });
}

} // namespace cimd
