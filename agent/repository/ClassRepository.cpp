// Building and searching the class repository.
#include "agent/repository/ClassRepository.h"

#include "agent/repository/repository_reader.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <unordered_set>

namespace cimd
{
namespace
{

void checkFeatureNames(const ClassDecl& decl)
{
    std::unordered_set<CimName> names;
    for (const PropertyDecl& property : decl.properties)
        if (!names.insert(property.name).second)
            throw RepositoryError("property " + property.name.str() + " is declared twice");
    names.clear();
    for (const MethodDecl& method : decl.methods)
        if (!names.insert(method.name).second)
            throw RepositoryError("method " + method.name.str() + " is declared twice");
}

void checkOverrides(const ClassDecl& decl, const ClassInfo& superClass)
{
    for (const PropertyDecl& property : decl.properties)
    {
        const auto index = superClass.findProperty(property.name.str());
        if (!index)
            continue;
        const PropertyDecl& above = *superClass.properties()[*index];
        if (above.type != property.type || above.isArray != property.isArray)
            throw RepositoryError("property " + property.name.str() + " is " +
                                  typeText(property.type, property.isArray) + " but " +
                                  typeText(above.type, above.isArray) + " in " + above.classOrigin.str());
    }
}

} // namespace

ClassRepository ClassRepository::load(const std::string& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw RepositoryError(file + ": cannot be opened for reading");
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (stream.bad())
        throw RepositoryError(file + ": cannot be read");
    return parse(text, file);
}

ClassRepository ClassRepository::parse(std::string_view text, const std::string& name)
{
    ClassRepository repository;
    readRepository(repository, text, name);
    return repository;
}

const ClassInfo* ClassRepository::find(const CimName& className) const
{
    const auto place = _byName.find(className);
    return place == _byName.end() ? nullptr : place->second;
}

const QualifierDecl* ClassRepository::findQualifier(const CimName& qualifier) const
{
    const auto place = std::find_if(_qualifiers.begin(),
                                    _qualifiers.end(),
                                    [&](const QualifierDecl& decl) { return decl.name == qualifier; });
    return place == _qualifiers.end() ? nullptr : &*place;
}

std::vector<const ClassInfo*> ClassRepository::family(const ClassInfo& root)
{
    std::vector<const ClassInfo*> all{&root};
    for (std::size_t i = 0; i < all.size(); ++i)
        all.insert(all.end(), all[i]->subclasses().begin(), all[i]->subclasses().end());
    return all;
}

void ClassRepository::addQualifier(QualifierDecl decl)
{
    if (findQualifier(decl.name))
        throw RepositoryError("qualifier " + decl.name.str() + " is declared twice");
    _qualifiers.push_back(std::move(decl));
}

void ClassRepository::addClass(ClassDecl decl)
{
    if (find(decl.name))
        throw RepositoryError("declared twice");
    checkFeatureNames(decl);
    ClassInfo* superClass = nullptr;
    if (!decl.superClass.empty())
    {
        const auto place = _byName.find(decl.superClass);
        if (place == _byName.end())
            throw RepositoryError("superclass " + decl.superClass.str() + " is not declared before it");
        superClass = place->second;
        decl.superClass = superClass->name();
        checkOverrides(decl, *superClass);
    }
    auto info = std::make_unique<ClassInfo>(std::move(decl), superClass);
    if (superClass)
        superClass->_subclasses.push_back(info.get());
    _byName.emplace(info->name(), info.get());
    _classes.push_back(std::move(info));
}

} // namespace cimd
