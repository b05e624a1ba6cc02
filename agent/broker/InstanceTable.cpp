// Function table of instances.
#include "agent/broker/Conversion.h"
#include "agent/broker/InstanceObject.h"
#include "agent/log/Log.h"

namespace cimd
{
namespace
{

CMPIData propertyData(const InstanceObject& object, const Property& property)
{
    const bool isKey =
        object.info && object.info->properties()[*object.info->findProperty(property.name.str())]->isKey();
    return toCmpi(property.value, isKey ? CMPI_keyValue : CMPI_goodValue);
}

CMPIData getProperty(const CMPIInstance* instance, const char* name, CMPIStatus* rc)
{
    bool isFound = true;
    const CMPIData result = answer(rc,
                                   [&]
                                   {
                                       const auto& object = objectOf<InstanceObject>(instance);
                                       const Property* property = object.find(orEmpty(name));
                                       isFound = property != nullptr;
                                       return isFound ? propertyData(object, *property) : CMPIData{};
                                   });
    return isFound ? result : notFound(rc);
}

CMPIData getPropertyAt(const CMPIInstance* instance, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    bool isFound = true;
    const CMPIData result = answer(rc,
                                   [&]
                                   {
                                       const auto& object = objectOf<InstanceObject>(instance);
                                       const Property* property = object.at(index);
                                       isFound = property != nullptr;
                                       if (!isFound)
                                           return CMPIData{};
                                       if (name)
                                           *name = trackString(property->name.str());
                                       return propertyData(object, *property);
                                   });
    return isFound ? result : notFound(rc);
}

CMPICount getPropertyCount(const CMPIInstance* instance, CMPIStatus* rc)
{
    return answer(rc, [&] { return static_cast<CMPICount>(objectOf<InstanceObject>(instance).count()); });
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
            object.set(required(name, "the name of a property"), fromCmpi(value, type));
        });
    // Providers seldom look at this code, and the value is lost.
    if (status.rc != CMPI_RC_OK && status.msg)
        log(LogLevel::Warning, "broker", "setProperty: " + objectOf<StringObject>(status.msg).text);
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
    return answer([&] { objectOf<InstanceObject>(instance).setPath(objectOf<ObjectPathObject>(path).path); });
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
