// One client's connection: what it is doing, and what is done when that takes too long.
#ifndef AGENT_HTTP_CONNECTION_H
#define AGENT_HTTP_CONNECTION_H

#include "agent/Limits.h"
#include "agent/http/BodyBudget.h"
#include "agent/http/Reply.h"
#include "agent/http/TlsHandshake.h"
#include "agent/http/message.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <microhttpd.h>
#include <mutex>
#include <optional>

namespace cimd
{

class Connection;

// One request on its way through the server.
struct Exchange
{
    Exchange(const Limits& limits, BodyBudget& bodies, SpoolArea& area, Outlet& outlet)
        : share(bodies), reply(limits, area, outlet)
    {
    }

    HttpRequest request;
    BodyShare share; ///< of the memory for bodies: what this one takes
    std::function<void(std::string&, std::string_view)> collect; ///< see Verdict
    std::optional<HttpResponse> refusal; ///< what the head or the size of the body earned it
    std::size_t received = 0;            ///< body bytes, dropped ones included
    std::size_t bodyLimit = 0;
    bool closes = false;      ///< the body is not read, so the connection ends with the refusal
    bool isAnswering = false; ///< complete and on its way to an answer
    Reply reply;
};

// Lives from the acceptance of a connection to its end, at the hand of the I/O thread. What can be called
// from elsewhere says so.
class Connection : public Outlet
{
  public:
    using Time = Alarm::Time;

    // What is given outlives the connection.
    Connection(MHD_Connection* connection, const Limits& limits, BodyBudget& bodies, SpoolArea& area);

    // "192.0.2.7:49152"
    const std::string& peer() const { return _peer; }

    // --- the life of a request

    Exchange& begin();
    // The body is there. False if the request was cut off before.
    bool complete();
    std::shared_ptr<Exchange> exchange() const { return _exchange; }
    // An answer of head and chunks is about to be sent.
    void beginStream();
    // The answer has been sent, or never will be.
    void end(const std::string& reason);
    // The connection is about to be closed.
    void closed();

    // Any thread: ends requests that take too long. @return when to look again.
    Time check(Time now);
    // Any thread: nobody is interested in requests that have not arrived whole; the others get their
    // answers.
    void stop();
    // Any thread: ends whatever is going on.
    void abandon();

    void pause() override;
    void goOn() override;
    void drop() override;

  private:
    enum class Phase
    {
        Head, // nothing or part of a head has arrived
        Body,
        Answer,
        Cut // no longer used, or closed
    };

    std::uint64_t received() const;
    Time lookAgain(Time now) const;
    void refuse(unsigned status, const char* reason);
    void cut();

    MHD_Connection* const _connection;
    const Limits& _limits;
    BodyBudget& _bodies;
    SpoolArea& _area;
    int _fd = -1;
    bool _isPlain = true; // not TLS
    std::optional<TlsHandshake> _handshake;
    std::string _peer;

    mutable std::mutex _mutex; // never taken before a reply's
    Phase _phase = Phase::Head;
    std::shared_ptr<Exchange> _exchange;
    bool _isOpen = false;        // requests can come: past the handshake, should there be one
    std::uint64_t _before = 0;   // bytes received before the present request
    Time _begun = Alarm::kNever; // when the present request was first noticed
};

} // namespace cimd

#endif
