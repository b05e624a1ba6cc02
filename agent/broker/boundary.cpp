// Exceptions to CMPI status codes.
#include "agent/broker/boundary.h"

#include "agent/broker/objects.h"
#include "agent/cim/CimError.h"

namespace cimd
{
namespace
{

// The message is a convenience: without memory or scope the code has to do.
CMPIStatus status(CMPIrc code, const char* message) noexcept
{
    try
    {
        return {code, CallScope::current() ? trackString(message) : nullptr};
    }
    catch (...)
    {
        return {code, nullptr};
    }
}

} // namespace

CMPIStatus statusOfException() noexcept
{
    try
    {
        throw;
    }
    catch (const CmpiError& error)
    {
        return status(error.code(), error.what());
    }
    catch (const CimError& error)
    {
        return status(static_cast<CMPIrc>(error.code()), error.what());
    }
    catch (const std::exception& error)
    {
        return status(CMPI_RC_ERR_FAILED, error.what());
    }
    catch (...)
    {
        return {CMPI_RC_ERR_FAILED, nullptr};
    }
}

} // namespace cimd
