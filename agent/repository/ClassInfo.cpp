// Inheritance of properties, methods and qualifiers.
#include "agent/repository/ClassInfo.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <utility>

namespace cimd
{
namespace
{

// Adds the qualifiers of an inherited declaration that reach a subclass and are not given again there.
void inheritQualifiers(Qualifiers& own, const Qualifiers& inherited)
{
    for (const Qualifier& qualifier : inherited)
    {
        if (!qualifier.flavor.toSubclass || findQualifier(own, qualifier.name))
            continue;
        own.push_back(qualifier);
        own.back().propagated = true;
    }
    own.shrink_to_fit();
}

void inheritParameterQualifiers(MethodDecl& own, const MethodDecl& inherited)
{
    for (ParameterDecl& parameter : own.parameters)
        if (const ParameterDecl* above = inherited.findParameter(parameter.name))
            inheritQualifiers(parameter.qualifiers, above->qualifiers);
}

// Own declarations take the place of inherited ones of the same name, the others follow. `refine` completes
// an own declaration from the one it overrides.
template <class Decl, class Refine>
std::vector<const Decl*> merge(std::vector<Decl>& own,
                               const std::vector<const Decl*>& inherited,
                               const CimName& className,
                               Refine refine)
{
    std::vector<const Decl*> all = inherited;
    all.reserve(inherited.size() + own.size());
    for (Decl& decl : own)
    {
        const auto above =
            std::find_if(all.begin(), all.end(), [&](const Decl* other) { return other->name == decl.name; });
        if (above == all.end())
        {
            decl.classOrigin = className;
            all.push_back(&decl);
            continue;
        }
        decl.classOrigin = (*above)->classOrigin;
        refine(decl, **above);
        *above = &decl;
    }
    return all;
}

template <class Decl>
bool isOneOf(const std::vector<Decl>& decls, const Decl& decl)
{
    return std::any_of(decls.begin(), decls.end(), [&](const Decl& other) { return &other == &decl; });
}

// Keeps only the qualifiers that a class shows: none, its own ones, or with the inherited ones.
void showQualifiers(Qualifiers& qualifiers, const ClassInfo::View& view, bool isInherited)
{
    if (!view.includeQualifiers)
    {
        qualifiers.clear();
        return;
    }
    const auto isHidden = [&](const Qualifier& qualifier)
    { return isInherited ? !qualifier.flavor.toSubclass : view.localOnly && qualifier.propagated; };
    qualifiers.erase(std::remove_if(qualifiers.begin(), qualifiers.end(), isHidden), qualifiers.end());
    if (isInherited)
        for (Qualifier& qualifier : qualifiers)
            qualifier.propagated = true;
}

template <class Decl>
Decl show(const Decl& decl, const ClassInfo::View& view, bool isInherited)
{
    Decl shown = decl;
    shown.propagated = isInherited;
    if (!view.includeClassOrigin)
        shown.classOrigin = {};
    showQualifiers(shown.qualifiers, view, isInherited);
    return shown;
}

} // namespace

ClassInfo::ClassInfo(ClassDecl own, const ClassInfo* superClass)
    : _own(std::move(own)), _superClass(superClass)
{
    static const std::vector<const PropertyDecl*> kNoProperties;
    static const std::vector<const MethodDecl*> kNoMethods;
    if (_superClass)
        inheritQualifiers(_own.qualifiers, _superClass->_own.qualifiers);
    _properties = merge(_own.properties,
                        _superClass ? _superClass->_properties : kNoProperties,
                        _own.name,
                        [](PropertyDecl& decl, const PropertyDecl& above)
                        {
                            inheritQualifiers(decl.qualifiers, above.qualifiers);
                            if (decl.defaultValue.isNull())
                                decl.defaultValue = above.defaultValue;
                        });
    _methods = merge(_own.methods,
                     _superClass ? _superClass->_methods : kNoMethods,
                     _own.name,
                     [](MethodDecl& decl, const MethodDecl& above)
                     {
                         inheritQualifiers(decl.qualifiers, above.qualifiers);
                         inheritParameterQualifiers(decl, above);
                     });
    _isAssociation = _own.isAssociation();
    _isIndication = _own.isIndication();
    index();
}

void ClassInfo::index()
{
    _byName.resize(_properties.size());
    std::iota(_byName.begin(), _byName.end(), std::size_t{0});
    std::sort(_byName.begin(),
              _byName.end(),
              [this](std::size_t a, std::size_t b) { return _properties[a]->name < _properties[b]->name; });
    for (std::size_t i = 0; i < _properties.size(); ++i)
    {
        const PropertyDecl* property = _properties[i];
        if (property->isKey())
            _keys.push_back(property);
        if (property->type == CimType::Reference)
            _references.push_back(property);
        if (property->type == CimType::Reference || isEmbedded(property->type))
            _structured.push_back(i);
    }
    std::sort(_keys.begin(),
              _keys.end(),
              [](const PropertyDecl* a, const PropertyDecl* b) { return a->name < b->name; });
    for (const PropertyDecl* key : _keys)
        _keyIndexes.push_back(*findProperty(key->name.str()));
}

std::vector<Property> ClassInfo::blank() const
{
    std::vector<Property> blank;
    blank.reserve(_properties.size());
    for (const PropertyDecl* property : _properties)
        blank.push_back({property->name, CimValue::null(property->type, property->isArray), {}});
    return blank;
}

std::vector<KeyBinding> ClassInfo::blankKeys() const
{
    std::vector<KeyBinding> blank;
    blank.reserve(_keys.size());
    for (const PropertyDecl* key : _keys)
        blank.push_back({key->name, CimValue::null(key->type)});
    return blank;
}

bool ClassInfo::isA(const CimName& className) const
{
    for (const ClassInfo* info = this; info; info = info->_superClass)
        if (info->name() == className)
            return true;
    return false;
}

bool ClassInfo::isA(const ClassInfo& other) const
{
    for (const ClassInfo* info = this; info; info = info->_superClass)
        if (info == &other)
            return true;
    return false;
}

std::optional<std::size_t> ClassInfo::findProperty(std::string_view property) const
{
    const auto place = std::lower_bound(_byName.begin(),
                                        _byName.end(),
                                        property,
                                        [this](std::size_t i, std::string_view name)
                                        { return compareNoCase(_properties[i]->name.str(), name) < 0; });
    if (place == _byName.end() || !equalNoCase(_properties[*place]->name.str(), property))
        return std::nullopt;
    return *place;
}

const MethodDecl* ClassInfo::findMethod(const CimName& method) const
{
    const auto place = std::find_if(
        _methods.begin(), _methods.end(), [&](const MethodDecl* decl) { return decl->name == method; });
    return place == _methods.end() ? nullptr : *place;
}

bool ClassInfo::declares(const PropertyDecl& property) const
{
    return isOneOf(_own.properties, property);
}

bool ClassInfo::declares(const MethodDecl& method) const
{
    return isOneOf(_own.methods, method);
}

ClassDecl ClassInfo::describe(const View& view, const PropertyList& properties) const
{
    ClassDecl result;
    result.name = _own.name;
    result.superClass = _own.superClass;
    result.qualifiers = _own.qualifiers;
    showQualifiers(result.qualifiers, view, false);
    for (const PropertyDecl* property : _properties)
    {
        const bool isInherited = !declares(*property);
        if (!(view.localOnly && isInherited) && isListed(properties, property->name))
            result.properties.push_back(show(*property, view, isInherited));
    }
    for (const MethodDecl* method : _methods)
    {
        const bool isInherited = !declares(*method);
        if (view.localOnly && isInherited)
            continue;
        result.methods.push_back(show(*method, view, isInherited));
        for (ParameterDecl& parameter : result.methods.back().parameters)
            showQualifiers(parameter.qualifiers, view, isInherited);
    }
    return result;
}

} // namespace cimd
