// Objects of the test broker: tracking, values in and out, function tables. Every getter makes its result in
// the session of the running call. What is null in a table no provider may need: other brokers leave it out
// or disagree on it, too.
#include "test_objects.h"

#include <algorithm>
#include <cstring>
#include <strings.h>

namespace test_broker
{

namespace
{
thread_local Session* currentSession = nullptr;
} // namespace

void Journal::violation(const std::string& text)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _violations.push_back(text);
}

std::vector<std::string> Journal::violations() const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return _violations;
}

Session::Session(const CMPIContext* c) : context(c), _outer(currentSession)
{
    currentSession = this;
}

Session::~Session()
{
    objects.clear();
    currentSession = _outer;
}

Session* Session::current()
{
    return currentSession;
}

bool Session::release(Object* object)
{
    const auto at = std::find_if(objects.begin(), objects.end(), [&](auto& o) { return o.get() == object; });
    if (at == objects.end())
        return false;
    objects.erase(at);
    return true;
}

CMPIData dataOf(Journal& journal, const Value& value)
{
    CMPIData data;
    memset(&data, 0, sizeof data);
    data.type = value.type;
    data.state = value.null ? CMPI_nullValue : CMPI_goodValue;
    if (value.null)
        return data;
    if (value.type & CMPI_ARRAY)
        data.value.array = make<CMPIArray>(journal, value);
    else if (value.type == CMPI_string)
        data.value.string = make<CMPIString>(journal, value.text);
    else if (value.type == CMPI_dateTime)
        data.value.dateTime = make<CMPIDateTime>(journal, value.text);
    else if (value.type == CMPI_ref)
        data.value.ref = make<CMPIObjectPath>(journal, *value.path);
    else if (value.type == CMPI_instance)
        data.value.inst = make<CMPIInstance>(journal, *value.inst);
    else
        data.value = value.scalar;
    return data;
}

Object* objectIn(const CMPIValue* value, CMPIType type)
{
    if (type & CMPI_ARRAY)
        return &self(value->array);
    switch (type)
    {
    case CMPI_string:
        return &self(value->string);
    case CMPI_dateTime:
        return &self(value->dateTime);
    case CMPI_ref:
        return &self(value->ref);
    case CMPI_instance:
        return &self(value->inst);
    default:
        return nullptr;
    }
}

Value valueOf(const CMPIValue* value, CMPIType type)
{
    if (type == CMPI_chars)
        return Value::string(reinterpret_cast<const char*>(value));
    if (type & CMPI_ARRAY)
        return contentOf(value->array);
    switch (type)
    {
    case CMPI_string:
        return Value::string(contentOf(value->string));
    case CMPI_dateTime:
        return Value::dateTime(contentOf(value->dateTime));
    case CMPI_ref:
        return Value::ref(contentOf(value->ref));
    case CMPI_instance:
        return Value::instance(contentOf(value->inst));
    case CMPI_boolean:
        return Value::boolean(value->boolean != 0);
#define RETURN_VALUE(MEMBER, PREFIX)                                                                         \
    case CMPI_##MEMBER:                                                                                      \
        return Value::number(type, value->MEMBER);
        TEST_BROKER_NUMBERS(RETURN_VALUE)
#undef RETURN_VALUE
    default:
        return Value();
    }
}

