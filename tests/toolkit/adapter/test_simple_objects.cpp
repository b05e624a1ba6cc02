// Function tables of the test broker's strings, datetimes, arrays and enumerations.
#include "test_object_types.h"

namespace test_broker
{

namespace
{

// --- strings and datetimes

template <class T>
std::unique_ptr<T> makeText(Journal& journal, const std::string& text);

CMPIString* cloneString(const CMPIString* s, CMPIStatus* rc)
{
    return adopt<CMPIString>(makeText<StringObject>(self(s).journal, self(s).text), rc);
}

const char* getCharPtr(const CMPIString* s, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return self(s).text.c_str();
}

const CMPIStringFT stringFT = {CMPIVersion200, release<CMPIString>, cloneString, getCharPtr};

CMPIDateTime* cloneDateTime(const CMPIDateTime* d, CMPIStatus* rc)
{
    return adopt<CMPIDateTime>(makeText<DateTimeObject>(self(d).journal, self(d).text), rc);
}

CMPIUint64 getBinaryFormat(const CMPIDateTime* d, CMPIStatus* rc)
{
    self(d).journal.violation("getBinaryFormat is not part of this broker: it loses the offset");
    done(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return 0;
}

CMPIString* getStringFormat(const CMPIDateTime* d, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return newString(self(d).journal, self(d).text);
}

CMPIBoolean isInterval(const CMPIDateTime* d, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return self(d).text[21] == ':';
}

const CMPIDateTimeFT dateTimeFT = {
    CMPIVersion200, release<CMPIDateTime>, cloneDateTime, getBinaryFormat, getStringFormat, isInterval};

void bind(StringObject& object)
{
    object.hdl = object.text.c_str();
    object.ft = &stringFT;
}
void bind(DateTimeObject& object)
{
    object.hdl = &object.text;
    object.ft = &dateTimeFT;
}

template <class T>
std::unique_ptr<T> makeText(Journal& journal, const std::string& text)
{
    auto object = std::make_unique<T>(journal);
    object->text = text;
    bind(*object);
    return object;
}

// --- arrays

std::unique_ptr<ArrayObject> makeArray(Journal& journal, const Value& value);

CMPIArray* cloneArray(const CMPIArray* a, CMPIStatus* rc)
{
    return adopt<CMPIArray>(makeArray(self(a).journal, self(a).value), rc);
}

CMPICount getSize(const CMPIArray* a, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return static_cast<CMPICount>(self(a).value.elements.size());
}

CMPIType getSimpleType(const CMPIArray* a, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return static_cast<CMPIType>(self(a).value.type & ~CMPI_ARRAY);
}

CMPIData getElementAt(const CMPIArray* a, CMPICount index, CMPIStatus* rc)
{
    const auto& elements = self(a).value.elements;
    done(rc, index < elements.size() ? CMPI_RC_OK : CMPI_RC_ERR_NO_SUCH_PROPERTY);
    return dataOf(self(a).journal, index < elements.size() ? elements[index] : Value());
}

CMPIStatus setElementAt(const CMPIArray* a, CMPICount index, const CMPIValue* value, CMPIType type)
{
    auto& array = self(a);
    if (index >= array.value.elements.size())
        return {CMPI_RC_ERR_NO_SUCH_PROPERTY, nullptr};
    if (type != (array.value.type & ~CMPI_ARRAY))
        return {CMPI_RC_ERR_TYPE_MISMATCH, nullptr};
    if (!value)
        return {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    array.value.elements[index] = valueOf(value, type);
    return {CMPI_RC_OK, nullptr};
}

const CMPIArrayFT arrayFT = {
    CMPIVersion200, release<CMPIArray>, cloneArray, getSize, getSimpleType, getElementAt, setElementAt};

std::unique_ptr<ArrayObject> makeArray(Journal& journal, const Value& value)
{
    auto object = std::make_unique<ArrayObject>(journal);
    object->value = value;
    object->hdl = &object->value;
    object->ft = &arrayFT;
    return object;
}

// --- enumerations

CMPIEnumeration* cloneEnumeration(const CMPIEnumeration*, CMPIStatus* rc)
{
    done(rc, CMPI_RC_ERR_NOT_SUPPORTED);
    return nullptr;
}

CMPIData getNext(const CMPIEnumeration* e, CMPIStatus* rc)
{
    auto& en = self(e);
    const bool more = en.next < en.items.size();
    done(rc, more ? CMPI_RC_OK : CMPI_RC_NO_MORE_ELEMENTS);
    return dataOf(en.journal, more ? en.items[en.next++] : Value());
}

CMPIBoolean hasNext(const CMPIEnumeration* e, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return self(e).next < self(e).items.size();
}

CMPIArray* toArray(const CMPIEnumeration* e, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    const auto& items = self(e).items;
    const CMPIType type = items.empty() ? CMPIType(CMPI_instance) : items[0].type;
    return newArray(self(e).journal, Value::array(type, items));
}

const CMPIEnumerationFT enumerationFT = {
    CMPIVersion200, release<CMPIEnumeration>, cloneEnumeration, getNext, hasNext, toArray};

} // namespace

CMPIString* newString(Journal& journal, const std::string& text)
{
    return track(makeText<StringObject>(journal, text));
}

CMPIDateTime* newDateTime(Journal& journal, const std::string& text)
{
    return track(makeText<DateTimeObject>(journal, text));
}

CMPIArray* newArray(Journal& journal, const Value& array)
{
    return track(makeArray(journal, array));
}

CMPIEnumeration* newEnumeration(Journal& journal, const std::vector<Value>& items)
{
    auto object = std::make_unique<EnumerationObject>(journal);
    object->items = items;
    object->hdl = &object->items;
    object->ft = &enumerationFT;
    return track(std::move(object));
}

} // namespace test_broker
