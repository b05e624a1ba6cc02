// Checks and spelling of paths against their classes.
#include "agent/repository/completion.h"

#include "agent/cim/coercion.h"

#include <algorithm>
#include <utility>

namespace cimd
{
namespace
{

[[noreturn]] void fail(const ClassInfo& info, const std::string& reason)
{
    throw ShapeError("class " + info.name().str() + ": " + reason);
}

// Keys of a path and of a class are both ordered by name.
[[noreturn]] void reportKeyNames(const ObjectPath& path, const ClassInfo& info)
{
    for (const PropertyDecl* key : info.keys())
        if (!path.findKey(key->name))
            fail(info, "key " + key->name.str() + " is missing");
    for (const KeyBinding& binding : path.keys())
    {
        const auto isDeclared = [&](const PropertyDecl* key) { return key->name == binding.name; };
        if (std::none_of(info.keys().begin(), info.keys().end(), isDeclared))
            fail(info, binding.name.str() + " is no key of the class");
    }
    fail(info, "the keys do not fit the class");
}

bool isComplete(const ObjectPath& path, const ClassRepository& repository)
{
    const ClassInfo* info = repository.find(path.className());
    if (path.nameSpace().empty())
        return false;
    if (!info)
        return true;
    if (!path.host().empty() || !info->name().identical(path.className()) ||
        path.keys().size() != info->keys().size())
        return false;
    for (std::size_t i = 0; i < path.keys().size(); ++i)
    {
        const KeyBinding& binding = path.keys()[i];
        const PropertyDecl& key = *info->keys()[i];
        if (!key.name.identical(binding.name) || !binding.value.hasType(key.type, false) ||
            key.type == CimType::Reference)
            return false;
    }
    return true;
}

// Only where both classes are known.
void checkClass(const ClassInfo* info,
                const CimName& declared,
                const ClassRepository& repository,
                const char* what)
{
    if (info && repository.find(declared) && !info->isA(declared))
        throw ShapeError(std::string(what) + ' ' + info->name().str() + " stands where " + declared.str() +
                         " is declared");
}

CimValue completeReference(const CimValue& value,
                           const CimName& declaredClass,
                           const ClassRepository& repository,
                           const std::string& nameSpace)
{
    const ObjectPath& given = value.asReference();
    const ClassInfo* info = repository.find(given.className());
    checkClass(info, declaredClass, repository, "a reference to");
    if (isComplete(given, repository))
        return value;
    ObjectPath path = given;
    if (info)
        completePath(path, *info, repository, nameSpace);
    else
        path.setNameSpace(nameSpace);
    return CimValue::reference(std::move(path));
}

} // namespace

void completePath(ObjectPath& path,
                  const ClassInfo& info,
                  const ClassRepository& repository,
                  const std::string& nameSpace)
{
    if (!path.host().empty())
        path.setHost({});
    if (!path.className().shares(info.name()))
        path.setClassName(info.name());
    if (path.nameSpace().empty())
        path.setNameSpace(nameSpace);
    if (path.keys().size() != info.keys().size())
        reportKeyNames(path, info);
    for (std::size_t i = 0; i < info.keys().size(); ++i)
    {
        const PropertyDecl& key = *info.keys()[i];
        KeyBinding& binding = path.keys()[i];
        if (binding.name != key.name)
            reportKeyNames(path, info);
        binding.name = key.name;
        if (!binding.value.hasType(key.type, false))
        {
            auto value = coerceKey(binding.value, key.type);
            if (!value)
                fail(info, "key " + key.name.str() + " is no valid " + typeText(key.type, false));
            binding.value = std::move(*value);
        }
        if (key.type == CimType::Reference)
            binding.value = completeValue(binding.value, key, repository, nameSpace);
    }
}

CimValue completeValue(const CimValue& value,
                       const TypedElement& declared,
                       const ClassRepository& repository,
                       const std::string& nameSpace)
{
    if (value.isNull() || !(declared.type == CimType::Reference || isEmbedded(declared.type)))
        return value;
    if (value.isArray())
    {
        CimValue::Elements elements;
        for (const CimValue& element : value.elements())
            elements.push_back(completeValue(element, declared, repository, nameSpace));
        return CimValue::array(declared.type, std::move(elements));
    }
    if (declared.type == CimType::Reference)
        return completeReference(value, declared.referenceClass, repository, nameSpace);
    Instance embedded = completeEmbedded(value.asInstance(), repository, nameSpace);
    if (!declared.referenceClass.empty())
        checkClass(
            repository.find(embedded.className()), declared.referenceClass, repository, "an instance of");
    return CimValue::embedded(declared.type, std::move(embedded));
}

Instance
completeEmbedded(const Instance& given, const ClassRepository& repository, const std::string& nameSpace)
{
    const ClassInfo* info = repository.find(given.className());
    if (!info)
        throw ShapeError("class " + given.className().str() + " of an embedded instance is unknown");
    Instance result(info->name());
    result.properties() = info->blank();
    for (const Property& property : given.properties())
    {
        const auto index = info->findProperty(property.name.str());
        if (!index)
            fail(*info, "there is no property " + property.name.str());
        const PropertyDecl& declared = *info->properties()[*index];
        auto fitting = conform(property.value, declared.type, declared.isArray);
        if (!fitting)
            fail(*info,
                 "property " + declared.name.str() + " is " + typeText(declared.type, declared.isArray) +
                     ", not " + typeText(property.value.type(), property.value.isArray()));
        result.properties()[*index].value = completeValue(*fitting, declared, repository, nameSpace);
    }
    return result;
}

} // namespace cimd
