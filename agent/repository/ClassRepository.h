// All classes and qualifier declarations the agent knows, loaded once at start.
#ifndef AGENT_REPOSITORY_CLASSREPOSITORY_H
#define AGENT_REPOSITORY_CLASSREPOSITORY_H

#include "agent/cim/ClassDecl.h"
#include "agent/repository/ClassInfo.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cimd
{

// What is wrong with a repository file: "file:line: class X: reason".
class RepositoryError : public std::runtime_error
{
  public:
    using std::runtime_error::runtime_error;
};

// Immutable after loading, so any thread may read it.
class ClassRepository
{
  public:
    // Reads DSP0201 declarations: CIM/DECLARATION/DECLGROUP with QUALIFIER.DECLARATION and CLASS elements,
    // each class after its superclass and with its own declarations only. RepositoryError if that cannot be
    // done.
    static ClassRepository load(const std::string& file);
    // The same from a text; `name` stands for the file in messages.
    static ClassRepository parse(std::string_view text, const std::string& name);

    // Null pointer if there is no such class.
    const ClassInfo* find(const CimName& className) const;
    const std::vector<std::unique_ptr<ClassInfo>>& classes() const { return _classes; } // superclasses first

    const QualifierDecl* findQualifier(const CimName& qualifier) const;
    const std::vector<QualifierDecl>& qualifiers() const { return _qualifiers; }

    // The class itself and everything below it, superclasses first.
    static std::vector<const ClassInfo*> family(const ClassInfo& root);

    void addQualifier(QualifierDecl decl);
    // RepositoryError without a place if the class is known already, its superclass is not, or a declaration
    // does not fit the one it overrides.
    void addClass(ClassDecl decl);

  private:
    std::vector<std::unique_ptr<ClassInfo>> _classes;
    std::unordered_map<CimName, ClassInfo*> _byName;
    std::vector<QualifierDecl> _qualifiers;
};

} // namespace cimd

#endif
