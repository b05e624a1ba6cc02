// The HTTP statuses that this server gives (RFC 9110; 510 is of RFC 2774).
#ifndef AGENT_HTTP_STATUS_H
#define AGENT_HTTP_STATUS_H

namespace cimd
{

constexpr unsigned kOk = 200;
constexpr unsigned kBadRequest = 400;
constexpr unsigned kUnauthorized = 401;
constexpr unsigned kNotFound = 404;
constexpr unsigned kMethodNotAllowed = 405;
constexpr unsigned kNotAcceptable = 406;
constexpr unsigned kRequestTimeout = 408;
constexpr unsigned kContentTooLarge = 413;
constexpr unsigned kTargetTooLong = 414;
constexpr unsigned kUnsupportedMediaType = 415;
constexpr unsigned kHeadTooLarge = 431;
constexpr unsigned kInternalError = 500;
constexpr unsigned kNotImplemented = 501;
constexpr unsigned kUnavailable = 503;
constexpr unsigned kUnknownVersion = 505;
constexpr unsigned kNotExtended = 510;

} // namespace cimd

#endif
