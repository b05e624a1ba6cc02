// An instance as a table of texts, for comparing it whole.
#include "tests/common/testing/described.h"

#include <cimple/cimple.h>

#include <optional>

using namespace cimple;

namespace
{

std::string text(boolean value)
{
    return value ? "true" : "false";
}
std::string text(const String& value)
{
    return value.c_str();
}
std::string text(const Datetime& value)
{
    return value.ascii().c_str();
}
template <class NUMBER>
std::string text(NUMBER value)
{
    return std::to_string(value);
}

template <class T>
std::string text(const Array<T>& values)
{
    std::string result = "[";
    for (std::size_t i = 0; i < values.size(); ++i)
        result += (i > 0 ? ", " : "") + text(values[i]);
    return result + "]";
}

template <class T>
std::optional<std::string> textOf(const void* field)
{
    const auto& property = *static_cast<const Property<T>*>(field);
    return property.null ? std::nullopt : std::optional<std::string>(text(property.value));
}

template <class T>
std::optional<std::string> textOf(const void* field, bool isArray)
{
    return isArray ? textOf<Array<T>>(field) : textOf<T>(field);
}

std::optional<std::string> propertyText(const Instance& instance, const Meta_Property* property)
{
    const void* field = __property_of(&instance, property);
    const bool isArray = property->subscript != 0;
    switch (property->type)
    {
#define CASE(TYPE, type)                                                                                     \
    case TYPE:                                                                                               \
        return textOf<type>(field, isArray);
        CASE(BOOLEAN, boolean)
        CASE(UINT8, uint8)
        CASE(UINT16, uint16)
        CASE(UINT32, uint32)
        CASE(UINT64, uint64)
        CASE(SINT8, sint8)
        CASE(SINT16, sint16)
        CASE(SINT32, sint32)
        CASE(SINT64, sint64)
        CASE(REAL32, real32)
        CASE(REAL64, real64)
        CASE(STRING, String)
        CASE(DATETIME, Datetime)
#undef CASE
    default:
        return "(a type that no class here has)";
    }
}

} // namespace

std::map<std::string, std::string> described(const Instance& instance)
{
    std::map<std::string, std::string> result;
    const Meta_Class* metaClass = instance.meta_class;
    for (std::size_t i = 0; i < metaClass->num_meta_features; ++i)
    {
        const Meta_Feature* feature = metaClass->meta_features[i];
        if (feature->flags & CIMPLE_FLAG_PROPERTY)
        {
            const auto value = propertyText(instance, reinterpret_cast<const Meta_Property*>(feature));
            if (value)
                result[feature->name] = *value;
        }
        else if (feature->flags & CIMPLE_FLAG_REFERENCE)
        {
            const Instance* target = __ref_of(&instance, reinterpret_cast<const Meta_Reference*>(feature));
            if (target != nullptr)
                result[feature->name] = std::string("-> ") + target->meta_class->name;
        }
    }
    return result;
}
