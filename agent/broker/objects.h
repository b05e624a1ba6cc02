// The objects behind the CMPI handles: each is the C object, a value of ours, and its life time.
#ifndef AGENT_BROKER_OBJECTS_H
#define AGENT_BROKER_OBJECTS_H

#include "agent/broker/CallScope.h"
#include "agent/broker/boundary.h"
#include "agent/cim/CimArray.h"
#include "agent/cim/Instance.h"
#include "agent/repository/ClassRepository.h"
#include "agent/requests/requests.h"

#include <cmpift.h>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

extern const CMPIStringFT kStringTable;
extern const CMPIArrayFT kArrayTable;
extern const CMPIEnumerationFT kEnumerationTable;
extern const CMPIInstanceFT kInstanceTable;
extern const CMPIObjectPathFT kObjectPathTable;
extern const CMPIArgsFT kArgsTable;
extern const CMPIDateTimeFT kDateTimeTable;
extern const CMPIContextFT kContextTable;
extern const CMPIResultFT kResultTable;

struct StringObject : CMPIString, Tracked
{
    using Handle = CMPIString;
    static constexpr const CMPIStringFT* kTable = &kStringTable;

    // The handle is the text itself: old macros read it directly.
    explicit StringObject(std::string value) : CMPIString{nullptr, kTable}, text(std::move(value))
    {
        hdl = text.c_str();
    }
    StringObject(const StringObject& other) : StringObject(other.text) {}

    const std::string text;
};

struct ArrayObject : CMPIArray, Tracked
{
    using Handle = CMPIArray;
    static constexpr const CMPIArrayFT* kTable = &kArrayTable;

    explicit ArrayObject(CimArray values) : CMPIArray{this, kTable}, elements(std::move(values)) {}
    ArrayObject(const ArrayObject& other) : ArrayObject(other.elements) {}

    CimArray elements;
};

struct DateTimeObject : CMPIDateTime, Tracked
{
    using Handle = CMPIDateTime;
    static constexpr const CMPIDateTimeFT* kTable = &kDateTimeTable;

    explicit DateTimeObject(const CimDateTime& time) : CMPIDateTime{this, kTable}, value(time) {}
    DateTimeObject(const DateTimeObject& other) : DateTimeObject(other.value) {}

    CimDateTime value;
};

struct ObjectPathObject : CMPIObjectPath, Tracked
{
    using Handle = CMPIObjectPath;
    static constexpr const CMPIObjectPathFT* kTable = &kObjectPathTable;

    explicit ObjectPathObject(ObjectPath value) : CMPIObjectPath{this, kTable}, _path(std::move(value)) {}
    // One without keys so far.
    ObjectPathObject(const char* nameSpace, std::string_view className);
    ObjectPathObject(const ObjectPathObject& other);
    ~ObjectPathObject() override;

    // With those keys that were set.
    ObjectPath& path();
    void setKey(std::string_view name, CimValue value);

  private:
    ObjectPath _path;
    // A class whose keys stand in the path from the start, in order, so that they need no names and no
    // sorting; null if they do not.
    const ClassInfo* _keysOf = nullptr;
    std::size_t _unset = 0; // of these
};

struct ArgsObject : CMPIArgs, Tracked
{
    using Handle = CMPIArgs;
    static constexpr const CMPIArgsFT* kTable = &kArgsTable;

    explicit ArgsObject(std::vector<Argument> values = {})
        : CMPIArgs{this, kTable}, arguments(std::move(values))
    {
    }
    ArgsObject(const ArgsObject& other) : ArgsObject(other.arguments) {}

    std::vector<Argument> arguments;
};

// What an up-call answered; the elements are references or embedded instances.
struct EnumerationObject : CMPIEnumeration, Tracked
{
    using Handle = CMPIEnumeration;
    static constexpr const CMPIEnumerationFT* kTable = &kEnumerationTable;

    EnumerationObject(CimType elementType, CimValue::Elements values)
        : CMPIEnumeration{this, kTable}, type(elementType), elements(std::move(values))
    {
    }
    EnumerationObject(const EnumerationObject& other) : EnumerationObject(other.type, other.elements)
    {
        next = other.next;
    }

    CimType type;
    CimValue::Elements elements;
    std::size_t next = 0;
};

// The circumstances of a request: entries are what providers see, `request` is what up-calls carry on.
struct ContextObject : CMPIContext, Tracked
{
    using Handle = CMPIContext;
    static constexpr const CMPIContextFT* kTable = &kContextTable;

    explicit ContextObject(RequestContext origin) : CMPIContext{this, kTable}, request(std::move(origin)) {}
    ContextObject(const ContextObject& other) : ContextObject(other.request) { entries = other.entries; }

    void set(const std::string& name, CimValue value);
    const CimValue* find(std::string_view name) const;

    RequestContext request;
    std::vector<Argument> entries; // their names are told apart by case
};

// The object behind a handle; CmpiError (invalid handle) if it is null or not one of ours.
template <class Object>
Object& objectOf(const typename Object::Handle* handle)
{
    if (!handle || handle->ft != Object::kTable)
        throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "not an object of this broker");
    return *static_cast<Object*>(const_cast<typename Object::Handle*>(handle));
}

// The first two entries of every object table.
template <class Object>
CMPIStatus releaseObject(typename Object::Handle* handle)
{
    return answer(
        [&]
        {
            if (!CallScope::discard(&objectOf<Object>(handle)))
                throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "the object belongs to another thread");
        });
}

template <class Object>
typename Object::Handle* cloneObject(const typename Object::Handle* handle, CMPIStatus* rc)
{
    return answer(rc, [&]() -> typename Object::Handle* { return new Object(objectOf<Object>(handle)); });
}

inline CMPIString* trackString(std::string text)
{
    return track<StringObject>(std::move(text));
}

} // namespace cimd

#endif
