// The name of a class or instance: host, namespace, class and key bindings.
#ifndef AGENT_CIM_OBJECTPATH_H
#define AGENT_CIM_OBJECTPATH_H

#include "agent/cim/CimName.h"
#include "agent/cim/CimValue.h"

#include <string>
#include <utility>
#include <vector>

namespace cimd
{

struct KeyBinding
{
    CimName name;
    CimValue value; // scalar, never NULL
};

// Keys are kept ordered by name (without regard to case), so equal paths have equal texts whoever made them.
// Host and namespace may be empty where the context supplies them; a path without keys names a class (or the
// one instance of a class without keys).
class ObjectPath
{
  public:
    ObjectPath() = default;
    ObjectPath(std::string nameSpace, CimName className)
        : _nameSpace(std::move(nameSpace)), _className(std::move(className))
    {
    }

    const std::string& host() const { return _host; }
    const std::string& nameSpace() const { return _nameSpace; } // without a leading slash
    const CimName& className() const { return _className; }
    const std::vector<KeyBinding>& keys() const { return _keys; }
    std::vector<KeyBinding>& keys() { return _keys; } // to change values and the spelling of names in place

    void setHost(std::string host) { _host = std::move(host); }
    void setNameSpace(std::string nameSpace) { _nameSpace = std::move(nameSpace); }
    void setClassName(CimName className) { _className = std::move(className); }

    // Adds the key or replaces its value (the name keeps its first spelling then); true if it was added.
    bool setKey(const CimName& name, CimValue value);
    // Null pointer if there is no such key.
    const CimValue* findKey(const CimName& name) const;

    // Class, namespace and keys equal; hosts are not compared: they say how the object was reached, not which
    // it is.
    friend bool operator==(const ObjectPath& left, const ObjectPath& right);
    friend bool operator!=(const ObjectPath& left, const ObjectPath& right) { return !(left == right); }

    // For log lines and messages: `root/interop:Class.Key1="a",Key2=3`.
    std::string text() const;

  private:
    std::string _host;
    std::string _nameSpace;
    CimName _className;
    std::vector<KeyBinding> _keys;
};

} // namespace cimd

#endif
