// Operations on single properties, done as reads and changes of their instance.
#include "agent/cim/CimError.h"
#include "agent/cim/coercion.h"
#include "agent/service/CimService.h"

namespace cimd
{
namespace
{

const PropertyDecl& propertyNamed(const CimName& name, const ClassInfo& info)
{
    const auto index = info.findProperty(name.str());
    if (!index)
        throw CimError(CimStatus::NoSuchProperty,
                       "class " + info.name().str() + " has no property " + name.str());
    return *info.properties()[*index];
}

// A value as the property is declared.
CimValue newValue(const Argument& given, const PropertyDecl& declared, const InputCheck& check)
{
    const std::string what = "property " + declared.name.str();
    const auto read =
        given.typed ? std::optional(given.value) : readUntyped(given.value, declared.type, declared.isArray);
    if (!read)
        throw CimError(CimStatus::TypeMismatch,
                       what + ": the value is no valid " + typeText(declared.type, declared.isArray));
    try
    {
        return check.value(*read, declared, what);
    }
    catch (const CimError& error)
    {
        throw CimError(CimStatus::TypeMismatch, error.what());
    }
}

} // namespace

CimValue CimService::getProperty(const RequestContext& context, const GetPropertyRequest& request) const
{
    const InputCheck check = in(request.nameSpace);
    const PropertyDecl& declared =
        propertyNamed(request.property, check.classNamed(request.path.className()));
    GetInstanceRequest read;
    read.nameSpace = request.nameSpace;
    read.path = request.path;
    read.properties = std::vector<CimName>{declared.name};
    const Instance instance = getInstance(context, read);
    return *instance.find(declared.name); // the service returns every property that is listed
}

void CimService::setProperty(const RequestContext& context, const SetPropertyRequest& request) const
{
    const InputCheck check = in(request.nameSpace);
    const ClassInfo& info = check.classNamed(request.path.className());
    const PropertyDecl& declared = propertyNamed(request.value.name, info);
    if (declared.isKey())
        throw CimError(CimStatus::InvalidParameter,
                       "property " + declared.name.str() + " of class " + info.name().str() +
                           " is a key: an instance keeps its keys for life");
    ModifyInstanceRequest change;
    change.nameSpace = request.nameSpace;
    change.instance = Instance(info.name());
    change.instance.setPath(request.path);
    change.instance.set(declared.name, newValue(request.value, declared, check));
    change.properties = std::vector<CimName>{declared.name};
    modifyInstance(context, change);
}

} // namespace cimd
