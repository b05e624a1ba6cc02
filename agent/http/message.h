// HTTP requests and responses as the layers above the server see them.
#ifndef AGENT_HTTP_MESSAGE_H
#define AGENT_HTTP_MESSAGE_H

#include "agent/http/status.h"

#include <chrono>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cimd
{

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
};

// Without the blanks and tabs around it, which count for nothing in headers.
std::string_view withoutBlanks(std::string_view text);

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
