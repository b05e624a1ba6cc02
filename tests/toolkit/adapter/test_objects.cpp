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

CMPIData dataOf(Journal& journal, const std::string& value)
{
    CMPIData data;
    memset(&data, 0, sizeof data);
    data.type = typeOf(value);
    data.state = isNull(value) ? CMPI_nullValue : CMPI_goodValue;
    if (isNull(value))
        return data;
    if (data.type & CMPI_ARRAY)
        data.value.array = make<CMPIArray>(journal, value);
    else if (data.type == CMPI_string)
        data.value.string = make<CMPIString>(journal, unquoted(value));
    else if (data.type == CMPI_dateTime)
        data.value.dateTime = make<CMPIDateTime>(journal, value);
    else if (data.type == CMPI_ref)
        data.value.ref = make<CMPIObjectPath>(journal, value.substr(1, value.size() - 2));
    else if (data.type == CMPI_instance)
        data.value.inst = make<CMPIInstance>(journal, value);
    else
        data.value = scalarOf(value, data.type);
    return data;
}

std::pair<std::string, Object*> valueOf(const CMPIValue* value, CMPIType type)
{
    if (type == CMPI_chars)
        return {quoted(reinterpret_cast<const char*>(value)), nullptr};
    if (type & CMPI_ARRAY)
    {
        std::string list;
        for (const Named& element : self(value->array).items)
            list += (list.empty() ? "[" : ",") + element.second;
        return {list.empty() ? typeName(type) : list + "]", &self(value->array)};
    }
    switch (type)
    {
    case CMPI_string:
        return {quoted(self(value->string).text), &self(value->string)};
    case CMPI_dateTime:
        return {"d:" + self(value->dateTime).text, &self(value->dateTime)};
    case CMPI_ref:
        return {"<" + textOf(value->ref) + ">", &self(value->ref)};
    case CMPI_instance:
        return {textOf(value->inst), &self(value->inst)};
    default:
        return {textOf(*value, type), nullptr};
    }
}

std::string textOf(const CMPIObjectPath* path)
{
    const Object& object = self(path);
    return object.ns + ":" + object.text + (object.items.empty() ? "" : ".") + listOf(object.items);
}

std::string textOf(const CMPIInstance* inst)
{
    return self(inst).text + "{" + listOf(self(inst).items) + "}";
}

namespace
{

// --- what all objects have

template <class Edt>
CMPIStatus release(Edt* edt)
{
    Object& object = self(edt);
    Journal& journal = object.journal;
    if (object.holds.use_count() != 1)
        journal.violation("an object was released while another or the broker keeps a pointer to it");
    if (!Session::current() || !Session::current()->release(&object))
        journal.violation("an object was released that is not of this call");
    return {CMPI_RC_OK, nullptr};
}

// Brokers may copy what is put into an object or keep the pointer.
std::string take(Object& container, const CMPIValue* value, CMPIType type)
{
    if (!value)
        return nullOf(type);
    const auto [text, part] = valueOf(value, type);
    if (part)
        container.parts.push_back(part->holds);
    return text;
}

// What the filter of an instance lets through.
bool isKept(const Object& object, const std::string& name)
{
    const auto isName = [&](const std::string& k) { return strcasecmp(k.c_str(), name.c_str()) == 0; };
    return !object.kept || std::any_of(object.kept->begin(), object.kept->end(), isName);
}

// --- lists of values: the keys of a path, properties, arguments, a context, the elements of an array

template <class Edt>
CMPIData item(const Edt* edt, const std::string* value, CMPIStatus* rc)
{
    done(rc, value ? CMPI_RC_OK : CMPI_RC_ERR_NO_SUCH_PROPERTY);
    CMPIData data = dataOf(self(edt).journal, value ? *value : "null");
    if (std::is_same_v<Edt, CMPIObjectPath>)
        data.state = static_cast<CMPIValueState>(data.state | CMPI_keyValue);
    return data;
}

template <class Edt>
CMPIData get(const Edt* edt, const char* name, CMPIStatus* rc)
{
    return item(edt, find(self(edt).items, name), rc);
}

template <class Edt>
CMPIData getAt(const Edt* edt, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    auto& items = self(edt).items;
    if (index < items.size() && name)
        *name = make<CMPIString>(self(edt).journal, items[index].first);
    return item(edt, index < items.size() ? &items[index].second : nullptr, rc);
}

template <class Edt>
CMPICount count(const Edt* edt, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(self(edt).items.size());
}

template <class Edt>
CMPIStatus add(const Edt* edt, const char* name, const CMPIValue* value, CMPIType type)
{
    if (!value && std::is_same_v<Edt, CMPIObjectPath>)
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    if (isKept(self(edt), name))
        set(self(edt).items, name, take(self(edt), value, type));
    return {CMPI_RC_OK, nullptr};
}

// --- the rest

// A text of an object as a string of the broker.
template <class Edt, std::string Object::*kText>
CMPIString* getText(const Edt* edt, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return make<CMPIString>(self(edt).journal, self(edt).*kText);
}

const char* getCharPtr(const CMPIString* s, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return self(s).text.c_str();
}

CMPIObjectPath* getObjectPath(const CMPIInstance* i, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return make<CMPIObjectPath>(self(i).journal, self(i).path);
}

// Keys go as well unless they are named.
CMPIStatus setPropertyFilter(const CMPIInstance* i, const char** properties, const char** keys)
{
    Object& object = self(i);
    std::vector<std::string>& kept = object.kept.emplace();
    for (const char** names : {properties, keys})
        for (; names && *names; names++)
            kept.emplace_back(*names);
    const auto isGone = [&](const Named& property) { return !isKept(object, property.first); };
    object.items.erase(std::remove_if(object.items.begin(), object.items.end(), isGone), object.items.end());
    return {CMPI_RC_OK, nullptr};
}

CMPIData getElementAt(const CMPIArray* a, CMPICount index, CMPIStatus* rc)
{
    return getAt(a, index, nullptr, rc);
}

CMPIStatus setElementAt(const CMPIArray* a, CMPICount index, const CMPIValue* value, CMPIType type)
{
    Object& array = self(a);
    if (index >= array.items.size() || type != array.elements || !value)
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    array.items[index].second = take(array, value, type);
    return {CMPI_RC_OK, nullptr};
}

CMPIData getNext(const CMPIEnumeration* e, CMPIStatus* rc)
{
    const CMPIData data = getAt(e, 0, nullptr, rc);
    self(e).items.erase(self(e).items.begin());
    return data;
}

CMPIBoolean hasNext(const CMPIEnumeration* e, CMPIStatus* rc)
{
    return count(e, rc) != 0;
}

constexpr CMPIVersion kVersion = CMPIVersion200;

} // namespace

