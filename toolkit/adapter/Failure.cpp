// Failures of providers and of the broker, and the codes that clients see for them.
#include "Failure.h"

namespace cimple_cmpi
{

using namespace cimple;

CMPIrc codeOf(int status)
{
    switch (status) // the numbers of different operations do not overlap
    {
    case 0:
        return CMPI_RC_OK;
    case GET_INSTANCE_NOT_FOUND:
    case DELETE_INSTANCE_NOT_FOUND:
    case MODIFY_INSTANCE_NOT_FOUND:
        return CMPI_RC_ERR_NOT_FOUND;
    case -1: // the provider does not have the operation
    case GET_INSTANCE_UNSUPPORTED:
    case CREATE_INSTANCE_UNSUPPORTED:
    case DELETE_INSTANCE_UNSUPPORTED:
    case MODIFY_INSTANCE_UNSUPPORTED:
    case ENUM_ASSOCIATOR_NAMES_UNSUPPORTED:
    case ENUM_REFERENCES_UNSUPPORTED:
    case ENUM_ASSOCIATORS_UNSUPPORTED:
    case INVOKE_METHOD_UNSUPPORTED:
        return CMPI_RC_ERR_NOT_SUPPORTED;
    case CREATE_INSTANCE_DUPLICATE:
        return CMPI_RC_ERR_ALREADY_EXISTS;
    case GET_INSTANCE_INVALID_PARAMETER:
    case CREATE_INSTANCE_INVALID_PARAMETER:
    case MODIFY_INSTANCE_INVALID_PARAMETER:
        return CMPI_RC_ERR_INVALID_PARAMETER;
    case GET_INSTANCE_ACCESS_DENIED:
    case ENUM_INSTANCES_ACCESS_DENIED:
    case CREATE_INSTANCE_ACCESS_DENIED:
    case DELETE_INSTANCE_ACCESS_DENIED:
    case MODIFY_INSTANCE_ACCESS_DENIED:
    case ENUM_ASSOCIATOR_NAMES_ACCESS_DENIED:
    case ENUM_REFERENCES_ACCESS_DENIED:
    case ENUM_ASSOCIATORS_ACCESS_DENIED:
    case INVOKE_METHOD_ACCESS_DENIED:
        return CMPI_RC_ERR_ACCESS_DENIED;
    default:
        return CMPI_RC_ERR_FAILED;
    }
}

namespace
{

// What became of "VRAX_Fabric: delete instance".
const char* sayingWhat(CMPIrc code)
{
    switch (code)
    {
    case CMPI_RC_ERR_NOT_FOUND:
        return "found no such instance";
    case CMPI_RC_ERR_NOT_SUPPORTED:
        return "is not supported";
    case CMPI_RC_ERR_ALREADY_EXISTS:
        return "found an instance with these keys";
    case CMPI_RC_ERR_INVALID_PARAMETER:
        return "got an invalid value";
    case CMPI_RC_ERR_ACCESS_DENIED:
        return "is not allowed";
    default:
        return "failed";
    }
}

} // namespace

void checkBroker(const CMPIStatus& status, const char* what)
{
    if (status.rc == CMPI_RC_OK)
        return;
    std::string text =
        std::string(what) + ": the CIM server answers " + std::to_string(static_cast<int>(status.rc));
    if (status.msg)
        if (const char* reason = status.msg->ft->getCharPtr(status.msg, nullptr))
            text += std::string(" (") + reason + ")";
    throw Failure(CMPI_RC_ERR_FAILED, text);
}

Failure Failure::ofProvider(int status)
{
    const CMPIrc code = cimple_cmpi::codeOf(status);
    std::string text = sayingWhat(code) + (" (status " + std::to_string(status) + ")");
    if (const char* reason = Error::get(); *reason)
        text += std::string(": ") + reason;
    return Failure(code, " ", text);
}

Failure Failure::current()
{
    try
    {
        throw;
    }
    catch (const Failure& failure)
    {
        return failure;
    }
    catch (const std::exception& e)
    {
        return Failure(CMPI_RC_ERR_FAILED, std::string("exception: ") + e.what());
    }
    catch (...)
    {
        return Failure(CMPI_RC_ERR_FAILED, "exception of an unknown type");
    }
}

} // namespace cimple_cmpi
