// Conversion of paths and instances from CMPI.
#include "FromCmpi.h"

#include "Failure.h"
#include "from_cmpi_value.h"
#include "scalars.h"
#include "server_schema.h"
#include <cmpimacs.h>

#include <algorithm>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

[[noreturn]] void refuse(const std::string& text)
{
    throw Failure(CMPI_RC_ERR_INVALID_PARAMETER, text);
}

// The name of a key that has no value, null if all have one.
const char* nullKeyOf(const Instance* instance)
{
    for (const Meta_Feature* feature : features_of(instance->meta_class))
    {
        if (!is_key(feature))
            continue;
        const Meta_Property* mp = as_property(feature);
        const Meta_Reference* mr = as_reference(feature);
        if (mp ? null_of(mp, __property_of(instance, mp)) != 0 : mr && !__ref_of(instance, mr))
            return feature->name;
    }
    return nullptr;
}

// The feature that a property of an instance stands for, or null.
const Meta_Feature* featureOf(const Meta_Class* metaClass, const Named_Data& property)
{
    return find_feature(metaClass, property.name.c_str(), CIMPLE_FLAG_PROPERTY | CIMPLE_FLAG_REFERENCE);
}

// Embedded instances are equal only if both are NULL: no schema has a default for them.
bool equalFeature(const Meta_Feature* feature, const Instance* a, const Instance* b)
{
    if (const Meta_Property* mp = as_property(feature))
    {
        const void* x = __property_of(a, mp);
        const void* y = __property_of(b, mp);
        return null_of(mp, x) && null_of(mp, y) ? true
                                                : null_of(mp, x) == null_of(mp, y) && property_eq(mp, x, y);
    }
    const Meta_Reference* mr = as_reference(feature);
    if (mr->subscript != 0)
        return __array_ref_of(a, mr).null && __array_ref_of(b, mr).null;
    return !__ref_of(a, mr) && !__ref_of(b, mr);
}

} // namespace

std::string textOf(const CMPIString* string)
{
    const char* text = string ? string->ft->getCharPtr(string, nullptr) : nullptr;
    return text ? text : "";
}

std::string nameSpaceOf(const CMPIObjectPath* path)
{
    return textOf(CMGetNameSpace(path, nullptr));
}

std::string classNameOf(const CMPIObjectPath* path)
{
    return textOf(CMGetClassName(path, nullptr));
}

const Meta_Class* FromCmpi::classNamed(const std::string& name) const
{
    const Meta_Class* metaClass = find_meta_class(_scope, name.c_str());
    if (!metaClass)
        throw Failure(CMPI_RC_ERR_INVALID_CLASS, "class " + name + " is unknown here");
    return metaClass;
}

Ref<Instance> FromCmpi::fromPath(const CMPIObjectPath* path, const Meta_Class* metaClass, Keys keys) const
{
    Ref<Instance> instance(create(metaClass));
    nullify_properties(instance.ptr());
    const std::string nameSpace = nameSpaceOf(path);
    instance->__name_space.assign(nameSpace.c_str());
    if (keys == kNoKeys)
        return instance;

    const CMPICount count = CMGetKeyCount(path, nullptr);
    for (CMPICount i = 0; i < count; i++)
    {
        CMPIString* name = nullptr;
        const CMPIData data = CMGetKeyAt(path, i, &name, nullptr);
        const Meta_Feature* feature = find_feature(metaClass, textOf(name).c_str());
        if (!feature || !is_key(feature))
            refuse("class " + std::string(metaClass->name) + " has no key " + textOf(name));
        if (isNull(data))
            refuse("key " + std::string(feature->name) + " has no value");
        setFeature(instance.ptr(), feature, data, nameSpace);
    }
    if (const char* missing = nullKeyOf(instance.ptr()))
        refuse("key " + std::string(missing) + " is missing");
    return instance;
}

Ref<Instance> FromCmpi::fromInstance(const CMPIInstance* source,
                                     const Meta_Class* metaClass,
                                     const std::string& nameSpace,
                                     Unknown unknown) const
{
    Ref<Instance> instance(create(metaClass));
    nullify_properties(instance.ptr());
    instance->__name_space.assign(nameSpace.c_str());
    for (const Named_Data& property : propertiesOf(source))
    {
        if (const Meta_Feature* feature = featureOf(metaClass, property))
            setFeature(instance.ptr(), feature, property.data, nameSpace);
        else if (unknown == kRefuse && !isNull(property.data))
        {
            const CMPIInstance* const fresh = newInstance(_broker, nameSpace, metaClass->name);
            if (!fresh || !findProperty(propertiesOf(fresh), property.name))
                refuse("class " + std::string(metaClass->name) + " has no property " + property.name);
        }
    }
    return instance;
}