const CMPIStringFT* read(CMPIString*, Object& object, const std::string& text)
{
    object.text = text;
    static const CMPIStringFT table = {kVersion, release<CMPIString>, nullptr, getCharPtr};
    return &table;
}

const CMPIDateTimeFT* read(CMPIDateTime*, Object& object, const std::string& text)
{
    object.text = text.substr(2);
    static const CMPIDateTimeFT table = {
        kVersion, release<CMPIDateTime>, nullptr, nullptr, getText<CMPIDateTime, &Object::text>, nullptr};
    return &table;
}

const CMPIObjectPathFT* read(CMPIObjectPath*, Object& object, const std::string& text)
{
    const size_t colon = text.find(':');
    const size_t dot = text.find('.', colon);
    object.ns = text.substr(0, colon);
    object.text = text.substr(colon + 1, dot == text.npos ? dot : dot - colon - 1);
    object.items = named(dot == text.npos ? "" : text.substr(dot + 1));
    static const CMPIObjectPathFT table = []
    {
        CMPIObjectPathFT t = {};
        t.ftVersion = kVersion;
        t.release = release<CMPIObjectPath>;
        t.getNameSpace = getText<CMPIObjectPath, &Object::ns>;
        t.getClassName = getText<CMPIObjectPath, &Object::text>;
        t.addKey = add;
        t.getKeyAt = getAt;
        t.getKeyCount = count;
        return t;
    }();
    return &table;
}

const CMPIInstanceFT* read(CMPIInstance*, Object& object, const std::string& text)
{
    const size_t brace = text.find('{');
    object.text = text.substr(0, brace);
    object.path = ":" + object.text;
    object.items = named(text.substr(brace + 1, text.size() - brace - 2));
    // clang-format off
    static const CMPIInstanceFT table = {kVersion, release<CMPIInstance>, nullptr, get, getAt, count, add,
                                         getObjectPath, setPropertyFilter, nullptr, nullptr};
    // clang-format on
    return &table;
}

const CMPIArrayFT* read(CMPIArray*, Object& object, const std::string& text)
{
    object.elements = static_cast<CMPIType>(typeOf(text) & ~CMPI_ARRAY);
    if (text[0] == '[')
        for (const std::string& element : split(text.substr(1, text.size() - 2)))
            object.items.emplace_back("", element);
    static const CMPIArrayFT table = {
        kVersion, release<CMPIArray>, nullptr, count, nullptr, getElementAt, setElementAt};
    return &table;
}

const CMPIArgsFT* read(CMPIArgs*, Object& object, const std::string& text)
{
    object.items = named(text);
    static const CMPIArgsFT table = {kVersion, release<CMPIArgs>, nullptr, add, get, getAt, count};
    return &table;
}

const CMPIEnumerationFT* read(CMPIEnumeration*, Object& object, const std::string& text)
{
    for (const std::string& left : split(text))
        object.items.emplace_back("", left);
    static const CMPIEnumerationFT table = {
        kVersion, release<CMPIEnumeration>, nullptr, getNext, hasNext, nullptr};
    return &table;
}

const CMPIContextFT* read(CMPIContext*, Object& object, const std::string& text)
{
    object.items = named(text);
    static const CMPIContextFT table = {kVersion, release<CMPIContext>, nullptr, get, getAt, count, add};
    return &table;
}

} // namespace test_broker
