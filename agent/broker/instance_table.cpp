// Function table of instances.
#include "agent/broker/InstanceObject.h"
#include "agent/broker/conversion.h"
#include "agent/log/log.h"

#include <mutex>
#include <unordered_set>

namespace cimd
{
namespace
{

std::optional<CMPIData> dataOf(const InstanceObject& object, const Property* property)
{
    if (!property)
        return std::nullopt;
    const bool isKey =
        object.info && object.info->properties()[*object.info->findProperty(property->name.str())]->isKey();
    return toCmpi(property->value, isKey ? CMPI_keyValue : CMPI_goodValue);
}

CMPIData getProperty(const CMPIInstance* instance, const char* name, CMPIStatus* rc)
{
    return answerFound(rc,
                       [&]
                       {
                           const auto& object = objectOf<InstanceObject>(instance);
                           return dataOf(object, object.find(orEmpty(name)));
                       });
}

CMPIData getPropertyAt(const CMPIInstance* instance, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    return answerFound(rc,
                       [&]
                       {
                           const auto& object = objectOf<InstanceObject>(instance);
                           const Property* property = object.at(index);
                           if (property && name)
                               *name = trackString(property->name.str());
                           return dataOf(object, property);
                       });
}

CMPICount getPropertyCount(const CMPIInstance* instance, CMPIStatus* rc)
{
    return answer(rc, [&] { return static_cast<CMPICount>(objectOf<InstanceObject>(instance).count()); });
}

// Providers seldom look at the status of setProperty, and the value is lost: the log says so, but not for
// every instance of an enumeration.
void report(const CMPIStatus& status)
{
    constexpr std::size_t kMaxReported = 256;
    static auto& mutex = *new std::mutex;
    static auto& reported = *new std::unordered_set<std::string>;
    if (status.rc == CMPI_RC_OK || !status.msg)
        return;
    const std::string& text = objectOf<StringObject>(status.msg).text;
    const std::lock_guard lock(mutex);
    if (reported.size() < kMaxReported && reported.insert(text).second)
        log(LogLevel::Warning, "broker", "setProperty: " + text + "; said once");
}

CimValue readValue(InstanceObject& object, const char* name, const CMPIValue* value, CMPIType type)
{
    try
    {
        return fromCmpi(value, type);
    }
    catch (const CmpiError& error)
    {
        object.fail(name, std::string("was set to something unreadable: ") + error.what());
        throw;
    }
}

// The origin is the repository's to say.
CMPIStatus setPropertyWithOrigin(const CMPIInstance* instance,
                                 const char* name,
                                 const CMPIValue* value,
                                 CMPIType type,
                                 const char* /*origin*/)
{
    const CMPIStatus status = answer(
        [&]
        {
            auto& object = objectOf<InstanceObject>(instance);
            required(name, "the name of a property");
            object.set(name, readValue(object, name, value, type));
        });
    report(status);
    return status;
}

CMPIStatus setProperty(const CMPIInstance* instance, const char* name, const CMPIValue* value, CMPIType type)
{
    return setPropertyWithOrigin(instance, name, value, type, nullptr);
}

CMPIObjectPath* getObjectPath(const CMPIInstance* instance, CMPIStatus* rc)
{
    return answer(rc,
                  [&]() -> CMPIObjectPath*
                  { return track<ObjectPathObject>(objectOf<InstanceObject>(instance).path()); });
}

CMPIStatus setPropertyFilter(const CMPIInstance* instance, const char** properties, const char** keys)
{
    return answer([&] { objectOf<InstanceObject>(instance).keepOnly(properties, keys); });
}

CMPIStatus setObjectPath(const CMPIInstance* instance, const CMPIObjectPath* path)
{
    return answer([&]
                  { objectOf<InstanceObject>(instance).setPath(objectOf<ObjectPathObject>(path).path()); });
}

} // namespace

const CMPIInstanceFT kInstanceTable{CMPIVersion200,
                                    releaseObject<InstanceObject>,
                                    cloneObject<InstanceObject>,
                                    getProperty,
                                    getPropertyAt,
                                    getPropertyCount,
                                    setProperty,
                                    getObjectPath,
                                    setPropertyFilter,
                                    setObjectPath,
                                    setPropertyWithOrigin};

} // namespace cimd
