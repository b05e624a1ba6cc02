// One class of the repository with what it inherits resolved.
#ifndef AGENT_REPOSITORY_CLASSINFO_H
#define AGENT_REPOSITORY_CLASSINFO_H

#include "agent/cim/ClassDecl.h"
#include "agent/cim/Instance.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace cimd
{

// Immutable once the repository is loaded; lives as long as the repository. Inherited features are not
// copied: they are the declarations of the superclass that made them.
class ClassInfo
{
  public:
    // Takes over what the class declares itself; every own declaration that overrides an inherited one
    // receives the qualifiers that propagate to it. `superClass` is null for a root class.
    ClassInfo(ClassDecl own, const ClassInfo* superClass);
    ClassInfo(const ClassInfo&) = delete;
    ClassInfo& operator=(const ClassInfo&) = delete;

    const CimName& name() const { return _own.name; }
    const ClassInfo* superClass() const { return _superClass; }
    const std::vector<const ClassInfo*>& subclasses() const
    {
        return _subclasses;
    } // direct ones, in order of loading

    bool isA(const CimName& className) const;
    bool isA(const ClassInfo& other) const;
    bool isAssociation() const { return _isAssociation; }
    bool isIndication() const { return _isIndication; }
    bool isAbstract() const { return _own.isAbstract(); }

    // Inherited properties come first; one that is declared again keeps its place.
    const std::vector<const PropertyDecl*>& properties() const { return _properties; }
    std::optional<std::size_t> findProperty(std::string_view property) const; // index into properties()
    const std::vector<const PropertyDecl*>& keys() const
    {
        return _keys;
    } // ordered by name, as keys of a path are
    // Where keys() are in properties(), in the same order.
    const std::vector<std::size_t>& keyIndexes() const { return _keyIndexes; }
    const std::vector<const PropertyDecl*>& references() const { return _references; }
    // Indexes of the properties whose values have a class of their own: references and embedded instances.
    const std::vector<std::size_t>& structured() const { return _structured; }

    const std::vector<const MethodDecl*>& methods() const { return _methods; }
    const MethodDecl* findMethod(const CimName& method) const;

    // Every property in class order, NULL: where the properties of an instance are filled in.
    std::vector<Property> blank() const;
    // The same for the keys of a path.
    std::vector<KeyBinding> blankKeys() const;

    // What a client sees of the class: its own and, unless `localOnly`, its inherited features with the
    // qualifiers that reach it.
    struct View
    {
        bool localOnly = false;
        bool includeQualifiers = true;
        bool includeClassOrigin = true;
    };
    ClassDecl describe(const View& view, const PropertyList& properties) const;

  private:
    friend class ClassRepository;

    bool declares(const PropertyDecl& property) const;
    bool declares(const MethodDecl& method) const;
    void index();

    ClassDecl _own;
    const ClassInfo* _superClass;
    std::vector<const ClassInfo*> _subclasses;
    std::vector<const PropertyDecl*> _properties;
    std::vector<std::size_t> _byName; // indexes of _properties ordered by property name
    std::vector<const PropertyDecl*> _keys;
    std::vector<std::size_t> _keyIndexes;
    std::vector<const PropertyDecl*> _references;
    std::vector<std::size_t> _structured;
    std::vector<const MethodDecl*> _methods;
    bool _isAssociation = false;
    bool _isIndication = false;
};

} // namespace cimd

#endif
