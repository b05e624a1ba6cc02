// Function table of object paths.
#include "agent/broker/conversion.h"
#include "agent/broker/objects.h"

namespace cimd
{
namespace
{

ObjectPath& pathOf(const CMPIObjectPath* path)
{
    return objectOf<ObjectPathObject>(path).path();
}

CMPIStatus setNameSpace(const CMPIObjectPath* path, const char* nameSpace)
{
    return answer([&] { pathOf(path).setNameSpace(orEmpty(nameSpace)); });
}

CMPIString* getNameSpace(const CMPIObjectPath* path, CMPIStatus* rc)
{
    return answer(rc, [&] { return trackString(pathOf(path).nameSpace()); });
}

CMPIStatus setHostname(const CMPIObjectPath* path, const char* host)
{
    return answer([&] { pathOf(path).setHost(orEmpty(host)); });
}

CMPIString* getHostname(const CMPIObjectPath* path, CMPIStatus* rc)
{
    return answer(rc, [&] { return trackString(pathOf(path).host()); });
}

CMPIStatus setClassName(const CMPIObjectPath* path, const char* className)
{
    return answer([&] { pathOf(path).setClassName(CimName(orEmpty(className))); });
}

CMPIString* getClassName(const CMPIObjectPath* path, CMPIStatus* rc)
{
    return answer(rc, [&] { return trackString(pathOf(path).className().str()); });
}

CMPIStatus addKey(const CMPIObjectPath* path, const char* name, const CMPIValue* value, CMPIType type)
{
    return answer(
        [&]
        {
            auto& target = objectOf<ObjectPathObject>(path);
            CimValue key = fromCmpi(value, type);
            if (key.isNull() || key.isArray())
                throw CmpiError(CMPI_RC_ERR_INVALID_PARAMETER,
                                "key " + std::string(orEmpty(name)) + " is " +
                                    (key.isArray() ? "an array" : "NULL"));
            target.setKey(required(name, "the name of a key"), std::move(key));
        });
}

CMPIData getKey(const CMPIObjectPath* path, const char* name, CMPIStatus* rc)
{
    return answerValue(
        rc, [&] { return pathOf(path).findKey(CimName(orEmpty(name))); }, CMPI_keyValue);
}

CMPIData getKeyAt(const CMPIObjectPath* path, CMPICount index, CMPIString** name, CMPIStatus* rc)
{
    const auto keys = [&]() -> auto&
    {
        return pathOf(path).keys();
    };
    return answerItem(rc, keys, index, name, CMPI_keyValue);
}

CMPICount getKeyCount(const CMPIObjectPath* path, CMPIStatus* rc)
{
    return answer(rc, [&] { return static_cast<CMPICount>(pathOf(path).keys().size()); });
}

CMPIStatus setNameSpaceFrom(const CMPIObjectPath* path, const CMPIObjectPath* source)
{
    return answer(
        [&]
        {
            const ObjectPath& from = pathOf(source);
            pathOf(path).setNameSpace(from.nameSpace());
            pathOf(path).setClassName(from.className());
        });
}

CMPIStatus setHostAndNameSpaceFrom(const CMPIObjectPath* path, const CMPIObjectPath* source)
{
    const CMPIStatus status = setNameSpaceFrom(path, source);
    return status.rc != CMPI_RC_OK ? status : answer([&] { pathOf(path).setHost(pathOf(source).host()); });
}

// Qualifiers are optional in CMPI; providers of this interface know their own classes.
CMPIData noQualifiers(CMPIStatus* rc)
{
    const CMPIData data = notFound(nullptr);
    if (rc)
        *rc = {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    return data;
}

CMPIData getClassQualifier(const CMPIObjectPath*, const char*, CMPIStatus* rc)
{
    return noQualifiers(rc);
}

CMPIData getFeatureQualifier(const CMPIObjectPath*, const char*, const char*, CMPIStatus* rc)
{
    return noQualifiers(rc);
}

CMPIData getParameterQualifier(const CMPIObjectPath*, const char*, const char*, const char*, CMPIStatus* rc)
{
    return noQualifiers(rc);
}

CMPIString* toString(const CMPIObjectPath* path, CMPIStatus* rc)
{
    return answer(rc, [&] { return trackString(pathOf(path).text()); });
}

} // namespace

const CMPIObjectPathFT kObjectPathTable{CMPIVersion200,
                                        releaseObject<ObjectPathObject>,
                                        cloneObject<ObjectPathObject>,
                                        setNameSpace,
                                        getNameSpace,
                                        setHostname,
                                        getHostname,
                                        setClassName,
                                        getClassName,
                                        addKey,
                                        getKey,
                                        getKeyAt,
                                        getKeyCount,
                                        setNameSpaceFrom,
                                        setHostAndNameSpaceFrom,
                                        getClassQualifier,
                                        getFeatureQualifier,
                                        getFeatureQualifier,
                                        getParameterQualifier,
                                        toString};

} // namespace cimd
