// HTTP requests and responses as the layers above the server see them.
#ifndef AGENT_HTTP_MESSAGE_H
#define AGENT_HTTP_MESSAGE_H

#include <chrono>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cimd
{

// The statuses that this server gives (RFC 9110; 510 is of RFC 2774).
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

using HttpHeader = std::pair<std::string, std::string>;

struct HttpRequest
{
    std::string method;
    std::string target; ///< Path without the query, percent sequences decoded.
    std::string peer;   ///< Client address and port, e.g. "192.0.2.7:49152" or "[fe80::1]:49152".
    std::string user;   ///< Who logged in; empty where nobody has to.
    std::vector<HttpHeader> headers;
    std::string body;

    // Value of a header, its name compared without regard to case; null when the request lacks it.
    const std::string* header(std::string_view name) const;
    // Whether a header of this name lists the word, see listsWord().
    bool lists(std::string_view name, std::string_view word) const;
};

// Without the blanks and tabs around it, which count for nothing in headers.
std::string_view withoutBlanks(std::string_view text);

// What stands between separators, each without the blanks around it.
std::vector<std::string_view> split(std::string_view text, char separator);

// Whether a header's value is a list ("chunked, trailers;q=1") with this word, in any letter case.
bool listsWord(std::string_view list, std::string_view word);

struct HttpResponse
{
    unsigned status = 200;
    std::vector<HttpHeader> headers; ///< Content-Length, Date, Connection and Trailer are the server's.
    std::string body;
    // Says why the answer is incomplete, should part of it have left already; `body` counts for nothing
    // then.
    std::vector<HttpHeader> trailers = {};
    // How long the server keeps the answer back, without a thread waiting for it.
    std::chrono::milliseconds holdFor{0};
    // Why nobody was logged in, for the log, which says each reason once a minute; null: nothing to say.
    const char* logInRefusal = nullptr;
};

} // namespace cimd

#endif
