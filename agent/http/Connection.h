// One client's connection: what it is doing, and what is done when that takes too long.
#ifndef AGENT_HTTP_CONNECTION_H
#define AGENT_HTTP_CONNECTION_H

#include "agent/http/Admission.h"
#include "agent/http/ByteBudget.h"
#include "agent/http/Channel.h"
#include "agent/http/RefusalLog.h"
#include "agent/http/Reply.h"
#include "agent/http/RequestReader.h"
#include "agent/http/answer_head.h"
#include "agent/limits/Limits.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cimd
{

// One request on its way through the server; shared with the worker that answers it.
struct Exchange
{
    // `over` is called at the end, by whoever is the last to let go.
    Exchange(const Limits& limits,
             ByteBudget& bodies,
             SpoolArea& area,
             std::function<void()> wake,
             std::function<void()> over)
        : share(bodies, limits.unauthenticatedBodyBytes), reply(limits, area, std::move(wake)),
          _over(std::move(over))
    {
    }
    ~Exchange() { _over(); }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    void dropBody()
    {
        request.body = std::string();
        share.giveBack();
    }

    HttpRequest request;
    ByteShare share; ///< of the memory for bodies: what this one takes
    Reply reply;

  private:
    const std::function<void()> _over;
};
using ExchangePtr = std::shared_ptr<Exchange>;

// What connections need of their server. For its I/O thread.
class Station
{
  public:
    Station(HttpHandler& theHandler, const Limits& theLimits, std::string spoolDirectory)
        : handler(theHandler), limits(theLimits),
          bodies(std::max(theLimits.allBodiesBytes, theLimits.bodyBytes)),
          area(std::move(spoolDirectory), theLimits.unsentBytes, theLimits.answerFileBytes),
          admission(theLimits.connections, theLimits.connectionsPerAddress, theLimits.slowClientSeconds)
    {
    }
    virtual ~Station() = default;

    // Has a worker answer the request; false if too many wait.
    virtual bool answer(const ExchangePtr& exchange) = 0;
    // Has a worker ask the handler to vouch for the client, and tells the connection; false if too many wait.
    virtual bool vouch(std::uint64_t connection, const ExchangePtr& exchange) = 0;
    // A request's head has come, and the connection runs whenever there is something to do for it.
    virtual ExchangePtr begin(std::uint64_t connection) = 0;

    HttpHandler& handler;
    const Limits limits;
    ByteBudget bodies;
    SpoolArea area;
    Admission admission;
    RefusalLog refusals;
    std::map<unsigned, std::uint64_t> answers; ///< by their HTTP status, since the start
    bool isStopping = false;
    Time now = timeNow();
    std::vector<char> buffer = std::vector<char>(64 * 1024); ///< for what is read
};

// Used on the I/O thread.
class Connection
{
  public:
    // The station outlives the object. Without a context there is no TLS.
    Connection(Station& station,
               std::uint64_t id,
               FileDescriptor socket,
               std::shared_ptr<const TlsContext> tls,
               std::string peer);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // The system says that something can be done, in the bits of epoll.
    void ready(std::uint32_t events);
    // Does what can be done at once. @return whether to call it again after the others had their turn.
    bool run();
    // Ends what takes too long. @return when to look again.
    Time check();
    // Nothing more is to be done: to be destroyed.
    bool isOver() const { return _isOver; }

    // The handler has vouched for the client, or refuses the request.
    void vouched(std::optional<HttpResponse> refusal);
    // The server stops: nobody is interested in requests that have not arrived whole; the others get their
    // answers.
    void stop();
    // Ends whatever is going on; `reason` is what the maker of an answer hears.
    void close(const std::string& reason);

    const Admission::Guest& guest() const { return *_place; }
    // What connections may be doing, for people.
    static constexpr const char* kStateNames[] = {
        "handshake", "idle", "head", "body", "log-in", "answer", "end"};
    // One of these.
    const char* stateName() const;

  private:
    static constexpr const char* kGone = "the client has gone"; // why requests end

    enum class Phase
    {
        Handshake,
        Idle, // between requests
        Head,
        Body,
        Check, // a worker looks at the credentials
        Answer,
        Drain // all is said, and the client is given time to read it
    };

    bool step();
    bool shakeHands();
    bool read();
    bool write();
    bool fetch();
    void startDrain();
    bool drain();
    void take(std::string_view bytes);
    void beginRequest();
    void takeBody(std::string_view piece);
    void keepBody(std::string_view piece);
    void completeRequest();
    void refuse(unsigned status, const std::string& reason);
    HttpResponse refusal(unsigned status, const std::string& reason);
    HttpResponse tooLarge();
    void noteLogIn(const HttpResponse& answer);
    void hold(HttpResponse&& answer);
    void respond(HttpResponse&& answer);
    void sendHead(const HttpResponse& answer, std::optional<std::size_t> length);
    void sendPiece(std::string&& piece);
    void breakOff(const std::vector<HttpHeader>& trailers);
    void send(std::string_view bytes);
    void endAnswer();
    void endRequest(const std::string& reason);
    void served(unsigned status);
    void enter(Phase phase);
    Time deadline() const;
    void expire();
    void note(LogLevel level, const char* area, const std::string& reason);

    Station& _station;
    const std::uint64_t _id;
    Channel _channel;
    const std::string _peer;
    const Admission::Place _place;
    bool _isOver = false;
    bool _canRead = true;
    bool _canWrite = true;
    bool _hasEnded = false; // the client sends nothing more

    Phase _phase;
    Time _since;          // when the phase began
    Time _begun = kNever; // when the first byte of the request came
    bool _isFresh = true; // no request has begun yet
    std::string _input;   // read, but not looked at: it follows a request that is being answered
    RequestReader _reader;
    std::size_t _drained = 0;

    // Of the request.
    ExchangePtr _exchange;
    std::optional<HttpResponse> _refusal; // what the head or the size of the body earned it
    std::uint64_t _received = 0;          // body bytes, dropped ones included
    std::size_t _bodyLimit = 0;
    std::function<void(std::string&, std::string_view)> _collect; // see Verdict
    AnswerForm _form;
    std::optional<HttpResponse> _held; // an answer that is kept back
    Time _heldUntil = kNever;
    bool _isAnswered = false; // all of the answer has been written, or is in _out and _rest

    // To be sent.
    std::string _out;
    std::size_t _sent = 0; // of _out
    std::string _rest;     // follows it, once
    Time _progress;        // when the client last took something, or should have begun to
};

} // namespace cimd

#endif