std::vector<const char*> FromCmpi::meantBy(const CMPIInstance* modification, const Instance* converted) const
{
    const Meta_Class* const metaClass = converted->meta_class;
    Ref<Instance> filled(create(metaClass)); // what the server puts into an instance
    nullify_properties(filled.ptr());
    const std::vector<Named_Data> given = propertiesOf(modification);
    std::vector<const Meta_Feature*> suspects;
    bool isFilled = true;
    if (const CMPIInstance* fresh = newInstance(_broker, converted->__name_space.c_str(), metaClass->name))
        for (const Named_Data& property : propertiesOf(fresh))
        {
            isFilled = isFilled && (isNull(property.data) || findProperty(given, property.name));
            const Meta_Feature* const feature = featureOf(metaClass, property);
            if (!feature)
                continue;
            try
            {
                setFeature(filled.ptr(), feature, property.data, converted->__name_space.c_str());
                suspects.push_back(feature);
            }
            catch (const Failure&)
            {
                // Of another type in the server's schema, so no value that came through is this one.
            }
        }

    std::vector<const char*> meant;
    for (const Named_Data& property : given)
    {
        const Meta_Feature* const feature = featureOf(metaClass, property);
        if (!feature || is_key(feature))
            continue;
        const bool suspect =
            isFilled && std::find(suspects.begin(), suspects.end(), feature) != suspects.end();
        if (!suspect || !equalFeature(feature, converted, filled.ptr()))
            meant.push_back(feature->name);
    }
    meant.push_back(nullptr);
    return meant;
}

void FromCmpi::setFeature(Instance* instance,
                          const Meta_Feature* feature,
                          const CMPIData& data,
                          const std::string& nameSpace) const
try
{
    if (const Meta_Property* mp = as_property(feature))
        setProperty(instance, mp, data);
    else if (const Meta_Reference* mr = as_reference(feature))
        setReference(instance, mr, data, nameSpace);
}
catch (const Failure& failure)
{
    throw failure.in(feature->name);
}

void FromCmpi::setProperty(Instance* instance, const Meta_Property* mp, const CMPIData& data) const
{
    void* field = __property_of(instance, mp);
    const CMPIType expected = typeOf(mp);
    if (isNull(data))
    {
        null_of(mp, field) = 1;
        return;
    }
    const bool isKey = mp->flags & CIMPLE_FLAG_KEY;
    withType(mp->type,
             [&](auto x)
             {
                 typedef decltype(x) T;
                 if (mp->subscript == 0)
                     static_cast<Property<T>*>(field)->set(isKey ? keyFrom<T>(data) : valueFrom<T>(data));
                 else if (data.type == expected)
                     static_cast<Property<Array<T>>*>(field)->set(arrayFrom<T>(data.value.array));
                 else
                     refuseType(data.type, expected);
             });
}

void FromCmpi::setReference(Instance* instance,
                            const Meta_Reference* mr,
                            const CMPIData& data,
                            const std::string& nameSpace) const
{
    if (mr->subscript == 0)
    {
        Instance*& field = __ref_of(instance, mr);
        Ref<Instance> target = isNull(data) ? Ref<Instance>() : referenced(mr, data, nameSpace);
        unref(std::exchange(field, target.steal()));
        return;
    }

    Property<Array_Instance>& field = __array_ref_of(instance, mr);
    for (size_t i = 0; i < field.value.size(); i++)
        unref(field.value[i]);
    field.value.clear();
    field.null = isNull(data);
    if (field.null)
        return;
    if (data.type != typeOf(mr))
        refuseType(data.type, typeOf(mr));
    const CMPICount size = CMGetArrayCount(data.value.array, nullptr);
    for (CMPICount i = 0; i < size; i++)
    {
        const CMPIData element = CMGetArrayElementAt(data.value.array, i, nullptr);
        Ref<Instance> target = isNull(element) ? Ref<Instance>() : referenced(mr, element, nameSpace);
        field.value.append(target.ptr());
        target.steal();
    }
}

Ref<Instance>
FromCmpi::referenced(const Meta_Reference* mr, const CMPIData& data, const std::string& outerNameSpace) const
{
    const CMPIType expected = static_cast<CMPIType>(typeOf(mr) & ~CMPI_ARRAY);
    if (data.type != expected)
        refuseType(data.type, expected);
    const CMPIObjectPath* path =
        data.type == CMPI_ref ? data.value.ref : CMGetObjectPath(data.value.inst, nullptr);
    if (!path)
        refuse("an embedded instance without a class");

    // The class must be known, so its absence is the fault of this parameter and not of the request's class.
    const std::string className = classNameOf(path);
    const Meta_Class* metaClass = find_meta_class(_scope, className.c_str());
    if (!metaClass)
        refuse("class " + className + " is unknown here");
    if (!is_subclass(mr->meta_class, metaClass))
        refuse("class " + className + " is not a " + mr->meta_class->name);

    Ref<Instance> target = data.type == CMPI_ref
                               ? fromPath(path, metaClass, kAllKeys)
                               : fromInstance(data.value.inst, metaClass, outerNameSpace, kRefuse);
    if (target->__name_space.empty())
        target->__name_space.assign(outerNameSpace.c_str());
    return target;
}

} // namespace cimple_cmpi
