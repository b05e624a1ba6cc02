// The method interface.
#include "Call.h"
#include "ResultSink.h"
#include "ToCmpi.h"
#include "scalars.h"
#include <cmpimacs.h>

#include <vector>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

// The object that carries the parameters to the provider and back, with the input parameters set.
Ref<Instance> methodObject(const Meta_Method* method,
                           const FromCmpi& from,
                           const CMPIArgs* in,
                           const std::string& nameSpace)
{
    Ref<Instance> object(create(method));
    nullify_properties(object.ptr());
    const CMPICount count = in ? CMGetArgCount(in, nullptr) : 0;
    for (CMPICount i = 0; i < count; i++)
    {
        CMPIString* nameString = nullptr;
        const CMPIData data = CMGetArgAt(in, i, &nameString, nullptr);
        const std::string name = textOf(nameString);
        const Meta_Feature* parameter = find_feature(method, name.c_str());
        if (!parameter || eqi(name.c_str(), "return_value"))
            throw Failure(CMPI_RC_ERR_INVALID_PARAMETER,
                          std::string("method ") + method->name + " has no parameter " + name);
        if (parameter->flags & CIMPLE_FLAG_IN)
            from.setFeature(object.ptr(), parameter, data, nameSpace);
        else if (!(data.state & CMPI_nullValue) && data.type != CMPI_null)
            throw Failure(CMPI_RC_ERR_INVALID_PARAMETER,
                          std::string("parameter ") + parameter->name + " takes no input");
    }
    return object;
}

// A reference or an embedded instance has a way of its own into the result.
void returnValue(const CMPIResult* result, const CMPIData& data)
{
    CMPIStatus status;
    if (data.type == CMPI_ref)
        status = CMReturnObjectPath(result, data.value.ref);
    else if (data.type == CMPI_instance)
        status = CMReturnInstance(result, data.value.inst);
    else
        status = CMReturnData(result, &data.value, data.type);
    checkBroker(status, "the return value");
}

void returnOutput(const Instance* object, ToCmpi& to, const CMPIResult* result, CMPIArgs* out)
{
    // Everything is converted before anything is returned, so that a failure leaves no half of an answer.
    struct Output
    {
        const Meta_Feature* feature;
        CMPIData data;
    };
    std::vector<Output> outputs;
    for (const Meta_Feature* feature : features_of(object->meta_class))
    {
        Output output = {feature, {}};
        if (feature->flags & CIMPLE_FLAG_OUT && to.value(object, feature, output.data))
            outputs.push_back(output);
    }
    for (const Output& output : outputs)
    {
        if (eqi(output.feature->name, "return_value"))
            returnValue(result, output.data);
        else
            checkBroker(CMAddArg(out, output.feature->name, &output.data.value, output.data.type),
                        output.feature->name);
    }
    checkBroker(CMReturnDone(result), "the end of the result");
}

void invoke(Call& call,
            const CMPIResult* result,
            const CMPIObjectPath* path,
            const char* methodName,
            const CMPIArgs* in,
            CMPIArgs* out)
{
    const Meta_Class* modelClass = call.modelClass(classNameOf(path));
    const Meta_Method* method = find_method(modelClass, methodName);
    if (!method)
        throw Failure(CMPI_RC_ERR_METHOD_NOT_FOUND,
                      std::string("class ") + modelClass->name + " has no such method");
    // A static method may be called on the class or on any instance of it.
    const bool needsInstance = !(method->flags & CIMPLE_FLAG_STATIC) || CMGetKeyCount(path, nullptr) != 0;
    const FromCmpi from = call.from();
    const Ref<Instance> self =
        from.fromPath(path, modelClass, needsInstance ? FromCmpi::kAllKeys : FromCmpi::kNoKeys);
    const std::string nameSpace = nameSpaceOf(path);
    Ref<Instance> object = methodObject(method, from, in, nameSpace);

    bool known = false;
    const Invoke_Method_Status status = call.provider().invoke_method(self.ptr(), object.ptr(), &known);
    if (!known)
        throw Failure(CMPI_RC_ERR_METHOD_NOT_FOUND, "the provider does not have it");
    checkProvider(status);
    ToCmpi to(call.broker(), nameSpace);
    returnOutput(object.ptr(), to, result, out);
}

CMPIStatus cleanup(CMPIMethodMI* mi, const CMPIContext* context, CMPIBoolean terminating)
{
    return StaticData::of(mi->hdl).cleanup(kMethodMi, context, terminating);
}

CMPIStatus invokeMethod(CMPIMethodMI* mi,
                        const CMPIContext* context,
                        const CMPIResult* result,
                        const CMPIObjectPath* path,
                        const char* method,
                        const CMPIArgs* in,
                        CMPIArgs* out)
{
    const auto body = [&](Call& call) { invoke(call, result, path, method, in, out); };
    return run(mi, context, {"method", method}, body);
}

} // namespace

const CMPIMethodMIFT kMethodFunctions = {CMPIVersion200, CMPIVersion200, nullptr, cleanup, invokeMethod};

} // namespace cimple_cmpi
