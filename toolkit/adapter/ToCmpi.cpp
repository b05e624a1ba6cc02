// Conversion of paths, instances and single features to CMPI.
#include "ToCmpi.h"

#include "Failure.h"
#include "scalars.h"
#include <cmpimacs.h>

#include <algorithm>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

CMPIValue emptyValue()
{
    return CMPIValue{0};
}

// Sets a property or adds a key. Text goes as a C string, which the broker copies; everything else by the
// address of a whole value, because some brokers copy the union.
template <class Edt, class Function>
void put(Edt* target, Function function, const char* name, const CMPIData& data, const char* text)
{
    const CMPIStatus status =
        text ? function(target, name, reinterpret_cast<const CMPIValue*>(text), CMPI_chars)
             : function(target, name, &data.value, data.type);
    checkBroker(status, name);
}

} // namespace

const std::vector<bool>& PropertyFilter::of(const Meta_Class* metaClass)
{
    if (metaClass == _metaClass)
        return _admitted;
    _admitted.assign(metaClass->num_meta_features, false);
    _keys.clear();
    for (size_t i = 0; i < _admitted.size(); i++)
    {
        const Meta_Feature* feature = metaClass->meta_features[i];
        bool admitted = !_properties || is_key(feature);
        for (const char* const* name = _properties; !admitted && *name; name++)
            admitted = eqi(*name, feature->name);
        _admitted[i] = admitted && !(feature->flags & CIMPLE_FLAG_METHOD);
        if (is_key(feature))
            _keys.push_back(feature->name);
    }
    _keys.push_back(nullptr);
    _metaClass = metaClass;
    return _admitted;
}

void PropertyFilter::applyTo(const CMPIInstance* instance, const Meta_Class* metaClass)
{
    if (!_properties)
        return;
    of(metaClass);
    // Not every broker has filters. Those that do not, filter by themselves.
    CMSetPropertyFilter(instance, const_cast<const char**>(_properties), _keys.data());
}

CMPIObjectPath* ToCmpi::path(const Instance* instance)
{
    return makePath(instance, _nameSpace.c_str(), kStrict);
}

CMPIInstance* ToCmpi::instance(const Instance* instance, PropertyFilter& filter)
{
    return makeInstance(instance, _nameSpace.c_str(), kStrict, &filter);
}

CMPIInstance* ToCmpi::looseInstance(const Instance* instance)
{
    return makeInstance(instance, _nameSpace.c_str(), kLoose, nullptr);
}

bool ToCmpi::value(const Instance* instance, const Meta_Feature* feature, CMPIData& data)
{
    return convert(instance, feature, nameSpaceOf(instance, _nameSpace.c_str()), data);
}

void ToCmpi::release()
{
    for (const Made& made : _made)
        made.release(made.object);
    _made.clear();
}

template <class Edt>
void ToCmpi::track(Edt* object)
{
    if (_tracking)
        _made.push_back({object, [](void* o) { CMRelease(static_cast<Edt*>(o)); }});
}

template <class Edt>
Edt* ToCmpi::made(Edt* object, const CMPIStatus& status, const char* what)
{
    checkBroker(object, status, what);
    track(object);
    return object;
}

const char* ToCmpi::nameSpaceOf(const Instance* instance, const char* outer) const
{
    return instance->__name_space.empty() ? outer : instance->__name_space.c_str();
}

void ToCmpi::addKeys(
    CMPIObjectPath* path, const Instance* instance, const char* nameSpace, Strictness strictness, Keys* keys)
{
    const Class_Shape& shape = _shapes.of(instance->meta_class);
    if (keys)
        keys->reserve(shape.keys.size());
    for (const Feature_Shape& key : shape.keys)
    {
        CMPIData data = {CMPI_null, CMPI_nullValue, emptyValue()};
        const char* const text = key.isPlainText && !key.isNull(instance) ? key.text(instance) : nullptr;
        if (text || convert(instance, key.feature, nameSpace, data))
            put(path, path->ft->addKey, key.feature->name, data, text);
        else if (strictness == kStrict)
            throw Failure(CMPI_RC_ERR_FAILED, std::string("key ") + key.feature->name + " has no value");
        if (keys)
            keys->push_back(data);
    }
}

CMPIObjectPath*
ToCmpi::makePath(const Instance* instance, const char* outer, Strictness strictness, Keys* keys)
{
    const char* nameSpace = nameSpaceOf(instance, outer);
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMPIObjectPath* path = CMNewObjectPath(_broker, nameSpace, instance->meta_class->name, &status);
    made(path, status, "a new object path");
    addKeys(path, instance, nameSpace, strictness, keys);
    return path;
}

CMPIInstance* ToCmpi::makeInstance(const Instance* instance,
                                   const char* outer,
                                   Strictness strictness,
                                   PropertyFilter* filter)
{
    Keys keys;
    const size_t before = _made.size();
    CMPIObjectPath* path = makePath(instance, outer, strictness, &keys);
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMPIInstance* result = made(CMNewInstance(_broker, path, &status), status, "a new instance");
    if (_tracking) // the instance contains the path and is released before it
        std::rotate(_made.begin() + static_cast<std::ptrdiff_t>(before), _made.end() - 1, _made.end());
    Class_Shape& shape = _shapes.of(instance->meta_class);
    if (!shape.prefilled)
        shape.prefilled = &_prefilled.of(instance->meta_class, result);
    if (filter)
        filter->applyTo(result, instance->meta_class);
    setFeatures(result, instance, nameSpaceOf(instance, outer), keys, filter, shape);
    return result;
}

