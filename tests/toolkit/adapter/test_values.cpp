// Reading and writing of the test broker's values.
#include "test_values.h"

#include <cstring>
#include <sstream>
#include <strings.h>

namespace test_broker
{

namespace
{

// clang-format off
#define FOR_EACH_NUMBER(X) \
    X(uint8, "u8") X(uint16, "u16") X(uint32, "u32") X(uint64, "u64") \
    X(sint8, "s8") X(sint16, "s16") X(sint32, "s32") X(sint64, "s64") \
    X(char16, "c") X(real32, "r32") X(real64, "r64")
#define FOR_EACH_OTHER(X) \
    X(boolean, "bool") X(string, "string") X(dateTime, "d") X(ref, "ref") X(instance, "instance")
// clang-format on

template <class X>
void readNumber(const char* digits, X& x)
{
    if constexpr (std::is_floating_point_v<X>)
        x = static_cast<X>(strtod(digits, nullptr));
    else if (*digits == '-')
        x = static_cast<X>(strtoll(digits, nullptr, 10));
    else
        x = static_cast<X>(strtoull(digits, nullptr, 10));
}

} // namespace

std::vector<std::string> split(const std::string& list)
{
    std::vector<std::string> parts(list.empty() ? 0 : 1);
    bool inText = false;
    int depth = 0;
    for (size_t i = 0; i < list.size(); i++)
    {
        const char c = list[i];
        if (c == '"')
            inText = !inText;
        if (!inText)
            depth += (strchr("[{<", c) != nullptr) - (strchr("]}>", c) != nullptr);
        if (c == ',' && !inText && depth == 0)
            parts.emplace_back();
        else
            parts.back() += c;
        if (c == '\\')
            parts.back() += list[++i];
    }
    return parts;
}

std::vector<Named> named(const std::string& list)
{
    std::vector<Named> items;
    for (const std::string& part : split(list))
        items.emplace_back(part.substr(0, part.find('=')), part.substr(part.find('=') + 1));
    return items;
}

std::string listOf(const std::vector<Named>& items)
{
    std::string list;
    for (const auto& [name, value] : items)
        if (!isNull(value))
            list += (list.empty() ? "" : ",") + name + "=" + value;
    return list;
}

std::string quoted(const std::string& text)
{
    std::string value = "\"";
    for (const char c : text)
        value += (c == '"' || c == '\\' ? "\\" : "") + std::string(1, c);
    return value + "\"";
}

std::string unquoted(const std::string& value)
{
    std::string text;
    for (size_t i = 1; i + 1 < value.size(); i++)
        text += value[value[i] == '\\' ? ++i : i];
    return text;
}

bool isNull(const std::string& value)
{
    return value == "null" || (value.size() > 5 && value.compare(value.size() - 5, 5, ":null") == 0);
}

std::string nullOf(CMPIType type)
{
    return type == CMPI_null ? "null" : typeName(type) + ":null";
}

CMPIType typeOf(const std::string& value)
{
    switch (value[0])
    {
    case '"':
        return CMPI_string;
    case '<':
        return CMPI_ref;
    case '[':
        return static_cast<CMPIType>(typeOf(split(value.substr(1, value.size() - 2))[0]) | CMPI_ARRAY);
    }
    if (value.back() == '}')
        return CMPI_instance;
    if (value == "true" || value == "false")
        return CMPI_boolean;
    const std::string name = value.substr(0, value.find(':'));
#define RETURN_TYPE(TYPE, NAME)                                                                              \
    if (name == NAME || name == NAME "[]")                                                                   \
        return static_cast<CMPIType>(CMPI_##TYPE | (name == NAME ? 0 : CMPI_ARRAY));
    FOR_EACH_NUMBER(RETURN_TYPE)
    FOR_EACH_OTHER(RETURN_TYPE)
    return CMPI_null;
}

std::string typeName(CMPIType type)
{
    if (type & CMPI_ARRAY)
        return typeName(static_cast<CMPIType>(type & ~CMPI_ARRAY)) + "[]";
#define RETURN_NAME(TYPE, NAME)                                                                              \
    if (type == CMPI_##TYPE)                                                                                 \
        return NAME;
    FOR_EACH_NUMBER(RETURN_NAME)
    FOR_EACH_OTHER(RETURN_NAME)
    return "null";
}

CMPIValue scalarOf(const std::string& value, CMPIType type)
{
    CMPIValue scalar = {0};
    if (type == CMPI_boolean)
        scalar.boolean = value == "true";
    const char* const digits = value.c_str() + value.find(':') + 1;
#define READ_NUMBER(TYPE, NAME)                                                                              \
    if (type == CMPI_##TYPE)                                                                                 \
        readNumber(digits, scalar.TYPE);
    FOR_EACH_NUMBER(READ_NUMBER)
    return scalar;
}

std::string textOf(const CMPIValue& scalar, CMPIType type)
{
    if (type == CMPI_boolean)
        return scalar.boolean ? "true" : "false";
    std::ostringstream text;
    text.precision(17);
#define WRITE_NUMBER(TYPE, NAME)                                                                             \
    if (type == CMPI_##TYPE)                                                                                 \
        text << NAME ":" << +scalar.TYPE;
    FOR_EACH_NUMBER(WRITE_NUMBER)
    return text.str();
}

std::string* find(std::vector<Named>& items, const std::string& name)
{
    for (Named& item : items)
        if (strcasecmp(item.first.c_str(), name.c_str()) == 0)
            return &item.second;
    return nullptr;
}

void set(std::vector<Named>& items, const std::string& name, const std::string& value)
{
    if (std::string* old = find(items, name))
        *old = value;
    else
        items.emplace_back(name, value);
}

} // namespace test_broker
