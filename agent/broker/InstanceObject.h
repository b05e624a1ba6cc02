// An instance in the hands of a provider.
#ifndef AGENT_BROKER_INSTANCEOBJECT_H
#define AGENT_BROKER_INSTANCEOBJECT_H

#include "agent/broker/objects.h"

namespace cimd
{

// Properties of a known class stand in class order from the start, so that a complete instance needs no
// sorting and no second copy. Mistakes of the provider that a table function can only report with a code
// nobody may look at are kept here and end the operation when the instance is returned.
struct InstanceObject : CMPIInstance, Tracked
{
    using Handle = CMPIInstance;
    static constexpr const CMPIInstanceFT* kTable = &kInstanceTable;

    // An empty instance of the path's class.
    InstanceObject(const ClassRepository& classes, const ObjectPath& path);
    // One with the properties of a given instance; CmpiError if one does not fit the class.
    InstanceObject(const ClassRepository& classes, const Instance& source);
    InstanceObject(const InstanceObject& other);
    ~InstanceObject() override;

    // CmpiError if the class lacks the property or the value is of another type.
    void set(std::string_view name, CimValue value);
    // Keeps why a value for a property could not even be read; the first reason is told.
    void fail(std::string_view name, const std::string& reason);
    // Properties the class has but nobody set are not there.
    const Property* find(std::string_view name) const;
    const Property* at(std::size_t index) const;
    std::size_t count() const;

    void keepOnly(const char** properties, const char** keys);
    void setPath(ObjectPath path);
    // The path with the keys that were only set as properties.
    ObjectPath path() const;

    // Makes path and key properties agree, spells everything as declared and gives the whole instance.
    // CimError if the instance is not one of its class.
    const Instance& complete(const std::string& nameSpace);
    // The same for an instance that is embedded in something and needs no path.
    Instance completeWithoutPath(const std::string& nameSpace) const;
    // The properties that were set, as an instance without the rest.
    Instance given() const;

    const ClassRepository* repository;
    const ClassInfo* info; // null if the repository does not know the class

  private:
    std::size_t indexOf(std::string_view name) const; // of an existing property, or the number of properties
    bool isKept(std::size_t index) const { return _kept.empty() || (index < _kept.size() && _kept[index]); }
    // The value as the declaration has it; CmpiError if it does not fit.
    CimValue converted(CimValue value, const PropertyDecl& declared);
    void checkUsable() const;
    void addKeys(ObjectPath& path) const;
    void completeKey(const KeyBinding& key, std::size_t index);

    Instance _instance;
    std::vector<bool> _isSet;
    std::size_t _next = 0;   // behind the property that was set last
    std::vector<bool> _kept; // what setPropertyFilter allows, by index; empty for everything
    std::string _fault;
};

} // namespace cimd

#endif
