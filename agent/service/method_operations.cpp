// Extrinsic methods.
#include "agent/broker/objects.h"
#include "agent/cim/CimError.h"
#include "agent/cim/coercion.h"
#include "agent/repository/completion.h"
#include "agent/service/CimService.h"

#include <algorithm>

namespace cimd
{
namespace
{

// The return value, whichever way the provider returned it.
class ReturnValue : public ResultReceiver
{
  public:
    explicit ReturnValue(CimType type) : _value(CimValue::null(type)) {}

    bool needsPath() const override { return false; }
    void instance(const Instance& instance, const ClassInfo&) override
    {
        set(CimValue::embedded(CimType::Instance, instance));
    }
    void path(const ObjectPath& path, const ClassInfo&) override { set(CimValue::reference(path)); }
    void data(const CimValue& value) override { set(value); }

    const CimValue& get() const { return _value; }

  private:
    void set(const CimValue& value)
    {
        const auto fitting = conform(value, _value.type(), false);
        if (!fitting)
            throw CimError(CimStatus::Failed,
                           "the provider returned a " + typeText(value.type(), value.isArray()) +
                               " where the method is declared to return a " + typeText(_value.type(), false));
        if (_isSet)
            throw CimError(CimStatus::Failed, "the provider returned more than one return value");
        _value = *fitting;
        _isSet = true;
    }

    CimValue _value;
    bool _isSet = false;
};

// What a provider put out, in order of declaration. CimError (failed) for what the method does not declare.
class OutArguments
{
  public:
    OutArguments(const MethodDecl& method, const ClassRepository& repository, const std::string& nameSpace)
        : _method(method), _repository(repository), _nameSpace(nameSpace)
    {
    }

    std::vector<Argument> take(const std::vector<Argument>& given) const
    {
        for (const Argument& argument : given)
        {
            const ParameterDecl* declared = _method.findParameter(argument.name);
            if (!declared || !declared->isOut())
                throw CimError(CimStatus::Failed,
                               "method " + _method.name.str() + ": the provider set " + argument.name.str() +
                                   ", which is no output parameter");
        }
        std::vector<Argument> result;
        for (const ParameterDecl& declared : _method.parameters)
            if (declared.isOut())
                result.push_back({declared.name, valueFor(declared, given)});
        return result;
    }

  private:
    CimValue valueFor(const ParameterDecl& declared, const std::vector<Argument>& given) const
    {
        const auto place =
            std::find_if(given.begin(),
                         given.end(),
                         [&](const Argument& argument) { return argument.name == declared.name; });
        if (place == given.end())
            return CimValue::null(declared.type, declared.isArray);
        const auto fitting = conform(place->value, declared.type, declared.isArray);
        if (!fitting)
            throw CimError(CimStatus::Failed,
                           "method " + _method.name.str() + ": the provider set parameter " +
                               declared.name.str() + " as " +
                               typeText(place->value.type(), place->value.isArray()) + " but it is " +
                               typeText(declared.type, declared.isArray));
        try
        {
            return completeValue(*fitting, declared, _repository, _nameSpace);
        }
        catch (const ShapeError& error)
        {
            throw CimError(CimStatus::Failed,
                           "method " + _method.name.str() + ": the provider's value of parameter " +
                               declared.name.str() + " is wrong: " + error.what());
        }
    }

    const MethodDecl& _method;
    const ClassRepository& _repository;
    const std::string& _nameSpace;
};

} // namespace

MethodResult CimService::invokeMethod(const RequestContext& context, const InvokeMethodRequest& request) const
{
    const InputCheck check = in(request.nameSpace);
    const ClassInfo& info = check.classNamed(request.path.className());
    const MethodDecl* method = info.findMethod(request.method);
    if (!method)
        throw CimError(CimStatus::MethodNotFound,
                       "class " + info.name().str() + " has no method " + request.method.str());
    // A static method belongs to the class, whichever of its instances it is called on.
    const ObjectPath path = method->isStatic() ? ObjectPath(check.nameSpace(), info.name())
                                               : check.instancePath(request.path, info);
    std::vector<Argument> arguments = check.arguments(request.arguments, *method);
    const std::string operation = "InvokeMethod " + method->name.str();
    const ProviderEntry& entry = providerOf(info, ProviderKind::Method, check.nameSpace(), operation.c_str());

    ReturnValue returned(method->returnType);
    MethodResult result;
    call(context,
         entry,
         check.nameSpace(),
         operation.c_str(),
         0,
         returned,
         &Provider::method,
         [&](ProviderCall& each, CMPIMethodMI* mi)
         {
             CMPIArgs* out = each.arguments();
             const CMPIStatus status = mi->ft->invokeMethod(mi,
                                                            each.context(),
                                                            each.result(),
                                                            each.path(path),
                                                            method->name.c_str(),
                                                            each.arguments(std::move(arguments)),
                                                            out);
             if (status.rc == CMPI_RC_OK)
                 result.out = objectOf<ArgsObject>(out).arguments;
             return status;
         });
    result.returnValue = returned.get();
    result.out = OutArguments(*method, _repository, check.nameSpace()).take(result.out);
    return result;
}

} // namespace cimd
