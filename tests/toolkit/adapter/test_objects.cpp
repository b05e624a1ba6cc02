// Tracking of the test broker's objects, and values in and out of them.
#include "test_objects.h"

#include <algorithm>
#include <cstring>

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

Session::Session(const CMPIContext* context) : _context(context), _outer(currentSession)
{
    currentSession = this;
}

Session::~Session()
{
    _objects.clear();
    currentSession = _outer;
}

Session* Session::current()
{
    return currentSession;
}

bool Session::release(Object* object)
{
    // Objects released early are young: search from the end.
    auto at = std::find_if(_objects.rbegin(), _objects.rend(), [&](auto& o) { return o.get() == object; });
    if (at == _objects.rend())
        return false;
    _objects.erase(std::next(at).base());
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

Value valueOf(const CMPIValue* value, CMPIType type)
{
    if (type & CMPI_ARRAY)
        return value->array ? contentOf(value->array) : Value::nullOf(type);
    switch (type)
    {
    case CMPI_chars:
        return Value::string(reinterpret_cast<const char*>(value));
    case CMPI_string:
        return value->string ? Value::string(contentOf(value->string)) : Value::nullOf(type);
    case CMPI_dateTime:
        return value->dateTime ? Value::dateTime(contentOf(value->dateTime)) : Value::nullOf(type);
    case CMPI_ref:
        return value->ref ? Value::ref(contentOf(value->ref)) : Value::nullOf(type);
    case CMPI_instance:
        return value->inst ? Value::instance(contentOf(value->inst)) : Value::nullOf(type);
    case CMPI_boolean:
        return Value::boolean(value->boolean != 0);
    case CMPI_char16:
        return Value::char16(value->char16);
    case CMPI_real32:
        return Value::real32(value->real32);
    case CMPI_real64:
        return Value::real64(value->real64);
#define RETURN_VALUE(MEMBER, PREFIX)                                                                         \
    case CMPI_##MEMBER:                                                                                      \
        return Value::integer(type, static_cast<CMPIUint64>(value->MEMBER));
        TEST_BROKER_INTEGERS(RETURN_VALUE)
#undef RETURN_VALUE
    default:
        return Value();
    }
}

std::string textOf(const CMPIString* string)
{
    return string ? contentOf(string) : std::string();
}

} // namespace test_broker