namespace
{

// --- what all objects have

template <class Edt>
CMPIStatus release(Edt* edt)
{
    auto& object = self<Edt>(edt);
    Journal& journal = object.journal;
    if (*object.holds != 0)
        journal.violation("an object was released while another or the broker keeps a pointer to it");
    if (!Session::current() || !Session::current()->release(&object))
        journal.violation("an object was released that is not of this call");
    return {CMPI_RC_OK, nullptr};
}

// Brokers may copy what is put into an object or keep the pointer.
Value take(Object& container, const CMPIValue* value, CMPIType type)
{
    if (!value)
        return Value::nullOf(type);
    if (Object* part = objectIn(value, type))
        container.parts.emplace_back(part->holds);
    return valueOf(value, type);
}

// What the filter of an instance lets through.
bool isKept(const Object& object, const std::string& name)
{
    const auto isName = [&](const std::string& k) { return strcasecmp(k.c_str(), name.c_str()) == 0; };
    const auto& kept = object.kept;
    return !kept || std::any_of(kept->begin(), kept->end(), isName);
}

// --- lists of named values: the keys of a path, the properties of an instance, arguments, a context

std::vector<Named>& list(const CMPIObjectPath* path)
{
    return contentOf(path).keys;
}
std::vector<Named>& list(const CMPIInstance* inst)
{
    return contentOf(inst).properties;
}
template <class Edt>
std::vector<Named>& list(const Edt* edt)
{
    return contentOf(edt);
}

template <class Edt>
CMPIData item(const Edt* edt, const Value* value, CMPIStatus* rc)
{
    done(rc, value ? CMPI_RC_OK : CMPI_RC_ERR_NO_SUCH_PROPERTY);
    CMPIData data = dataOf(self(edt).journal, value ? *value : Value());
    if (std::is_same_v<Edt, CMPIObjectPath>)
        data.state = static_cast<CMPIValueState>(data.state | CMPI_keyValue);
    return data;
}

template <class Edt>
CMPIData get(const Edt* edt, const char* name, CMPIStatus* rc)
{
    return item(edt, find(list(edt), name), rc);
}

template <class Edt>
CMPIData getAt(const Edt* edt, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    const Named* at = index < list(edt).size() ? &list(edt)[index] : nullptr;
    if (at && name)
        *name = make<CMPIString>(self(edt).journal, at->first);
    return item(edt, at ? &at->second : nullptr, rc);
}

template <class Edt>
CMPICount count(const Edt* edt, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(list(edt).size());
}

template <class Edt>
CMPIStatus add(const Edt* edt, const char* name, const CMPIValue* value, CMPIType type)
{
    if (!value && std::is_same_v<Edt, CMPIObjectPath>)
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    if (isKept(self(edt), name))
        set(list(edt), name, take(self(edt), value, type));
    return {CMPI_RC_OK, nullptr};
}

// --- the rest

// A field of an object's content as a string of the broker.
template <class Edt, std::string Path::*kField>
CMPIString* getText(const Edt* edt, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return make<CMPIString>(self(edt).journal, contentOf(edt).*kField);
}

const char* getCharPtr(const CMPIString* s, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return contentOf(s).c_str();
}

CMPIString* getStringFormat(const CMPIDateTime* d, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return make<CMPIString>(self(d).journal, contentOf(d));
}

CMPIObjectPath* getObjectPath(const CMPIInstance* i, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return make<CMPIObjectPath>(self(i).journal, contentOf(i).path);
}

// Keys go as well unless they are named.
CMPIStatus setPropertyFilter(const CMPIInstance* i, const char** properties, const char** keys)
{
    std::vector<std::string>& kept = self(i).kept.emplace();
    for (const char** names : {properties, keys})
        for (; names && *names; names++)
            kept.emplace_back(*names);
    std::vector<Named> all = std::move(list(i));
    list(i).clear();
    for (const Named& property : all)
        if (isKept(self(i), property.first))
            list(i).push_back(property);
    return {CMPI_RC_OK, nullptr};
}

CMPICount getSize(const CMPIArray* a, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(contentOf(a).elements.size());
}

CMPIData getElementAt(const CMPIArray* a, CMPICount index, CMPIStatus* rc)
{
    const auto& elements = contentOf(a).elements;
    return item(a, index < elements.size() ? &elements[index] : nullptr, rc);
}

CMPIStatus setElementAt(const CMPIArray* a, CMPICount index, const CMPIValue* value, CMPIType type)
{
    Value& array = contentOf(a);
    if (index >= array.elements.size() || type != (array.type & ~CMPI_ARRAY) || !value)
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    array.elements[index] = take(self(a), value, type);
    return {CMPI_RC_OK, nullptr};
}

CMPIData getNext(const CMPIEnumeration* e, CMPIStatus* rc)
{
    std::vector<Value>& left = contentOf(e);
    const CMPIData data = item(e, left.empty() ? nullptr : &left.front(), rc);
    if (!left.empty())
        left.erase(left.begin());
    return data;
}

CMPIBoolean hasNext(const CMPIEnumeration* e, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return !contentOf(e).empty();
}

constexpr CMPIVersion kVersion = CMPIVersion200;

} // namespace

const CMPIStringFT* kindOf(const CMPIString*, std::string*)
{
    static const CMPIStringFT table = {kVersion, release<CMPIString>, nullptr, getCharPtr};
    return &table;
}

const CMPIDateTimeFT* kindOf(const CMPIDateTime*, std::string*)
{
    static const CMPIDateTimeFT table = {
        kVersion, release<CMPIDateTime>, nullptr, nullptr, getStringFormat, nullptr};
    return &table;
}

const CMPIObjectPathFT* kindOf(const CMPIObjectPath*, Path*)
{
    static const CMPIObjectPathFT table = []
    {
        CMPIObjectPathFT t = {};
        t.ftVersion = kVersion;
        t.release = release<CMPIObjectPath>;
        t.getNameSpace = getText<CMPIObjectPath, &Path::ns>;
        t.getClassName = getText<CMPIObjectPath, &Path::className>;
        t.addKey = add;
        t.getKeyAt = getAt;
        t.getKeyCount = count;
        return t;
    }();
    return &table;
}

const CMPIInstanceFT* kindOf(const CMPIInstance*, Inst*)
{
    // clang-format off
    static const CMPIInstanceFT table = {kVersion, release<CMPIInstance>, nullptr, get, getAt, count, add,
                                         getObjectPath, setPropertyFilter, nullptr, nullptr};
    // clang-format on
    return &table;
}

const CMPIArrayFT* kindOf(const CMPIArray*, Value*)
{
    static const CMPIArrayFT table = {
        kVersion, release<CMPIArray>, nullptr, getSize, nullptr, getElementAt, setElementAt};
    return &table;
}

const CMPIArgsFT* kindOf(const CMPIArgs*, std::vector<Named>*)
{
    static const CMPIArgsFT table = {kVersion, release<CMPIArgs>, nullptr, add, get, getAt, count};
    return &table;
}

const CMPIEnumerationFT* kindOf(const CMPIEnumeration*, std::vector<Value>*)
{
    static const CMPIEnumerationFT table = {
        kVersion, release<CMPIEnumeration>, nullptr, getNext, hasNext, nullptr};
    return &table;
}

const CMPIContextFT* kindOf(const CMPIContext*, std::vector<Named>*)
{
    static const CMPIContextFT table = {kVersion, release<CMPIContext>, nullptr, get, getAt, count, add};
    return &table;
}

} // namespace test_broker
