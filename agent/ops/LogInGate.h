// Lets only clients with the right credentials through to the operations.
#ifndef AGENT_OPS_LOGINGATE_H
#define AGENT_OPS_LOGINGATE_H

#include "agent/auth/Authenticator.h"
#include "agent/http/HttpHandler.h"
#include "agent/limits/Limits.h"

namespace cimd
{

// Stands between the HTTP server and the handler of requests, which sees only requests of known users,
// without their Authorization header. What the handler refuses by the head alone, it refuses before anybody
// is asked for credentials; that includes the answer to OPTIONS, which says nothing but what every cimd can
// do.
class LogInGate : public HttpHandler
{
  public:
    // `inside` and `authenticator` outlive the object.
    LogInGate(HttpHandler& inside, Authenticator& authenticator, const Limits& limits)
        : _inside(inside), _authenticator(authenticator), _limits(limits)
    {
    }

    Verdict refuse(const HttpRequest& head) override;
    std::optional<HttpResponse> vouch(const HttpRequest& head) override;
    HttpResponse answer(HttpRequest& request, AnswerStream& stream) override;

  private:
    LogIn logIn(const HttpRequest& request);

    HttpHandler& _inside;
    Authenticator& _authenticator;
    const Limits _limits;
};

} // namespace cimd

#endif
