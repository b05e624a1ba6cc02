// Setting up and judging calls of provider functions.
#include "agent/broker/ProviderCall.h"

#include "agent/broker/InstanceObject.h"
#include "agent/cim/CimError.h"

#include <cmpiresults.h>

namespace cimd
{
namespace
{

bool isClientStatus(CMPIrc code)
{
    return (code >= CMPI_RC_ERR_FAILED && code <= CMPI_RC_ERR_METHOD_NOT_FOUND) ||
           code == CMPI_RC_ERR_SERVER_LIMITS_EXCEEDED || code == CMPI_RC_ERR_QUERY_FEATURE_NOT_SUPPORTED;
}

// Only strings of this broker are read: a library may return anything.
std::string messageOf(const CMPIStatus& status)
{
    return status.msg && status.msg->ft == &kStringTable ? objectOf<StringObject>(status.msg).text
                                                         : std::string();
}

} // namespace

void throwStatus(const CMPIStatus& status, const std::string& label)
{
    const bool isKnown = isClientStatus(status.rc);
    const CimStatus code = isKnown ? static_cast<CimStatus>(status.rc) : CimStatus::Failed;
    std::string message = messageOf(status);
    if (message.empty())
        message = label + ": the provider answered " +
                  (isKnown ? std::string(statusName(code)) : "CMPI status " + std::to_string(status.rc)) +
                  " without a reason";
    throw CimError(code, message);
}

ProviderCall::ProviderCall(const Broker& broker, Origin origin, ResultReceiver& receiver)
    : _broker(broker), _label(std::move(origin.label)), _scope(broker.repository()),
      _context(track<ContextObject>(origin.request)),
      _result(track<ResultObject>(broker.repository(), origin.nameSpace, receiver))
{
    _context->set(CMPIInitNameSpace, CimValue::string(std::move(origin.nameSpace)));
    _context->set(CMPIInvocationFlags, CimValue::uint32(origin.flags));
    _context->set(CMPIPrincipal, CimValue::string(origin.request.principal));
    _context->set(CMPIRole, CimValue::string(std::move(origin.role)));
    _context->set(CMPIResultsAreCopied, CimValue::boolean(true)); // as result.h says
    _context->set(CMPIAcceptLanguage, CimValue::string(origin.request.acceptLanguage));
}

CMPIObjectPath* ProviderCall::path(const ObjectPath& path)
{
    return track<ObjectPathObject>(path);
}

CMPIInstance* ProviderCall::instance(const Instance& instance)
{
    return track<InstanceObject>(_broker.repository(), instance);
}

CMPIArgs* ProviderCall::arguments(std::vector<Argument> arguments)
{
    return track<ArgsObject>(std::move(arguments));
}

const char** ProviderCall::properties(const PropertyList& list)
{
    if (!list)
        return nullptr;
    auto& names = _lists.emplace_back();
    for (const CimName& name : *list)
        names.push_back(name.c_str());
    names.push_back(nullptr);
    return names.data();
}

void ProviderCall::finish(const CMPIStatus& status, bool hasThrown) const
{
    if (_result->failure)
    {
        try
        {
            std::rethrow_exception(_result->failure);
        }
        catch (const CimError& error)
        {
            throw CimError(error.status(), _label + ": " + error.what());
        }
    }
    if (hasThrown)
        throw CimError(CimStatus::Failed, _label + ": the provider threw an exception: " + messageOf(status));
    if (status.rc != CMPI_RC_OK)
        throwStatus(status, _label);
}

} // namespace cimd
