// A path in the hands of a provider.
#include "agent/broker/objects.h"

#include <algorithm>

namespace cimd
{

ObjectPathObject::ObjectPathObject(const char* nameSpace, std::string_view className)
    : CMPIObjectPath{this, kTable}
{
    CallScope& scope = currentScope();
    _keysOf = scope.findClass(className);
    const bool isSpelled = _keysOf && _keysOf->name().str() == className;
    _path = ObjectPath(nameSpace, isSpelled ? _keysOf->name() : CimName(className));
    if (!_keysOf)
        return;
    _path.keys() = scope.blankKeys(*_keysOf);
    _unset = _path.keys().size();
}

// A clone may be read by several threads, so nothing is left for path() to do.
ObjectPathObject::ObjectPathObject(const ObjectPathObject& other)
    : CMPIObjectPath{this, kTable}, Tracked(other), _path(other._path), _keysOf(other._keysOf),
      _unset(other._unset)
{
    path();
}

ObjectPathObject::~ObjectPathObject()
{
    std::vector<KeyBinding>& keys = _path.keys();
    if (!owner() || !_keysOf || keys.size() != _keysOf->keys().size())
        return;
    for (KeyBinding& key : keys)
        key.value.clear();
    owner()->keepBlank(*_keysOf, std::move(keys));
}

ObjectPath& ObjectPathObject::path()
{
    if (_unset != 0)
    {
        std::vector<KeyBinding>& keys = _path.keys();
        keys.erase(std::remove_if(
                       keys.begin(), keys.end(), [](const KeyBinding& key) { return key.value.isNull(); }),
                   keys.end());
        _unset = 0;
        _keysOf = nullptr;
    }
    return _path;
}

void ObjectPathObject::setKey(std::string_view name, CimValue value)
{
    if (_keysOf)
        for (KeyBinding& key : _path.keys())
            if (key.name.str() == name)
            {
                if (key.value.isNull())
                    --_unset;
                key.value = std::move(value);
                return;
            }
    path().setKey(CimName(name), std::move(value));
}

} // namespace cimd
