// Looking at the properties of the server's own instances.
#include "server_schema.h"

#include "FromCmpi.h"
#include <cimple/Features.h>
#include <cmpimacs.h>

namespace cimple_cmpi
{

using namespace cimple;

bool isNull(const CMPIData& data)
{
    return (data.state & CMPI_nullValue) || data.type == CMPI_null;
}

std::vector<Named_Data> propertiesOf(const CMPIInstance* instance)
{
    std::vector<Named_Data> result(CMGetPropertyCount(instance, nullptr));
    for (size_t i = 0; i < result.size(); i++)
    {
        CMPIString* name = nullptr;
        result[i].data = CMGetPropertyAt(instance, static_cast<CMPICount>(i), &name, nullptr);
        result[i].name = textOf(name);
    }
    return result;
}

CMPIInstance* newInstance(const CMPIBroker* broker, const std::string& nameSpace, const char* className)
{
    const CMPIObjectPath* path = CMNewObjectPath(broker, nameSpace.c_str(), className, nullptr);
    return path ? CMNewInstance(broker, path, nullptr) : nullptr;
}

const Named_Data* findProperty(const std::vector<Named_Data>& properties, const std::string& name)
{
    for (const Named_Data& property : properties)
        if (eqi(property.name.c_str(), name.c_str()))
            return &property;
    return nullptr;
}

Prefilled::Prefilled(const Meta_Class* m, const CMPIInstance* fresh) : metaClass(m)
{
    for (const Named_Data& item : propertiesOf(fresh))
    {
        size_t i = 0;
        while (i < metaClass->num_meta_features && !eqi(metaClass->meta_features[i]->name, item.name.c_str()))
            i++;
        if (isNull(item.data))
            continue;
        if (i == metaClass->num_meta_features)
            unknown.emplace_back(item.name, item.data.type);
        else
        {
            features.resize(metaClass->num_meta_features, CMPI_null);
            features[i] = item.data.type;
        }
    }
}

const Prefilled& Prefilled_Classes::of(const Meta_Class* metaClass, const CMPIInstance* fresh)
{
    std::lock_guard<std::mutex> lock(_mutex);
    for (const Prefilled& known : _known)
        if (known.metaClass == metaClass)
            return known;
    return _known.emplace_back(metaClass, fresh);
}

} // namespace cimple_cmpi
