// Function tables of the test broker's objects. Every getter makes its result in the session of the running
// call. What is null here no provider may need: other brokers leave it out or disagree on it, too.
#include "test_objects.h"

namespace test_broker
{

namespace
{

// --- what all objects have

template <class Edt>
CMPIStatus release(Edt* edt)
{
    auto& object = self<Edt>(edt);
    Journal& journal = object.journal;
    if (!Session::current() || !Session::current()->release(&object))
        journal.violation("an object was released that is not of this call");
    return {CMPI_RC_OK, nullptr};
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

CMPIData asItemOf(const CMPIObjectPath*, CMPIData data)
{
    data.state = static_cast<CMPIValueState>(data.state | CMPI_keyValue);
    return data;
}
CMPIData asItemOf(const void*, CMPIData data)
{
    return data;
}

template <class Edt>
CMPIData get(const Edt* edt, const char* name, CMPIStatus* rc)
{
    const Value* value = find(list(edt), name);
    done(rc, value ? CMPI_RC_OK : CMPI_RC_ERR_NO_SUCH_PROPERTY);
    return asItemOf(edt, dataOf(self(edt).journal, value ? *value : Value()));
}

template <class Edt>
CMPIData getAt(const Edt* edt, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    const bool there = index < list(edt).size();
    done(rc, there ? CMPI_RC_OK : CMPI_RC_ERR_NO_SUCH_PROPERTY);
    if (there && name)
        *name = make<CMPIString>(self(edt).journal, list(edt)[index].first);
    return asItemOf(edt, dataOf(self(edt).journal, there ? list(edt)[index].second : Value()));
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
    set(list(edt), name, value ? valueOf(value, type) : Value::nullOf(type));
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus addKey(const CMPIObjectPath* path, const char* name, const CMPIValue* value, CMPIType type)
{
    return value ? add(path, name, value, type) : CMPIStatus{CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
}

// --- the rest

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

CMPIString* getNameSpace(const CMPIObjectPath* p, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return make<CMPIString>(self(p).journal, contentOf(p).ns);
}

CMPIString* getClassName(const CMPIObjectPath* p, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return make<CMPIString>(self(p).journal, contentOf(p).className);
}

CMPIObjectPath* getObjectPath(const CMPIInstance* i, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return make<CMPIObjectPath>(self(i).journal, contentOf(i).path);
}

CMPICount getSize(const CMPIArray* a, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(contentOf(a).elements.size());
}

CMPIData getElementAt(const CMPIArray* a, CMPICount index, CMPIStatus* rc)
{
    const auto& elements = contentOf(a).elements;
    done(rc, index < elements.size() ? CMPI_RC_OK : CMPI_RC_ERR_NO_SUCH_PROPERTY);
    return dataOf(self(a).journal, index < elements.size() ? elements[index] : Value());
}

CMPIStatus setElementAt(const CMPIArray* a, CMPICount index, const CMPIValue* value, CMPIType type)
{
    Value& array = contentOf(a);
    if (index >= array.elements.size())
        return {CMPI_RC_ERR_NO_SUCH_PROPERTY, nullptr};
    if (type != (array.type & ~CMPI_ARRAY))
        return {CMPI_RC_ERR_TYPE_MISMATCH, nullptr};
    if (!value)
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    array.elements[index] = valueOf(value, type);
    return {CMPI_RC_OK, nullptr};
}

CMPIData getNext(const CMPIEnumeration* e, CMPIStatus* rc)
{
    Items& items = contentOf(e);
    const bool more = items.next < items.values.size();
    done(rc, more ? CMPI_RC_OK : CMPI_RC_NO_MORE_ELEMENTS);
    return dataOf(self(e).journal, more ? items.values[items.next++] : Value());
}

CMPIBoolean hasNext(const CMPIEnumeration* e, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return contentOf(e).next < contentOf(e).values.size();
}

} // namespace

const CMPIStringFT* kindOf(const CMPIString*, std::string*)
{
    static const CMPIStringFT table = {CMPIVersion200, release<CMPIString>, nullptr, getCharPtr};
    return &table;
}

const CMPIDateTimeFT* kindOf(const CMPIDateTime*, std::string*)
{
    static const CMPIDateTimeFT table = {
        CMPIVersion200, release<CMPIDateTime>, nullptr, nullptr, getStringFormat, nullptr};
    return &table;
}

const CMPIObjectPathFT* kindOf(const CMPIObjectPath*, Path*)
{
    static const CMPIObjectPathFT table = []
    {
        CMPIObjectPathFT t = {};
        t.ftVersion = CMPIVersion200;
        t.release = release<CMPIObjectPath>;
        t.getNameSpace = getNameSpace;
        t.getClassName = getClassName;
        t.addKey = addKey;
        t.getKey = get;
        t.getKeyAt = getAt;
        t.getKeyCount = count;
        return t;
    }();
    return &table;
}

const CMPIInstanceFT* kindOf(const CMPIInstance*, Inst*)
{
    static const CMPIInstanceFT table = {CMPIVersion200,
                                         release<CMPIInstance>,
                                         nullptr,
                                         get,
                                         getAt,
                                         count,
                                         add,
                                         getObjectPath,
                                         nullptr,
                                         nullptr,
                                         nullptr};
    return &table;
}

const CMPIArrayFT* kindOf(const CMPIArray*, Value*)
{
    static const CMPIArrayFT table = {
        CMPIVersion200, release<CMPIArray>, nullptr, getSize, nullptr, getElementAt, setElementAt};
    return &table;
}

const CMPIArgsFT* kindOf(const CMPIArgs*, std::vector<Named>*)
{
    static const CMPIArgsFT table = {CMPIVersion200, release<CMPIArgs>, nullptr, add, get, getAt, count};
    return &table;
}

const CMPIEnumerationFT* kindOf(const CMPIEnumeration*, Items*)
{
    static const CMPIEnumerationFT table = {
        CMPIVersion200, release<CMPIEnumeration>, nullptr, getNext, hasNext, nullptr};
    return &table;
}

const CMPIContextFT* kindOf(const CMPIContext*, std::vector<Named>*)
{
    static const CMPIContextFT table = {
        CMPIVersion200, release<CMPIContext>, nullptr, get, getAt, count, add};
    return &table;
}

} // namespace test_broker
