// The error of a CIM operation: a status code that clients act on and a text that people read.
#ifndef AGENT_CIM_CIMERROR_H
#define AGENT_CIM_CIMERROR_H

#include <stdexcept>
#include <string>
#include <string_view>

namespace cimd
{

// DSP0200 status codes.
enum class CimStatus
{
    Failed = 1,
    AccessDenied = 2,
    InvalidNamespace = 3,
    InvalidParameter = 4,
    InvalidClass = 5,
    NotFound = 6,
    NotSupported = 7,
    ClassHasChildren = 8,
    ClassHasInstances = 9,
    InvalidSuperclass = 10,
    AlreadyExists = 11,
    NoSuchProperty = 12,
    TypeMismatch = 13,
    QueryLanguageNotSupported = 14,
    InvalidQuery = 15,
    MethodNotAvailable = 16,
    MethodNotFound = 17,
    NamespaceNotEmpty = 20,
    InvalidEnumerationContext = 21,
    InvalidOperationTimeout = 22,
    PullHasBeenAbandoned = 23,
    PullCannotBeAbandoned = 24,
    FilteredEnumerationNotSupported = 25,
    ContinuationOnErrorNotSupported = 26,
    ServerLimitsExceeded = 27,
    ServerIsShuttingDown = 28,
    QueryFeatureNotSupported = 29
};

// "CIM_ERR_NOT_FOUND" ...
std::string_view statusName(CimStatus status);

class CimError : public std::runtime_error
{
  public:
    // A message of more than 1000 bytes loses its middle: names that clients send may be as long as a
    // request.
    CimError(CimStatus status, const std::string& message);

    CimStatus status() const { return _status; }
    int code() const { return static_cast<int>(_status); }

  private:
    CimStatus _status;
};

} // namespace cimd

#endif
