// Comparison of results with their classes.
#include "agent/service/outgoing_check.h"

#include "agent/cim/CimError.h"

namespace cimd
{
namespace
{

[[noreturn]] void fail(const ClassInfo& info, const std::string& what)
{
    throw CimError(CimStatus::Failed, "inconsistent result of class " + info.name().str() + ": " + what);
}

std::string was(const CimValue& value)
{
    return ", not " + typeText(value.type(), value.isArray());
}

} // namespace

void checkOutgoing(const ObjectPath& path, const ClassInfo& info)
{
    if (!path.className().identical(info.name()))
        fail(info, "its path is of class " + path.className().str());
    if (!path.host().empty() || path.nameSpace().empty())
        fail(info, "its path has a host or no namespace: " + path.text());
    if (path.keys().size() != info.keys().size())
        fail(info,
             "its path has " + std::to_string(path.keys().size()) + " of " +
                 std::to_string(info.keys().size()) + " keys");
    for (std::size_t i = 0; i < path.keys().size(); ++i)
    {
        const KeyBinding& key = path.keys()[i];
        const PropertyDecl& declared = *info.keys()[i];
        if (!key.name.identical(declared.name))
            fail(info, "key " + declared.name.str() + " is called " + key.name.str());
        if (!key.value.hasType(declared.type, false))
            fail(info, "key " + key.name.str() + " is " + typeText(declared.type, false) + was(key.value));
    }
}

void checkOutgoing(const Instance& instance, const ClassInfo& info)
{
    if (!instance.className().identical(info.name()))
        fail(info, "it calls itself " + instance.className().str());
    checkOutgoing(instance.path(), info);
    std::size_t next = 0; // in class order, the first property that may come
    for (const Property& property : instance.properties())
    {
        const auto index = info.findProperty(property.name.str());
        if (!index)
            fail(info, "there is no property " + property.name.str());
        const PropertyDecl& declared = *info.properties()[*index];
        const std::string what = "property " + declared.name.str();
        if (!property.name.identical(declared.name))
            fail(info, what + " is called " + property.name.str());
        if (*index < next)
            fail(info, what + " is out of order or there twice");
        next = *index + 1;
        if (!property.value.hasType(declared.type, declared.isArray))
            fail(info, what + " is " + typeText(declared.type, declared.isArray) + was(property.value));
        const CimValue* key = declared.isKey() ? instance.path().findKey(declared.name) : nullptr;
        if (key != nullptr && *key != property.value)
            fail(info, what + " differs from the key of the path " + instance.path().text());
    }
}

} // namespace cimd
