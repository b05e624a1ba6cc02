// Construction, look-up and texts of the test broker's values.
#include "test_values.h"

#include <sstream>
#include <strings.h>

namespace test_broker
{

namespace
{

std::string listOf(const std::vector<Named>& list)
{
    std::string result;
    for (const Named& item : list)
        if (!item.second.null)
            result += (result.empty() ? "" : ",") + item.first + "=" + textOf(item.second);
    return result;
}

template <class X>
std::string numberText(const char* prefix, X x)
{
    std::ostringstream text;
    text.precision(17);
    text << prefix << +x;
    return text.str();
}

} // namespace

Value Value::nullOf(CMPIType type)
{
    Value value;
    value.type = type;
    return value;
}

Value Value::present(CMPIType type, std::string text)
{
    Value value = nullOf(type);
    value.null = false;
    value.text = std::move(text);
    return value;
}

Value Value::boolean(bool x)
{
    Value value = present(CMPI_boolean);
    value.scalar.boolean = x;
    return value;
}

Value Value::ref(Path x)
{
    Value value = present(CMPI_ref);
    value.path = std::make_shared<const Path>(std::move(x));
    return value;
}

Value Value::instance(Inst x)
{
    Value value = present(CMPI_instance);
    value.inst = std::make_shared<const Inst>(std::move(x));
    return value;
}

Value Value::array(CMPIType elementType, std::vector<Value> x)
{
    Value value = present(static_cast<CMPIType>(elementType | CMPI_ARRAY));
    value.elements = std::move(x);
    return value;
}

const Value* find(const std::vector<Named>& list, const char* name)
{
    for (const Named& item : list)
        if (strcasecmp(item.first.c_str(), name) == 0)
            return &item.second;
    return nullptr;
}

void set(std::vector<Named>& list, const std::string& name, Value value)
{
    if (const Value* old = find(list, name.c_str()))
        *const_cast<Value*>(old) = std::move(value);
    else
        list.emplace_back(name, std::move(value));
}

std::string textOf(const Value& value)
{
    if (value.null)
        return "null";
    if (value.type & CMPI_ARRAY)
    {
        std::string result;
        for (const Value& element : value.elements)
            result += (result.empty() ? "" : ",") + textOf(element);
        return "[" + result + "]";
    }
    switch (value.type)
    {
    case CMPI_boolean:
        return value.scalar.boolean ? "true" : "false";
    case CMPI_string:
        return "\"" + value.text + "\"";
    case CMPI_dateTime:
        return "d:" + value.text;
    case CMPI_ref:
        return "<" + textOf(*value.path) + ">";
    case CMPI_instance:
        return textOf(*value.inst);
#define RETURN_TEXT(MEMBER, PREFIX)                                                                          \
    case CMPI_##MEMBER:                                                                                      \
        return numberText(PREFIX, value.scalar.MEMBER);
        TEST_BROKER_NUMBERS(RETURN_TEXT)
#undef RETURN_TEXT
    default:
        return "?";
    }
}

std::string textOf(const Path& path)
{
    return path.ns + ":" + path.className + (path.keys.empty() ? "" : ".") + listOf(path.keys);
}

std::string textOf(const Inst& inst)
{
    return inst.path.className + "{" + listOf(inst.properties) + "}";
}

} // namespace test_broker
