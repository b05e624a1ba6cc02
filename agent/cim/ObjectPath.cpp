// Ordered keys, comparison and text of object paths.
#include "agent/cim/ObjectPath.h"

#include "agent/cim/value_text.h"

#include <algorithm>

namespace cimd
{
namespace
{

auto position(const std::vector<KeyBinding>& keys, const CimName& name)
{
    return std::lower_bound(keys.begin(),
                            keys.end(),
                            name,
                            [](const KeyBinding& key, const CimName& wanted) { return key.name < wanted; });
}

void appendQuoted(std::string& out, std::string_view text)
{
    out += '"';
    for (const char c : text)
    {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    out += '"';
}

void appendKeyValue(std::string& out, const CimValue& value)
{
    if (value.isNull() || value.isArray() || isEmbedded(value.type()))
        out += '?';
    else if (value.type() == CimType::Reference)
        appendQuoted(out, value.asReference().text());
    else if (value.type() == CimType::String)
        appendQuoted(out, value.asString());
    else
        appendText(out, value);
}

} // namespace

bool ObjectPath::setKey(const CimName& name, CimValue value)
{
    const auto offset = position(_keys, name) - _keys.cbegin();
    const auto place = _keys.begin() + offset;
    if (place != _keys.end() && place->name == name)
    {
        place->value = std::move(value);
        return false;
    }
    _keys.insert(place, KeyBinding{name, std::move(value)});
    return true;
}

const CimValue* ObjectPath::findKey(const CimName& name) const
{
    const auto place = position(_keys, name);
    return place != _keys.end() && place->name == name ? &place->value : nullptr;
}

bool operator==(const ObjectPath& left, const ObjectPath& right)
{
    return left._className == right._className && equalNoCase(left._nameSpace, right._nameSpace) &&
           std::equal(left._keys.begin(),
                      left._keys.end(),
                      right._keys.begin(),
                      right._keys.end(),
                      [](const KeyBinding& a, const KeyBinding& b)
                      { return a.name == b.name && a.value == b.value; });
}

std::string ObjectPath::text() const
{
    std::string out;
    if (!_host.empty())
        out.append("//").append(_host).append(1, '/');
    if (!_nameSpace.empty())
        out.append(_nameSpace).append(1, ':');
    out += _className.str();
    char separator = '.';
    for (const KeyBinding& key : _keys)
    {
        out.append(1, separator).append(key.name.str()).append(1, '=');
        appendKeyValue(out, key.value);
        separator = ',';
    }
    return out;
}

} // namespace cimd
