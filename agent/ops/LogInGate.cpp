// HTTP's side of log-ins (RFC 7235, RFC 7617): which requests need one, and the answers to those without.
#include "agent/ops/LogInGate.h"

#include "agent/cim/CimName.h"
#include "agent/http/cim_headers.h"

#include <algorithm>

namespace cimd
{

namespace
{

constexpr const char* kAuthorization = "Authorization";

HttpResponse refused(const LogIn& logIn)
{
    if (logIn.isBusy)
    {
        HttpResponse response = refusal(kUnavailable, "", "Too many log-ins are being checked.");
        response.headers.emplace_back("Retry-After", "1");
        response.logInRefusal = logIn.reason;
        return response;
    }
    HttpResponse response =
        refusal(kUnauthorized, "", "User name and password are needed, and the right ones.");
    response.headers.emplace_back("WWW-Authenticate", "Basic realm=\"cimd\"");
    response.holdFor = logIn.delay;
    response.logInRefusal = logIn.reason;
    return response;
}

} // namespace

Verdict LogInGate::refuse(const HttpRequest& head)
{
    Verdict verdict = _inside.refuse(head);
    if (verdict.response)
        return verdict;
    const std::string* authorization = head.header(kAuthorization);
    if (authorization == nullptr)
        verdict.response = refused(_authenticator.withoutCredentials(head.peer));
    else if (_authenticator.isKnown(*authorization))
        verdict.isKnown = true;
    else
        verdict.bodyLimit = std::min(verdict.bodyLimit, _limits.unauthenticatedBodyBytes);
    return verdict;
}

LogIn LogInGate::logIn(const HttpRequest& request)
{
    const std::string* authorization = request.header(kAuthorization);
    return authorization != nullptr ? _authenticator.check(*authorization, request.peer)
                                    : _authenticator.withoutCredentials(request.peer);
}

std::optional<HttpResponse> LogInGate::vouch(const HttpRequest& head)
{
    const LogIn logIn = this->logIn(head);
    if (logIn.user.empty())
        return refused(logIn);
    return std::nullopt;
}

HttpResponse LogInGate::answer(HttpRequest& request, AnswerStream& stream)
{
    LogIn logIn = this->logIn(request);
    if (logIn.user.empty())
        return refused(logIn);
    const auto isSecret = [](const HttpHeader& header) { return equalNoCase(header.first, kAuthorization); };
    request.headers.erase(std::remove_if(request.headers.begin(), request.headers.end(), isSecret),
                          request.headers.end());
    request.user = std::move(logIn.user);
    return _inside.answer(request, stream);
}

} // namespace cimd