void ToCmpi::setFeatures(CMPIInstance* target,
                         const Instance* instance,
                         const char* nameSpace,
                         const Keys& keys,
                         PropertyFilter* filter,
                         const Class_Shape& shape)
{
    const Prefilled& prefilled = *shape.prefilled;
    const std::vector<bool>* admitted = filter ? &filter->of(instance->meta_class) : nullptr;
    auto key = keys.begin(); // the filter admits all keys
    for (const Feature_Shape& each : shape.features)
    {
        if (admitted && !(*admitted)[each.place])
            continue;
        CMPIData data = {CMPI_null, CMPI_nullValue, emptyValue()};
        const char* text = nullptr;
        if (each.isKey)
            data = *key++;
        const bool isNull = each.isNull(instance); // as most are
        if (!isNull && each.isPlainText)
            text = each.text(instance);
        else if (!isNull && !each.isKey)
            convert(instance, each.feature, nameSpace, data);
        const char* const name = each.feature->name;
        if (text || data.state == CMPI_goodValue)
            put(target, target->ft->setProperty, name, data, text);
        else if (!prefilled.features.empty() && prefilled.features[each.place] != CMPI_null)
            checkBroker(CMSetProperty(target, name, nullptr, prefilled.features[each.place]), name);
    }
    for (const auto& [name, type] : prefilled.unknown)
        checkBroker(CMSetProperty(target, name.c_str(), nullptr, type), name.c_str());
}

bool ToCmpi::convert(const Instance* instance,
                     const Meta_Feature* feature,
                     const char* nameSpace,
                     CMPIData& data)
try
{
    data = CMPIData{CMPI_null, CMPI_nullValue, emptyValue()};
    if (const Meta_Property* mp = as_property(feature))
    {
        const void* field = __property_of(instance, mp);
        if (null_of(mp, field))
            return false;
        data.value = withType(mp->type,
                              [&](auto x)
                              {
                                  typedef decltype(x) T;
                                  return mp->subscript == 0 ? scalar(*static_cast<const T*>(field))
                                                            : array(*static_cast<const Array<T>*>(field));
                              });
        data.type = typeOf(mp);
    }
    else if (const Meta_Reference* mr = as_reference(feature))
    {
        data.type = typeOf(mr);
        if (mr->subscript == 0)
        {
            const Instance* target = __ref_of(instance, mr);
            if (!target)
                return false;
            data.value = reference(target, data.type, nameSpace);
        }
        else
        {
            const Property<Array_Instance>& targets = __array_ref_of(instance, mr);
            if (targets.null)
                return false;
            convertReferences(targets.value, nameSpace, data);
        }
    }
    else
        return false;
    data.state = CMPI_goodValue;
    return true;
}
catch (const Failure& failure)
{
    throw failure.in(feature->name);
}

void ToCmpi::convertReferences(const Array_Instance& elements, const char* nameSpace, CMPIData& data)
{
    const CMPIType type = static_cast<CMPIType>(data.type & ~CMPI_ARRAY);
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPICount size = static_cast<CMPICount>(elements.size());
    data.value.array = made(CMNewArray(_broker, size, type, &status), status, "a new array");
    for (CMPICount i = 0; i < size; i++)
    {
        if (!elements[i])
            continue; // elements of a fresh array are NULL; not all brokers let one be set to NULL
        const CMPIValue value = reference(elements[i], type, nameSpace);
        checkBroker(CMSetArrayElementAt(data.value.array, i, &value, type), "an array element");
    }
}

CMPIValue ToCmpi::reference(const Instance* instance, CMPIType type, const char* nameSpace)
{
    CMPIValue value = emptyValue();
    if (type == CMPI_instance)
        value.inst = makeInstance(instance, nameSpace, kLoose, nullptr);
    else
        value.ref = makePath(instance, nameSpace, kStrict);
    return value;
}

template <class T>
CMPIValue ToCmpi::array(const Array<T>& elements)
{
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIType type = Scalar<T>::kType;
    const CMPICount size = static_cast<CMPICount>(elements.size());
    CMPIValue value = emptyValue();
    value.array = made(CMNewArray(_broker, size, type, &status), status, "a new array");
    for (CMPICount i = 0; i < size; i++)
    {
        const CMPIValue element = scalar(elements[i]);
        checkBroker(CMSetArrayElementAt(value.array, i, &element, type), "an array element");
    }
    return value;
}

CMPIValue ToCmpi::scalar(const String& x)
{
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMPIValue value = emptyValue();
    value.string = made(CMNewString(_broker, x.c_str(), &status), status, "a new string");
    return value;
}

CMPIValue ToCmpi::scalar(const Datetime& x)
{
    char text[Datetime::BUFFER_SIZE];
    x.ascii(text);
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    CMPIValue value = emptyValue();
    value.dateTime = made(CMNewDateTimeFromChars(_broker, text, &status), status, "a new datetime");
    return value;
}

template <class T>
CMPIValue ToCmpi::scalar(const T& x)
{
    CMPIValue value = emptyValue();
    if constexpr (std::is_same_v<T, char16>)
        value.char16 = x.code();
    else
        value.*Scalar<T>::kMember = x;
    return value;
}

} // namespace cimple_cmpi
