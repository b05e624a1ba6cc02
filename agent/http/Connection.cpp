// The phases of a connection.
#include "agent/http/Connection.h"

#include "agent/auth/client_address.h"
#include "agent/http/cim_headers.h"

#include <algorithm>
#include <sys/epoll.h>
#include <utility>

namespace cimd
{

namespace
{

constexpr int kStepsInTurn = 64;
constexpr std::size_t kBelief = 8;
constexpr std::chrono::seconds kDrainTime{2};

} // namespace

Connection::Connection(Station& station,
                       std::uint64_t id,
                       FileDescriptor socket,
                       std::shared_ptr<const TlsContext> tls,
                       std::string peer)
    : _station(station), _id(id), _channel(std::move(socket), std::move(tls)), _peer(std::move(peer)),
      _place(station.admission.enter(id, clientAddress(_peer))),
      _phase(_channel.isTls() ? Phase::Handshake : Phase::Idle), _since(station.now),
      _reader(station.limits.headBytes), _progress(station.now)
{
}

Connection::~Connection()
{
    endRequest(kGone);
    _station.admission.leave(_place);
}

const char* Connection::stateName() const
{
    return kStateNames[static_cast<std::size_t>(_phase)];
}

void Connection::note(LogLevel level, const char* area, const std::string& reason)
{
    _station.refusals.add({level, area, reason}, _peer, _station.now);
}

// At once: the client may not stay for its answer.
void Connection::noteLogIn(const HttpResponse& answer)
{
    if (answer.logInRefusal != nullptr)
        note(LogLevel::Warning, "auth", answer.logInRefusal);
}

void Connection::enter(Phase phase)
{
    _phase = phase;
    _since = _station.now;
}

void Connection::ready(std::uint32_t events)
{
    const bool isDead = (events & (EPOLLHUP | EPOLLERR)) != 0; // in both directions
    _hasEnded = _hasEnded || isDead || (events & EPOLLRDHUP) != 0;
    _canRead = _canRead || _hasEnded || (events & EPOLLIN) != 0;
    _canWrite = _canWrite || (events & EPOLLOUT) != 0;
    if (isDead && _phase != Phase::Handshake) // whose end says more
        close(kGone);
}

bool Connection::run()
{
    for (int i = 0; i < kStepsInTurn; ++i)
        if (_isOver || !step())
            return false;
    return true;
}

// Returns whether there may be more to do at once.
bool Connection::step()
{
    if (_phase == Phase::Handshake)
        return shakeHands();
    if (!_out.empty())
        return write();
    switch (_phase)
    {
    case Phase::Check:
        return false;
    case Phase::Answer:
        return fetch();
    case Phase::Drain:
        return drain();
    default:
        if (_input.empty())
            return read();
        take(std::exchange(_input, {}));
        return true;
    }
}

bool Connection::shakeHands()
{
    switch (_channel.shakeHands())
    {
    case Channel::State::Done:
        enter(Phase::Idle);
        return true;
    case Channel::State::Again:
        return false;
    default:
        // Those who only look whether the port is open do it all the time.
        note(_channel.hasReceived() ? LogLevel::Warning : LogLevel::Info,
             "tls",
             "no TLS connection: " + _channel.handshakeFault());
        startDrain();
        return true;
    }
}

bool Connection::read()
{
    if (!_canRead)
        return false;
    std::vector<char>& buffer = _station.buffer;
    const Channel::Result got = _channel.read(buffer.data(), buffer.size());
    switch (got.state)
    {
    case Channel::State::Done:
        // The system tells again when more comes.
        _canRead = got.bytes == buffer.size() || _channel.isTls() || _hasEnded;
        take({buffer.data(), got.bytes});
        return true;
    case Channel::State::Again:
        _canRead = false;
        return false;
    default:
        close(kGone);
        return false;
    }
}

void Connection::startDrain()
{
    _channel.endWriting();
    enter(Phase::Drain);
}

// The client reads its answer unless it finds the connection reset, which closing would do while bytes of its
// request are on their way.
bool Connection::drain()
{
    std::vector<char>& buffer = _station.buffer;
    const Channel::Result got = _channel.read(buffer.data(), buffer.size());
    _drained += got.bytes;
    if (got.state == Channel::State::Again)
        return false;
    if (got.state != Channel::State::Done || _drained > _station.limits.discardBytes)
        close(kGone);
    return true;
}

// Here all bytes of requests arrive.
void Connection::take(std::string_view bytes)
{
    for (;;)
    {
        switch (_reader.next(bytes))
        {
        case RequestReader::Event::More:
            if (_phase == Phase::Idle && _reader.hasBegun())
            {
                enter(Phase::Head);
                _begun = _station.now;
            }
            return;
        case RequestReader::Event::Head:
            beginRequest();
            break;
        case RequestReader::Event::Body:
            takeBody(_reader.piece());
            break;
        case RequestReader::Event::End:
            completeRequest();
            break;
        case RequestReader::Event::Bad:
            refuse(_reader.fault().status, _reader.fault().reason);
            break;
        }
        if (_isOver)
            return;
        if (_phase == Phase::Check || _phase == Phase::Answer)
        {
            _input = bytes;
            return;
        }
    }
}

HttpResponse Connection::refusal(unsigned status, const std::string& reason)
{
    note(LogLevel::Warning, "http", "HTTP " + std::to_string(status) + ": " + reason);
    return cimd::refusal(status, {}, reason);
}

// Ends a request that cannot be read to its end.
void Connection::refuse(unsigned status, const std::string& reason)
{
    _refusal.reset();
    _form.closes = true;
    respond(refusal(status, reason));
}

HttpResponse Connection::tooLarge()
{
    return refusal(kContentTooLarge,
                   "The request is too large: more than " + std::to_string(_station.limits.bodyBytes) +
                       " bytes.");
}

void Connection::beginRequest()
{
    RequestReader::Head& head = _reader.head();
    const Limits& limits = _station.limits;
    _exchange = _station.begin(_id);
    HttpRequest& request = _exchange->request = std::move(head.request);
    request.peer = _peer;
    _form = head.form;
    _received = 0;
    _isAnswered = false;
    if (_begun == kNever)
        _begun = _station.now;
    enter(Phase::Body);
    if (_station.isStopping)
        _refusal = refusal(kUnavailable, "The server is stopping.");
    else
    {
        Verdict verdict = _station.handler.refuse(request);
        _refusal = std::move(verdict.response);
        _bodyLimit = std::min(limits.bodyBytes, verdict.bodyLimit);
        _collect = std::move(verdict.collect);
        if (verdict.isKnown)
            _station.admission.served(_place);
    }
    if (_refusal)
        noteLogIn(*_refusal);
    else if (head.announced > limits.bodyBytes)
        _refusal = tooLarge();
    // Whoever asks before sending the body, or would send more than we care to read, is answered now.
    if (_refusal && (_station.isStopping || head.asks || head.announced > limits.discardBytes))
    {
        _form.closes = true;
        completeRequest();
    }
    else if (head.asks)
        send("HTTP/1.1 100 Continue\r\n\r\n");
}

// A refused client is heard out, so that it reads the answer instead of a reset connection; up to a point.
void Connection::takeBody(std::string_view piece)
{
    _received += piece.size();
    if (!_refusal)
        keepBody(piece);
    else if (_received > _station.limits.discardBytes)
        close("the request is larger than anybody reads");
}

void Connection::keepBody(std::string_view piece)
{
    Exchange& exchange = *_exchange;
    std::string& body = exchange.request.body;
    if (_received > _station.limits.bodyBytes)
        _refusal = tooLarge();
    else if (!exchange.share.take(piece.size()))
        _refusal = refusal(kUnavailable,
                           "The requests under way hold " + std::to_string(_station.bodies.most()) +
                               " bytes already.");
    if (_refusal)
        return exchange.dropBody();
    // Growing in steps takes up to three times a large body. The announced length is believed once a part of
    // it is there: announcing alone must not cost memory. What became shorter so far will go on so.
    const std::uint64_t announced =
        std::min<std::uint64_t>(_reader.head().announced, _station.limits.bodyBytes);
    const std::size_t before = body.size();
    const std::size_t needed = before + piece.size();
    if (needed > body.capacity() && _received <= announced && announced / kBelief <= _received)
        body.reserve(static_cast<std::size_t>(std::min(announced, (announced / _received + 1) * needed)));
    if (_collect)
        _collect(body, piece);
    else
        body.append(piece);
    exchange.share.giveBack(needed - body.size());
    if (_received <= _bodyLimit)
        return;
    _bodyLimit = _station.limits.bodyBytes;
    enter(Phase::Check);
    _place->isBusy = true;
    if (!_station.vouch(_id, _exchange))
        vouched(refusal(kUnavailable, "Too many requests are waiting."));
}

void Connection::vouched(std::optional<HttpResponse> refusal)
{
    if (_phase != Phase::Check)
        return;
    _place->isBusy = false;
    if (!refusal)
        _station.admission.served(_place);
    else
    {
        noteLogIn(*refusal);
        _exchange->dropBody();
    }
    _refusal = std::move(refusal);
    enter(Phase::Body);
}

void Connection::completeRequest()
{
    enter(Phase::Answer);
    if (!_refusal)
    {
        _place->isBusy = _station.answer(_exchange);
        if (_place->isBusy)
            return;
        _refusal = refusal(kUnavailable, "Too many requests are waiting.");
    }
    hold(*std::exchange(_refusal, std::nullopt));
}

void Connection::endRequest(const std::string& reason)
{
    _place->isBusy = false;
    _place->behindSince = kNever;
    _isFresh = false;
    _begun = kNever;
    _form = {};
    _held.reset();
    if (!_exchange)
        return;
    _exchange->reply.close(reason);
    _exchange.reset();
    _collect = nullptr;
}

void Connection::close(const std::string& reason)
{
    if (_phase == Phase::Idle) // nothing is cut short, and over TLS the client is told so
        _channel.endWriting();
    endRequest(reason);
    _isOver = true;
}

void Connection::stop()
{
    if (_phase == Phase::Body || _phase == Phase::Check)
        refuse(kUnavailable, "The server is stopping.");
}

Time Connection::deadline() const
{
    const Limits& limits = _station.limits;
    if (!_out.empty() && !_canWrite)
        return _progress + limits.slowClientSeconds;
    switch (_phase)
    {
    case Phase::Handshake:
        return _since + (_channel.hasReceived() ? limits.handshakeSeconds
                                                : std::min(limits.handshakeSeconds, limits.firstByteSeconds));
    case Phase::Idle:
    {
        const std::chrono::seconds idle(limits.idleSeconds);
        return _since + (_isFresh ? std::min(idle, limits.firstByteSeconds) : idle);
    }
    case Phase::Head:
    case Phase::Body:
        return _begun + limits.requestSeconds;
    case Phase::Drain:
        return _since + kDrainTime;
    case Phase::Answer:
        if (_held)
            return _heldUntil;
        return _exchange ? _exchange->reply.check(_station.now) : kNever;
    case Phase::Check:
        break;
    }
    return kNever;
}

Time Connection::check()
{
    const Time due = _isOver ? kNever : deadline();
    if (_station.now < due)
        return due;
    expire();
    run();
    return _station.now; // once more
}

void Connection::expire()
{
    const bool isSilent = _isFresh && (_phase == Phase::Idle || !_channel.hasReceived());
    if (!_out.empty() && !_canWrite)
        close("the client took nothing for " + std::to_string(_station.limits.slowClientSeconds.count()) +
              " s");
    else if (_phase == Phase::Handshake)
    {
        note(isSilent ? LogLevel::Info : LogLevel::Warning,
             "tls",
             isSilent ? "no TLS connection: the client sent nothing"
                      : "no TLS connection: the client took too long");
        close(kGone);
    }
    else if (_phase == Phase::Head || _phase == Phase::Body)
        refuse(kRequestTimeout, "The request is incomplete.");
    else if (_phase != Phase::Answer)
    {
        if (isSilent)
            note(LogLevel::Info, "http", "the client sent nothing");
        close(kGone);
    }
}

} // namespace cimd
