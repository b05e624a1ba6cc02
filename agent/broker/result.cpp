// Function table of results: every result is checked and handed on at once.
#include "agent/broker/result.h"

#include "agent/broker/InstanceObject.h"
#include "agent/broker/conversion.h"
#include "agent/cim/CimError.h"
#include "agent/repository/completion.h"

namespace cimd
{
namespace
{

[[noreturn]] void unexpected(const char* what)
{
    throw CimError(CimStatus::Failed,
                   std::string("the provider returned ") + what + ", which the operation does not");
}

// Remembers the first failure; the provider learns that the request is over.
template <class Deliver>
CMPIStatus deliver(const CMPIResult* result, Deliver body)
{
    return answer(
        [&]
        {
            auto& object = objectOf<ResultObject>(result);
            if (object.failure)
                throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "the request was ended by an earlier error");
            try
            {
                if (object.isDone)
                    throw CimError(CimStatus::Failed,
                                   "the provider returned a result after it said there were no more");
                body(object);
            }
            catch (const CmpiError& error)
            {
                object.failure = std::make_exception_ptr(
                    CimError(CimStatus::Failed,
                             std::string("the provider returned something unusable: ") + error.what()));
                throw;
            }
            catch (...)
            {
                object.failure = std::current_exception();
                throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "the request was ended by an error");
            }
        });
}

// An instance of this call is completed in place; a clone belongs to the provider, who may be returning it to
// others at the same time.
void deliverInstance(ResultObject& object, InstanceObject& returned)
{
    if (!object.receiver.needsPath())
    {
        const Instance complete = returned.completeWithoutPath(object.requestNameSpace);
        object.receiver.instance(complete, *returned.info);
    }
    else if (returned.owner())
    {
        const Instance& complete = returned.complete(object.requestNameSpace);
        object.receiver.instance(complete, *returned.info);
    }
    else
    {
        InstanceObject copy(returned);
        const Instance& complete = copy.complete(object.requestNameSpace);
        object.receiver.instance(complete, *copy.info);
    }
}

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value, CMPIType type)
{
    return deliver(result, [&](ResultObject& object) { object.receiver.data(fromCmpi(value, type)); });
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* instance)
{
    return deliver(
        result, [&](ResultObject& object) { deliverInstance(object, objectOf<InstanceObject>(instance)); });
}

void deliverPath(ResultObject& object, ObjectPath& path)
{
    CallScope* const scope = CallScope::current(); // none on a thread of the provider's own
    const ClassInfo* const info =
        scope ? scope->findClass(path.className().str()) : object.repository.find(path.className());
    if (!info)
        throw CimError(CimStatus::Failed,
                       "the provider returned a path of the unknown class " + path.className().str());
    try
    {
        completePath(path, *info, object.repository, object.requestNameSpace);
    }
    catch (const ShapeError& error)
    {
        throw CimError(CimStatus::Failed, std::string("the provider's path is wrong: ") + error.what());
    }
    object.receiver.path(path, *info);
}

// Clones are not touched, as with instances.
CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path)
{
    return deliver(result,
                   [&](ResultObject& object)
                   {
                       auto& returned = objectOf<ObjectPathObject>(path);
                       if (returned.owner())
                           return deliverPath(object, returned.path());
                       ObjectPathObject copy(returned);
                       deliverPath(object, copy.path());
                   });
}

CMPIStatus returnDone(const CMPIResult* result)
{
    return answer(
        [&]
        {
            auto& object = objectOf<ResultObject>(result);
            if (object.failure)
                throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "the request was ended by an earlier error");
            object.isDone = true;
        });
}

CMPIStatus returnError(const CMPIResult*, const CMPIError*)
{
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

// A result belongs to one request; a copy would have nobody to deliver to.
CMPIResult* cloneResult(const CMPIResult*, CMPIStatus* rc)
{
    if (rc)
        *rc = {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
    return nullptr;
}

CMPIStatus releaseResult(CMPIResult*)
{
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

} // namespace

void ResultReceiver::instance(const Instance&, const ClassInfo&)
{
    unexpected("an instance");
}

void ResultReceiver::path(const ObjectPath&, const ClassInfo&)
{
    unexpected("an object path");
}

void ResultReceiver::data(const CimValue&)
{
    unexpected("a plain value");
}

const CMPIResultFT kResultTable{CMPIVersion200,
                                releaseResult,
                                cloneResult,
                                returnData,
                                returnInstance,
                                returnObjectPath,
                                returnDone,
                                returnError};

} // namespace cimd
