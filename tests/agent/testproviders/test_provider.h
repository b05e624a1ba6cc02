// Short forms for writing CMPI test providers.
#ifndef TESTS_AGENT_TESTPROVIDERS_TEST_PROVIDER_H
#define TESTS_AGENT_TESTPROVIDERS_TEST_PROVIDER_H

#include <cmpimacs.h>
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

inline std::string className(const CMPIObjectPath* path)
{
    return textOf(CMGetClassName(path, nullptr));
}

inline std::string keyText(const CMPIObjectPath* path, const char* key)
{
    CMPIStatus status = ok();
    const CMPIData data = CMGetKey(path, key, &status);
    return status.rc == CMPI_RC_OK ? textOf(data.value.string) : "";
}

inline void addKey(CMPIObjectPath* path, const char* key, const char* value)
{
    path->ft->addKey(path, key, reinterpret_cast<const CMPIValue*>(value), CMPI_chars);
}

inline void setText(CMPIInstance* instance, const char* name, const char* value)
{
    instance->ft->setProperty(instance, name, reinterpret_cast<const CMPIValue*>(value), CMPI_chars);
}

inline void setNumber(CMPIInstance* instance, const char* name, CMPIUint32 value)
{
    instance->ft->setProperty(instance, name, reinterpret_cast<const CMPIValue*>(&value), CMPI_uint32);
}

inline CMPIUint32 numberOf(const CMPIInstance* instance, const char* name)
{
    return CMGetProperty(instance, name, nullptr).value.uint32;
}

// What an operation on instances is called with; what it has not is null.
struct Call
{
    Call(const CMPIContext* c, const CMPIResult* r, const CMPIObjectPath* p, const char** names)
        : context(c), result(r), path(p), properties(names)
    {
    }
    Call(const CMPIContext* c,
         const CMPIResult* r,
         const CMPIObjectPath* p,
         const CMPIInstance* i = nullptr,
         const char** names = nullptr)
        : context(c), result(r), path(p), instance(i), properties(names)
    {
    }

    CMPIStatus returnOne(const CMPIInstance* one) const
    {
        const CMPIStatus status = CMReturnInstance(result, one);
        return status.rc == CMPI_RC_OK ? CMReturnDone(result) : status;
    }

    const CMPIContext* context;
    const CMPIResult* result;
    const CMPIObjectPath* path;
    const CMPIInstance* instance = nullptr;
    const char** properties = nullptr;
};

// A function of a table of operations that does Do, whatever its arguments.
template <CMPIStatus (*Do)(const Call&)>
constexpr auto operation = [](CMPIInstanceMI*, auto... arguments) { return Do(Call(arguments...)); };

constexpr auto nothingToClean = [](auto...) { return ok(); };

// Every operation is refused until a provider puts its own in the place.
inline CMPIInstanceMIFT nothingSupported(const char* name)
{
    constexpr auto none = [](auto...) { return CMPIStatus{CMPI_RC_ERR_NOT_SUPPORTED, nullptr}; };
    return {CMPIVersion200, 1, name, nothingToClean, none, none, none, none, none, none, none};
}

} // namespace testprovider

// The function that creates a provider's interface: a table of it is there, and `broker`.
#define PROVIDER_INTERFACE(Provider, Kind, table)                                                            \
    CMPI_EXTERN_C CMPI##Kind##MI* Provider##_Create_##Kind##MI(                                              \
        const CMPIBroker* mb, const CMPIContext*, CMPIStatus* rc)                                            \
    {                                                                                                        \
        static CMPI##Kind##MI interface {                                                                    \
            &broker, &(table)                                                                                \
        };                                                                                                   \
        broker = mb;                                                                                         \
        *rc = ok();                                                                                          \
        return &interface;                                                                                   \
    }

#endif
