// Properties, keys and completion of provider instances.
#include "agent/broker/InstanceObject.h"

#include "agent/cim/CimError.h"
#include "agent/cim/coercion.h"
#include "agent/repository/completion.h"

#include <algorithm>

namespace cimd
{
namespace
{

const std::string kWrong = "the provider's instance is wrong: ";

} // namespace

InstanceObject::InstanceObject(const ClassRepository& classes, const ObjectPath& path)
    : CMPIInstance{this, kTable}, repository(&classes),
      info(currentScope().findClass(path.className().str())),
      _instance(info ? currentScope().blankInstance(*info) : Instance(path.className())),
      _isSet(_instance.properties().size())
{
    _instance.path() = path;
}

InstanceObject::InstanceObject(const ClassRepository& classes, const Instance& source)
    : InstanceObject(classes, source.hasPath() ? source.path() : ObjectPath({}, source.className()))
{
    for (const Property& property : source.properties())
        set(property.name.str(), property.value);
}

InstanceObject::InstanceObject(const InstanceObject& other)
    : CMPIInstance{this, kTable}, Tracked(other), repository(other.repository), info(other.info),
      _instance(other._instance), _isSet(other._isSet), _kept(other._kept), _fault(other._fault)
{
}

InstanceObject::~InstanceObject()
{
    if (!info || !owner())
        return;
    std::vector<Property>& properties = _instance.properties();
    for (std::size_t i = 0; i < properties.size(); ++i)
        if (_isSet[i])
            properties[i].value.clear();
    owner()->keepBlank(*info, std::move(_instance));
}

std::size_t InstanceObject::indexOf(std::string_view name) const
{
    const auto& properties = _instance.properties();
    if (info)
        return info->findProperty(name).value_or(properties.size());
    const auto place = std::find_if(properties.begin(),
                                    properties.end(),
                                    [&](const Property& p) { return equalNoCase(p.name.str(), name); });
    return static_cast<std::size_t>(place - properties.begin());
}

void InstanceObject::set(std::string_view name, CimValue value)
{
    auto& properties = _instance.properties();
    // Most providers go through the properties in one direction and the class's own spelling, and leave some
    // out.
    constexpr std::size_t kAhead = 16;
    const std::size_t end = std::min(_next + kAhead, properties.size());
    while (_next < end && properties[_next].name.str() != name)
        ++_next;
    const std::size_t index = _next < end ? _next : indexOf(name);
    _next = index + 1;
    if (!isKept(index))
        return;
    if (!info)
    {
        _instance.set(index < properties.size() ? properties[index].name : CimName(name), std::move(value));
        _isSet.resize(properties.size(), true);
        return;
    }
    if (index == properties.size())
        throw CmpiError(CMPI_RC_ERR_NO_SUCH_PROPERTY,
                        "class " + info->name().str() + " has no property " + std::string(name));
    if (!value.hasType(properties[index].value.type(), properties[index].value.isArray()))
        value = converted(std::move(value), *info->properties()[index]);
    properties[index].value = std::move(value);
    _isSet[index] = true;
}

CimValue InstanceObject::converted(CimValue value, const PropertyDecl& declared)
{
    const CimType givenType = value.type();
    const bool givenArray = value.isArray();
    auto fitting = conform(std::move(value), declared.type, declared.isArray);
    if (fitting)
        return std::move(*fitting);
    fail(declared.name.str(),
         "was set as " + typeText(givenType, givenArray) + " but is " +
             typeText(declared.type, declared.isArray));
    throw CmpiError(CMPI_RC_ERR_TYPE_MISMATCH, _fault);
}

void InstanceObject::fail(std::string_view name, const std::string& reason)
{
    if (_fault.empty())
        _fault = "class " + _instance.className().str() + ": property " + std::string(name) + ' ' + reason;
}

const Property* InstanceObject::find(std::string_view name) const
{
    const std::size_t index = indexOf(name);
    return index < _isSet.size() && _isSet[index] ? &_instance.properties()[index] : nullptr;
}

const Property* InstanceObject::at(std::size_t index) const
{
    for (std::size_t i = 0; i < _isSet.size(); ++i)
        if (_isSet[i] && index-- == 0)
            return &_instance.properties()[i];
    return nullptr;
}

std::size_t InstanceObject::count() const
{
    return static_cast<std::size_t>(std::count(_isSet.begin(), _isSet.end(), true));
}

void InstanceObject::keepOnly(const char** properties, const char** keys)
{
    _kept.clear();
    if (!properties || !info) // without a class the instance goes nowhere
        return;
    _kept.resize(info->properties().size());
    for (const char** list : {properties, keys})
        for (; list && *list; ++list)
            if (const auto index = info->findProperty(*list))
                _kept[*index] = true;
    auto& all = _instance.properties();
    for (std::size_t i = 0; i < _isSet.size(); ++i)
    {
        if (!_isSet[i] || isKept(i))
            continue;
        _isSet[i] = false;
        all[i].value.clear();
    }
}

void InstanceObject::setPath(ObjectPath path)
{
    if (path.className() != _instance.className())
        throw CmpiError(CMPI_RC_ERR_INVALID_PARAMETER,
                        "a path of class " + path.className().str() + " for an instance of class " +
                            _instance.className().str());
    _instance.setPath(std::move(path));
}

ObjectPath InstanceObject::path() const
{
    ObjectPath result = _instance.path();
    addKeys(result);
    return result;
}

void InstanceObject::addKeys(ObjectPath& path) const
{
    if (!info || path.keys().size() == info->keys().size())
        return;
    for (const PropertyDecl* key : info->keys())
        if (!path.findKey(key->name))
            if (const Property* property = find(key->name.str()); property && !property->value.isNull())
                path.setKey(key->name, property->value);
}

void InstanceObject::checkUsable() const
{
    if (!info)
        throw CimError(CimStatus::Failed,
                       "the provider returned an instance of the unknown class " +
                           _instance.className().str());
    if (!_fault.empty())
        throw CimError(CimStatus::Failed, kWrong + _fault);
}

const Instance& InstanceObject::complete(const std::string& nameSpace)
{
    checkUsable();
    try
    {
        for (const std::size_t index : info->structured())
        {
            CimValue& value = _instance.properties()[index].value;
            value = completeValue(value, *info->properties()[index], *repository, nameSpace);
        }
        ObjectPath& path = _instance.path();
        addKeys(path);
        completePath(path, *info, *repository, nameSpace);
        for (std::size_t i = 0; i < path.keys().size(); ++i)
            completeKey(path.keys()[i], info->keyIndexes()[i]);
    }
    catch (const ShapeError& error)
    {
        throw CimError(CimStatus::Failed, kWrong + error.what());
    }
    return _instance;
}

// A key may be set as a property, in the path, or in both alike.
void InstanceObject::completeKey(const KeyBinding& key, std::size_t index)
{
    CimValue& value = _instance.properties()[index].value;
    if (!value.isNull())
    {
        if (value != key.value)
            throw ShapeError("class " + info->name().str() + ": key property " + key.name.str() +
                             " differs from the path");
    }
    else if (isKept(index))
    {
        value = key.value;
        _isSet[index] = true;
    }
}

Instance InstanceObject::completeWithoutPath(const std::string& nameSpace) const
{
    checkUsable();
    try
    {
        return completeEmbedded(given(), *repository, nameSpace);
    }
    catch (const ShapeError& error)
    {
        throw CimError(CimStatus::Failed, kWrong + error.what());
    }
}

Instance InstanceObject::given() const
{
    Instance result(_instance.className());
    result.setPath(path());
    for (std::size_t i = 0; i < _isSet.size(); ++i)
        if (_isSet[i])
            result.properties().push_back(_instance.properties()[i]);
    return result;
}

} // namespace cimd
