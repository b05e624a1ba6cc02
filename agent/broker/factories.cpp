// Object factories and small services of the broker.
#include "agent/broker/Broker.h"
#include "agent/broker/InstanceObject.h"
#include "agent/broker/conversion.h"
#include "agent/broker/message.h"
#include "agent/broker/result.h"
#include "agent/broker/tables.h"
#include "agent/log/log.h"

#include <cstring>

namespace cimd
{
namespace
{

CMPIInstance* newInstance(const CMPIBroker* mb, const CMPIObjectPath* path, CMPIStatus* rc)
{
    return answer(rc,
                  [&]() -> CMPIInstance* {
                      return track<InstanceObject>(Broker::of(mb).repository(),
                                                   objectOf<ObjectPathObject>(path).path());
                  });
}

CMPIObjectPath* newObjectPath(const CMPIBroker*, const char* nameSpace, const char* className, CMPIStatus* rc)
{
    return answer(rc,
                  [&]() -> CMPIObjectPath*
                  { return track<ObjectPathObject>(orEmpty(nameSpace), orEmpty(className)); });
}

CMPIArgs* newArgs(const CMPIBroker*, CMPIStatus* rc)
{
    return answer(rc, []() -> CMPIArgs* { return track<ArgsObject>(); });
}

CMPIString* newString(const CMPIBroker*, const char* text, CMPIStatus* rc)
{
    return answer(rc, [&] { return trackString(orEmpty(text)); });
}

CMPIArray* newArray(const CMPIBroker*, CMPICount size, CMPIType type, CMPIStatus* rc)
{
    return answer(rc, [&]() -> CMPIArray* { return track<ArrayObject>(CimArray(cimType(type), size)); });
}

CMPIDateTime* newDateTime(const CMPIBroker*, CMPIStatus* rc)
{
    return answer(rc, []() -> CMPIDateTime* { return track<DateTimeObject>(CimDateTime::now()); });
}

CMPIDateTime* trackDateTime(const std::optional<CimDateTime>& time, const char* problem)
{
    if (!time)
        throw CmpiError(CMPI_RC_ERR_INVALID_PARAMETER, problem);
    return track<DateTimeObject>(*time);
}

CMPIDateTime* newDateTimeFromBinary(const CMPIBroker*, CMPIUint64 time, CMPIBoolean interval, CMPIStatus* rc)
{
    return answer(rc,
                  [&]
                  {
                      return trackDateTime(interval ? CimDateTime::intervalFromMicroseconds(time)
                                                    : CimDateTime::fromMicroseconds(time),
                                           "the time is beyond what a date-time can say");
                  });
}

CMPIDateTime* newDateTimeFromChars(const CMPIBroker*, const char* text, CMPIStatus* rc)
{
    return answer(
        rc, [&] { return trackDateTime(CimDateTime::parse(orEmpty(text)), "the text is no CIM date-time"); });
}

CMPISelectExp*
newSelectExp(const CMPIBroker*, const char*, const char*, CMPIArray** projection, CMPIStatus* rc)
{
    if (projection)
        *projection = nullptr;
    if (rc)
        *rc = {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    return nullptr;
}

CMPIBoolean
classPathIsA(const CMPIBroker* mb, const CMPIObjectPath* path, const char* className, CMPIStatus* rc)
{
    return answer(rc,
                  [&]() -> CMPIBoolean
                  {
                      const ObjectPath& target = objectOf<ObjectPathObject>(path).path();
                      const CimName wanted(required(className, "the class name"));
                      const ClassInfo* info = Broker::of(mb).repository().find(target.className());
                      if (!info && target.className() != wanted)
                          throw CmpiError(CMPI_RC_ERR_NOT_FOUND,
                                          "class " + target.className().str() + " is unknown");
                      return !info || info->isA(wanted) ? 1 : 0;
                  });
}

// Any object begins with handle and table, and the table tells its type.
const void* tableOf(const void* object)
{
    if (!object)
        throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "the object is NULL");
    const void* table = nullptr;
    std::memcpy(&table, static_cast<const char*>(object) + offsetof(CMPIString, ft), sizeof(table));
    return table;
}

const char* typeNameOf(const void* object)
{
    const void* table = tableOf(object);
    const std::pair<const void*, const char*> kTypes[] = {{&kStringTable, "CMPIString"},
                                                          {&kArrayTable, "CMPIArray"},
                                                          {&kDateTimeTable, "CMPIDateTime"},
                                                          {&kObjectPathTable, "CMPIObjectPath"},
                                                          {&kInstanceTable, "CMPIInstance"},
                                                          {&kArgsTable, "CMPIArgs"},
                                                          {&kEnumerationTable, "CMPIEnumeration"},
                                                          {&kContextTable, "CMPIContext"},
                                                          {&kResultTable, "CMPIResult"}};
    for (const auto& [known, name] : kTypes)
        if (known == table)
            return name;
    throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "not an object of this broker");
}

std::string describe(const void* object)
{
    std::string type = typeNameOf(object);
    if (type == "CMPIString")
        return objectOf<StringObject>(static_cast<const CMPIString*>(object)).text;
    if (type == "CMPIDateTime")
        return std::string(objectOf<DateTimeObject>(static_cast<const CMPIDateTime*>(object)).value.text());
    if (type == "CMPIObjectPath")
        return objectOf<ObjectPathObject>(static_cast<const CMPIObjectPath*>(object)).path().text();
    if (type == "CMPIInstance")
        return "instance of " +
               objectOf<InstanceObject>(static_cast<const CMPIInstance*>(object)).path().text();
    return type;
}

CMPIString* toString(const CMPIBroker*, const void* object, CMPIStatus* rc)
{
    return answer(rc, [&] { return trackString(describe(object)); });
}

CMPIBoolean isOfType(const CMPIBroker*, const void* object, const char* type, CMPIStatus* rc)
{
    return answer(rc,
                  [&]() -> CMPIBoolean
                  { return std::strcmp(typeNameOf(object), required(type, "the type name")) == 0 ? 1 : 0; });
}

CMPIString* getType(const CMPIBroker*, const void* object, CMPIStatus* rc)
{
    return answer(rc, [&] { return trackString(typeNameOf(object)); });
}

// There are no message catalogues: every message is its default text.
CMPIString* getMessage(const CMPIBroker*, const char*, const char* text, CMPIStatus* rc, CMPICount count, ...)
{
    std::va_list values;
    va_start(values, count);
    CMPIString* message = answer(rc, [&] { return trackString(formatMessage(text, count, values)); });
    va_end(values);
    return message;
}

CMPIString* getMessage2(
    const CMPIBroker*, const char*, CMPIMsgFileHandle, const char* text, CMPIStatus* rc, CMPICount count, ...)
{
    std::va_list values;
    va_start(values, count);
    CMPIString* message = answer(rc, [&] { return trackString(formatMessage(text, count, values)); });
    va_end(values);
    return message;
}

CMPIStatus openMessageFile(const CMPIBroker*, const char*, CMPIMsgFileHandle* handle)
{
    if (handle)
        *handle = nullptr;
    return {CMPI_RC_ERR_NOT_FOUND, nullptr};
}

CMPIStatus closeMessageFile(const CMPIBroker*, CMPIMsgFileHandle handle)
{
    return {handle ? CMPI_RC_ERR_INVALID_HANDLE : CMPI_RC_OK, nullptr};
}

CMPIStatus write(LogLevel level, const char* area, const char* text, const CMPIString* string)
{
    return answer(
        [&]
        {
            if (!logEnabled(level))
                return;
            if (text)
                log(level, area, text);
            else if (string)
                log(level, area, objectOf<StringObject>(string).text);
        });
}

CMPIStatus logMessage(
    const CMPIBroker*, CMPISeverity severity, const char* id, const char* text, const CMPIString* string)
{
    const LogLevel level = severity == CMPI_SEV_ERROR     ? LogLevel::Error
                           : severity == CMPI_SEV_WARNING ? LogLevel::Warning
                           : severity == CMPI_SEV_INFO    ? LogLevel::Info
                                                          : LogLevel::Debug;
    return write(level, id && *id ? id : "provider", text, string);
}

CMPIStatus
trace(const CMPIBroker*, CMPILevel, const char* component, const char* text, const CMPIString* string)
{
    return write(LogLevel::Debug, component && *component ? component : "provider", text, string);
}

// Extended errors are optional; the capability bit for them is not set.
CMPIError* newError(const CMPIBroker*,
                    const char*,
                    const char*,
                    const char*,
                    CMPIErrorSeverity,
                    CMPIErrorProbableCause,
                    CMPIrc,
                    CMPIStatus* rc)
{
    if (rc)
        *rc = {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    return nullptr;
}

} // namespace

const CMPIBrokerEncFT kFactoryTable{CMPIVersion200,
                                    newInstance,
                                    newObjectPath,
                                    newArgs,
                                    newString,
                                    newArray,
                                    newDateTime,
                                    newDateTimeFromBinary,
                                    newDateTimeFromChars,
                                    newSelectExp,
                                    classPathIsA,
                                    toString,
                                    isOfType,
                                    getType,
                                    getMessage,
                                    logMessage,
                                    trace,
                                    newError,
                                    openMessageFile,
                                    closeMessageFile,
                                    getMessage2};

} // namespace cimd
