// Spelling and typing of requests as the schema declares them.
#include "agent/service/InputCheck.h"

#include "agent/cim/coercion.h"
#include "agent/repository/completion.h"

#include <algorithm>
#include <set>

namespace cimd
{
namespace
{

[[noreturn]] void refuse(const std::string& message)
{
    throw CimError(CimStatus::InvalidParameter, message);
}

bool isKnown(const std::vector<std::string>& nameSpaces, const std::string& name)
{
    return std::any_of(nameSpaces.begin(),
                       nameSpaces.end(),
                       [&](const std::string& known) { return equalNoCase(known, name); });
}

} // namespace

const ClassInfo& InputCheck::classNamed(const CimName& name) const
{
    const ClassInfo* info = _repository.find(name);
    if (!info)
        throw CimError(CimStatus::InvalidClass,
                       "class " + name.str() + " does not exist in namespace " + _nameSpace);
    return *info;
}

const ClassInfo* InputCheck::filterClass(const CimName& name, const char* parameter) const
{
    if (name.empty())
        return nullptr;
    const ClassInfo* info = _repository.find(name);
    if (!info)
        refuse(std::string(parameter) + ": class " + name.str() + " does not exist in namespace " +
               _nameSpace);
    return info;
}

ObjectPath InputCheck::instancePath(const ObjectPath& path, const ClassInfo& info) const
{
    ObjectPath complete = path;
    try
    {
        complete.setHost({});
        complete.setNameSpace(_nameSpace);
        completePath(complete, info, _repository, _nameSpace);
    }
    catch (const ShapeError& error)
    {
        refuse(error.what());
    }
    checkNameSpaces(complete);
    return complete;
}

// Nothing else looks at them: providers compare references without their namespaces.
void InputCheck::checkNameSpaces(const ObjectPath& path) const
{
    if (!isKnown(_nameSpaces, path.nameSpace()))
        throw CimError(CimStatus::NotFound,
                       "there is no " + path.text() + ": namespace " + path.nameSpace() + " does not exist");
    for (const KeyBinding& key : path.keys())
        if (key.value.type() == CimType::Reference && !key.value.isNull())
            checkNameSpaces(key.value.asReference());
}

CimValue
InputCheck::scalar(const CimValue& given, const TypedElement& declared, const std::string& what) const
{
    if (given.isNull())
        return given;
    if (declared.type == CimType::Reference)
    {
        try
        {
            return completeValue(given, declared, _repository, _nameSpace);
        }
        catch (const ShapeError& error)
        {
            refuse(what + ": " + error.what());
        }
    }
    if (isEmbedded(declared.type))
    {
        const Instance& embedded = given.asInstance();
        const ClassInfo* info = _repository.find(embedded.className());
        if (!info)
            refuse(what + ": class " + embedded.className().str() + " does not exist");
        if (!declared.referenceClass.empty() && !info->isA(declared.referenceClass))
            refuse(what + " is an instance of " + info->name().str() + ", not of " +
                   declared.referenceClass.str());
        return CimValue::embedded(declared.type, instance(embedded, *info));
    }
    return given;
}

CimValue InputCheck::value(const CimValue& given, const TypedElement& declared, const std::string& what) const
{
    const auto fitting = conform(given, declared.type, declared.isArray);
    if (!fitting)
        refuse(what + " is " + typeText(declared.type, declared.isArray) + " but was given as " +
               typeText(given.type(), given.isArray()));
    const bool isPlain = declared.type != CimType::Reference && !isEmbedded(declared.type);
    if (fitting->isNull() || isPlain)
        return *fitting;
    if (!declared.isArray)
        return scalar(*fitting, declared, what);
    CimValue::Elements elements;
    for (const CimValue& element : fitting->elements())
        elements.push_back(scalar(element, declared, what));
    return CimValue::array(declared.type, std::move(elements));
}

Instance InputCheck::instance(const Instance& given, const ClassInfo& info) const
{
    Instance checked(info.name());
    for (const Property& property : given.properties())
    {
        const auto index = info.findProperty(property.name.str());
        if (!index)
            refuse("class " + info.name().str() + " has no property " + property.name.str());
        const PropertyDecl& declared = *info.properties()[*index];
        const std::string what = "property " + declared.name.str() + " of class " + info.name().str();
        if (!checked.set(declared.name, value(property.value, declared, what)))
            refuse(what + " is given twice");
    }
    return checked;
}

std::vector<Argument> InputCheck::arguments(const std::vector<Argument>& given,
                                            const MethodDecl& method) const
{
    std::set<CimName> seen;
    std::vector<Argument> checked;
    for (const Argument& argument : given)
    {
        const std::string what = "parameter " + argument.name.str() + " of method " + method.name.str();
        const ParameterDecl* declared = method.findParameter(argument.name);
        if (!declared)
            refuse("method " + method.name.str() + " has no parameter " + argument.name.str());
        if (!declared->isIn())
            refuse(what + " is an output parameter");
        if (!seen.insert(declared->name).second)
            refuse(what + " is given twice");
        const auto read = argument.typed ? std::optional(argument.value)
                                         : readUntyped(argument.value, declared->type, declared->isArray);
        if (!read)
            refuse(what + " is no valid " + typeText(declared->type, declared->isArray));
        checked.push_back({declared->name, value(*read, *declared, what)});
    }
    for (const ParameterDecl& declared : method.parameters)
        if (declared.isIn() && declared.isRequired() && seen.count(declared.name) == 0)
            refuse("parameter " + declared.name.str() + " of method " + method.name.str() + " is required");
    return checked;
}

} // namespace cimd
