// Construction, look-up and texts of the test broker's values.
#include "test_values.h"

#include <cinttypes>
#include <cstdio>
#include <strings.h>

namespace test_broker
{

namespace
{

std::string quoted(const std::string& text)
{
    std::string result = "\"";
    for (char c : text)
    {
        if (c == '"' || c == '\\')
            result += '\\';
        result += c;
    }
    return result + "\"";
}

std::string listOf(const std::vector<Named>& list)
{
    std::string result;
    for (const Named& item : list)
        result += (result.empty() ? "" : ",") + item.first + "=" + textOf(item.second);
    return result;
}

} // namespace

Value Value::nullOf(CMPIType type)
{
    Value value;
    value.type = type;
    return value;
}

Value Value::present(CMPIType type)
{
    Value value = nullOf(type);
    value.null = false;
    return value;
}

Value Value::integer(CMPIType type, CMPIUint64 bits)
{
    switch (type)
    {
#define RETURN_INTEGER(MEMBER, PREFIX)                                                                       \
    case CMPI_##MEMBER:                                                                                      \
        return of(type, &CMPIValue::MEMBER, bits);
        TEST_BROKER_INTEGERS(RETURN_INTEGER)
#undef RETURN_INTEGER
    default:
        return present(type);
    }
}

Value Value::ofText(CMPIType type, std::string x)
{
    Value value = present(type);
    value.text = std::move(x);
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

void set(std::vector<Named>& list, const std::string& name, Value value)
{
    for (Named& item : list)
    {
        if (strcasecmp(item.first.c_str(), name.c_str()) == 0)
        {
            item.second = std::move(value);
            return;
        }
    }
    list.emplace_back(name, std::move(value));
}

const Value* find(const std::vector<Named>& list, const char* name)
{
    for (const Named& item : list)
        if (strcasecmp(item.first.c_str(), name) == 0)
            return &item.second;
    return nullptr;
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
    char text[64] = "?";
    switch (value.type)
    {
    case CMPI_boolean:
        return value.scalar.boolean ? "true" : "false";
    case CMPI_char16:
        snprintf(text, sizeof text, "c:%u", value.scalar.char16);
        break;
#define RETURN_TEXT(MEMBER, PREFIX)                                                                          \
    case CMPI_##MEMBER:                                                                                      \
        return PREFIX + std::to_string(value.scalar.MEMBER);
        TEST_BROKER_INTEGERS(RETURN_TEXT)
#undef RETURN_TEXT
    case CMPI_real32:
        snprintf(text, sizeof text, "r32:%.9g", static_cast<double>(value.scalar.real32));
        break;
    case CMPI_real64:
        snprintf(text, sizeof text, "r64:%.17g", value.scalar.real64);
        break;
    case CMPI_string:
        return quoted(value.text);
    case CMPI_dateTime:
        return "d:" + value.text;
    case CMPI_ref:
        return "<" + textOf(*value.path) + ">";
    case CMPI_instance:
        return textOf(*value.inst);
    default:
        break;
    }
    return text;
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
