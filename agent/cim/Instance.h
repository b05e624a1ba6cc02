// An instance of a CIM class: its path and its properties by name.
#ifndef AGENT_CIM_INSTANCE_H
#define AGENT_CIM_INSTANCE_H

#include "agent/cim/CimName.h"
#include "agent/cim/CimValue.h"
#include "agent/cim/ObjectPath.h"

#include <utility>
#include <vector>

namespace cimd
{

struct Property
{
    CimName name;
    CimValue value;
    CimName classOrigin; // class that declares the property; empty when it was not asked for
};

// Properties keep the order they were added in; what the service returns is in class order. The path is empty
// (no class name) for an instance that has none, such as one about to be created or an embedded one.
class Instance
{
  public:
    Instance() = default;
    explicit Instance(CimName className) : _className(std::move(className)) {}

    const CimName& className() const { return _className; }
    void setClassName(CimName className) { _className = std::move(className); }

    const ObjectPath& path() const { return _path; }
    ObjectPath& path() { return _path; }
    bool hasPath() const { return !_path.className().empty(); }
    void setPath(ObjectPath path) { _path = std::move(path); }

    const std::vector<Property>& properties() const { return _properties; }
    std::vector<Property>& properties() { return _properties; }

    // Adds the property or replaces its value; true if it was added.
    bool set(const CimName& name, CimValue value);
    // Null pointer if there is no such property.
    const CimValue* find(const CimName& name) const;

    // Class, path and the same properties with the same values, in any order. Class origins are not compared.
    friend bool operator==(const Instance& left, const Instance& right);
    friend bool operator!=(const Instance& left, const Instance& right) { return !(left == right); }

  private:
    CimName _className;
    ObjectPath _path;
    std::vector<Property> _properties;
};

} // namespace cimd

#endif
