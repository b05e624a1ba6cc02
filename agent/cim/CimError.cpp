// Names of the CIM status codes, and the length of messages.
#include "agent/cim/CimError.h"

namespace cimd
{

namespace
{

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// The ends of a long message, cut between characters of its UTF-8: what was asked stands at the start, what
// was wrong often at the end.
std::string shortened(const std::string& message)
{
    constexpr std::size_t kMost = 1000;
    if (message.size() <= kMost)
        return message;
    std::size_t head = kMost * 3 / 5;
    std::size_t tail = message.size() - kMost * 3 / 10;
    while (head > 0 && continuesCharacter(message[head]))
        --head;
    while (tail < message.size() && continuesCharacter(message[tail]))
        ++tail;
    return message.substr(0, head) + " [" + std::to_string(tail - head) + " bytes left out] " +
           message.substr(tail);
}

} // namespace

CimError::CimError(CimStatus status, const std::string& message)
    : std::runtime_error(shortened(message)), _status(status)
{
}

std::string_view statusName(CimStatus status)
{
    switch (status)
    {
    case CimStatus::Failed:
        return "CIM_ERR_FAILED";
    case CimStatus::AccessDenied:
        return "CIM_ERR_ACCESS_DENIED";
    case CimStatus::InvalidNamespace:
        return "CIM_ERR_INVALID_NAMESPACE";
    case CimStatus::InvalidParameter:
        return "CIM_ERR_INVALID_PARAMETER";
    case CimStatus::InvalidClass:
        return "CIM_ERR_INVALID_CLASS";
    case CimStatus::NotFound:
        return "CIM_ERR_NOT_FOUND";
    case CimStatus::NotSupported:
        return "CIM_ERR_NOT_SUPPORTED";
    case CimStatus::ClassHasChildren:
        return "CIM_ERR_CLASS_HAS_CHILDREN";
    case CimStatus::ClassHasInstances:
        return "CIM_ERR_CLASS_HAS_INSTANCES";
    case CimStatus::InvalidSuperclass:
        return "CIM_ERR_INVALID_SUPERCLASS";
    case CimStatus::AlreadyExists:
        return "CIM_ERR_ALREADY_EXISTS";
    case CimStatus::NoSuchProperty:
        return "CIM_ERR_NO_SUCH_PROPERTY";
    case CimStatus::TypeMismatch:
        return "CIM_ERR_TYPE_MISMATCH";
    case CimStatus::QueryLanguageNotSupported:
        return "CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED";
    case CimStatus::InvalidQuery:
        return "CIM_ERR_INVALID_QUERY";
    case CimStatus::MethodNotAvailable:
        return "CIM_ERR_METHOD_NOT_AVAILABLE";
    case CimStatus::MethodNotFound:
        return "CIM_ERR_METHOD_NOT_FOUND";
    case CimStatus::NamespaceNotEmpty:
        return "CIM_ERR_NAMESPACE_NOT_EMPTY";
    case CimStatus::InvalidEnumerationContext:
        return "CIM_ERR_INVALID_ENUMERATION_CONTEXT";
    case CimStatus::InvalidOperationTimeout:
        return "CIM_ERR_INVALID_OPERATION_TIMEOUT";
    case CimStatus::PullHasBeenAbandoned:
        return "CIM_ERR_PULL_HAS_BEEN_ABANDONED";
    case CimStatus::PullCannotBeAbandoned:
        return "CIM_ERR_PULL_CANNOT_BE_ABANDONED";
    case CimStatus::FilteredEnumerationNotSupported:
        return "CIM_ERR_FILTERED_ENUMERATION_NOT_SUPPORTED";
    case CimStatus::ContinuationOnErrorNotSupported:
        return "CIM_ERR_CONTINUATION_ON_ERROR_NOT_SUPPORTED";
    case CimStatus::ServerLimitsExceeded:
        return "CIM_ERR_SERVER_LIMITS_EXCEEDED";
    case CimStatus::ServerIsShuttingDown:
        return "CIM_ERR_SERVER_IS_SHUTTING_DOWN";
    case CimStatus::QueryFeatureNotSupported:
        return "CIM_ERR_QUERY_FEATURE_NOT_SUPPORTED";
    }
    return "CIM_ERR_FAILED";
}

} // namespace cimd
