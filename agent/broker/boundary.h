// The C boundary of CMPI: exceptions on our side, status codes on the other.
#ifndef AGENT_BROKER_BOUNDARY_H
#define AGENT_BROKER_BOUNDARY_H

#include <cmpift.h>
#include <stdexcept>
#include <string>

namespace cimd
{

// What a table function answers instead of doing its work.
class CmpiError : public std::runtime_error
{
  public:
    CmpiError(CMPIrc code, const std::string& message) : std::runtime_error(message), _code(code) {}

    CMPIrc code() const { return _code; }

  private:
    CMPIrc _code;
};

// Status for the exception being handled; the message is a tracked string if the thread can have one.
CMPIStatus statusOfException() noexcept;

// Runs the body of a table function that returns a status. Nothing is thrown at the caller.
template <class Body>
CMPIStatus answer(Body body) noexcept
{
    try
    {
        body();
        return {CMPI_RC_OK, nullptr};
    }
    catch (...)
    {
        return statusOfException();
    }
}

// Runs the body of a table function that returns a value and a status through `rc`, which may be null; a
// value initialised result stands for failure.
template <class Body>
auto answer(CMPIStatus* rc, Body body) noexcept -> decltype(body())
{
    CMPIStatus status{CMPI_RC_OK, nullptr};
    decltype(body()) result{};
    try
    {
        result = body();
    }
    catch (...)
    {
        status = statusOfException();
    }
    if (rc)
        *rc = status;
    return result;
}

inline const char* required(const char* text, const char* what)
{
    if (!text)
        throw CmpiError(CMPI_RC_ERR_INVALID_PARAMETER, std::string(what) + " is NULL");
    return text;
}

inline const char* orEmpty(const char* text)
{
    return text ? text : "";
}

} // namespace cimd

#endif
