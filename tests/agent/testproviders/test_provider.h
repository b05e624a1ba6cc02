// Short forms for writing CMPI test providers.
#ifndef TESTS_AGENT_TESTPROVIDERS_TEST_PROVIDER_H
#define TESTS_AGENT_TESTPROVIDERS_TEST_PROVIDER_H

#include <cmpimacs.h>
#include <cstring>
#include <string>
#include <strings.h>

namespace testprovider
{

inline CMPIStatus ok()
{
    return {CMPI_RC_OK, nullptr};
}

inline CMPIStatus failed(const CMPIBroker* broker, CMPIrc code, const char* text)
{
    return {code, CMNewString(broker, text, nullptr)};
}

inline std::string textOf(const CMPIString* string)
{
    return string ? CMGetCharsPtr(string, nullptr) : "";
}

// Of keys and string values; other types only need to differ.
inline std::string textOf(const CMPIData& data)
{
    if (CMIsNullValue(data))
        return "NULL";
    switch (data.type)
    {
    case CMPI_string:
        return textOf(data.value.string);
    case CMPI_boolean:
        return data.value.boolean ? "true" : "false";
    case CMPI_uint32:
        return std::to_string(data.value.uint32);
    case CMPI_dateTime:
        return textOf(CMGetStringFormat(data.value.dateTime, nullptr));
    default:
        return "?";
    }
}

inline std::string className(const CMPIObjectPath* path)
{
    return textOf(CMGetClassName(path, nullptr));
}

inline std::string keyText(const CMPIObjectPath* path, const char* key)
{
    CMPIStatus status = ok();
    const CMPIData data = CMGetKey(path, key, &status);
    return status.rc == CMPI_RC_OK ? textOf(data) : "";
}

inline void addKey(CMPIObjectPath* path, const char* key, const char* value)
{
    path->ft->addKey(path, key, reinterpret_cast<const CMPIValue*>(value), CMPI_chars);
}

inline CMPIStatus setText(CMPIInstance* instance, const char* name, const char* value)
{
    return instance->ft->setProperty(instance, name, reinterpret_cast<const CMPIValue*>(value), CMPI_chars);
}

inline CMPIStatus returnNumber(const CMPIResult* result, CMPIUint32 value)
{
    CMReturnData(result, &value, CMPI_uint32);
    return CMReturnDone(result);
}

// Every operation is refused until a provider puts its own in the place.
inline CMPIInstanceMIFT nothingSupported(const char* name)
{
    constexpr auto none = [](auto...) { return CMPIStatus{CMPI_RC_ERR_NOT_SUPPORTED, nullptr}; };
    constexpr auto cleanup = [](auto...) { return ok(); };
    return {CMPIVersion200, 1, name, cleanup, none, none, none, none, none, none, none};
}

inline bool isListed(const char** list, const std::string& name)
{
    if (!list)
        return true;
    for (; *list; ++list)
        if (strcasecmp(*list, name.c_str()) == 0)
            return true;
    return false;
}

} // namespace testprovider

#endif
