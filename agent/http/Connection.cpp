// The phases of a connection.
#include "agent/http/Connection.h"

#include "agent/auth/client_address.h"
#include "agent/cim/CimName.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <sys/epoll.h>
#include <utility>

namespace cimd
{

namespace
{

constexpr unsigned kErrors = 400; // and up
constexpr unsigned kRequestTimeout = 408;
constexpr unsigned kContentTooLarge = 413;
constexpr unsigned kUnavailable = 503;
constexpr int kStepsInTurn = 64;
constexpr std::size_t kBelief = 8;
constexpr std::size_t kCopied = 64 * 1024; // a body that follows its head in the same buffer
constexpr std::size_t kKept = 4 * 1024;    // of a buffer between two answers
constexpr std::chrono::seconds kDrainTime{2};
constexpr const char* kGone = "the client has gone";

HttpResponse plain(unsigned status, const std::string& text)
{
    return {status, {{"Content-Type", "text/plain; charset=\"utf-8\""}}, text + "\n"};
}

bool takesTrailers(const HttpRequest& request)
{
    return std::any_of(request.headers.begin(),
                       request.headers.end(),
                       [](const HttpHeader& header)
                       { return equalNoCase(header.first, "TE") && listsWord(header.second, "trailers"); });
}

} // namespace

Connection::Connection(Station& station,
                       std::uint64_t id,
                       FileDescriptor socket,
                       std::shared_ptr<const TlsContext> tls,
                       std::string peer)
    : _station(station), _id(id), _tls(std::move(tls)), _channel(std::move(socket), _tls.get()),
      _peer(std::move(peer)), _place(station.admission.enter(id, clientAddress(_peer))),
      _phase(_tls ? Phase::Handshake : Phase::Idle), _since(station.now), _reader(station.limits.headBytes),
      _progress(station.now)
{
}

Connection::~Connection()
{
    endRequest(kGone);
    _station.admission.leave(_place);
}

const char* Connection::stateName() const
{
    static constexpr const char* kNames[] = {"handshake", "idle", "head", "body", "log-in", "answer", "end"};
    return kNames[static_cast<std::size_t>(_phase)];
}

void Connection::note(LogLevel level, const char* area, const std::string& reason)
{
    _station.refusals.add({level, area, reason}, _peer, _station.now);
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
    switch (_channel.shakeHands().state)
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

bool Connection::write()
{
    if (!_canWrite)
        return false;
    const Channel::Result put = _channel.write(std::string_view(_out).substr(_sent));
    switch (put.state)
    {
    case Channel::State::Done:
        _progress = _station.now;
        _sent += put.bytes;
        if (_sent < _out.size())
            return true;
        _out = std::exchange(_rest, {});
        _sent = 0;
        return true;
    case Channel::State::Again:
        _canWrite = false;
        return false;
    default:
        close(kGone);
        return false;
    }
}

void Connection::send(std::string_view bytes)
{
    if (_out.empty())
        _progress = _station.now;
    _out.append(bytes);
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
    return plain(status, reason);
}

// Ends a request that cannot be read to its end.
void Connection::refuse(unsigned status, const std::string& reason)
{
    _refusal.reset();
    respond(refusal(status, reason), true);
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
    _exchange = std::make_shared<Exchange>(
        limits, _station.bodies, _station.area, [&station = _station, id = _id] { station.wake(id); });
    _station.began();
    HttpRequest& request = _exchange->request = std::move(head.request);
    request.peer = _peer;
    _form = {head.isOld, head.isLast, request.method != "HEAD", !head.isOld && takesTrailers(request)};
    _announced = head.announced;
    _received = 0;
    _isStreaming = _isAnswered = false;
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
    if (!_refusal && _announced > limits.bodyBytes)
        _refusal = tooLarge();
    // Whoever asks before sending the body, or would send more than we care to read, is answered now.
    if (_refusal && (_station.isStopping || head.asks || _announced > limits.discardBytes))
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
                           "The requests under way hold " + std::to_string(_station.bodies.bytes()) +
                               " bytes already.");
    if (_refusal)
    {
        body = std::string();
        exchange.share.giveBack();
        return;
    }
    // Growing in steps takes up to three times a large body. The announced length is believed once a part of
    // it is there: announcing alone must not cost memory. What became shorter so far will go on so.
    const std::uint64_t announced = std::min<std::uint64_t>(_announced, _station.limits.bodyBytes);
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
        _exchange->request.body = std::string();
        _exchange->share.giveBack();
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
    HttpResponse answer = std::move(*_refusal);
    _refusal.reset();
    if (answer.holdFor.count() == 0)
        return respond(std::move(answer), _form.closes);
    _exchange->reply.finish(std::move(answer), _station.now);
}

void Connection::respond(HttpResponse&& answer, bool closes)
{
    _form.closes = closes || _station.isStopping;
    enter(Phase::Answer);
    _isAnswered = true;
    send(answerHead(answer, answer.body.size(), _form));
    if (!_form.hasBody)
        return;
    if (answer.body.size() <= kCopied)
        send(answer.body);
    else
        _rest = std::move(answer.body);
}

// Brings the next part of an answer into _out.
bool Connection::fetch()
{
    if (_isAnswered)
    {
        endAnswer();
        return true;
    }
    if (_isStreaming)
        return fetchPiece();
    if (_station.isStopping)
        _exchange->reply.release();
    HttpResponse head;
    switch (_exchange->reply.takeHead(head))
    {
    case Reply::Start::Later:
        return false;
    case Reply::Start::None:
        close(kGone);
        return false;
    case Reply::Start::Whole:
        served(head.status);
        respond(std::move(head), _form.closes);
        return true;
    case Reply::Start::Stream:
        break;
    }
    served(head.status);
    _isStreaming = true;
    _form.closes = _form.closes || _form.isOld || _station.isStopping;
    send(answerHead(head, std::nullopt, _form));
    return fetchPiece();
}

void Connection::served(unsigned status)
{
    if (_place->isBusy && status < kErrors)
        _station.admission.served(_place);
}

bool Connection::fetchPiece()
{
    std::vector<char>& buffer = _station.buffer;
    std::size_t size = buffer.size();
    switch (_exchange->reply.read(buffer.data(), size))
    {
    case Reply::Piece::Nothing:
        return !_out.empty();
    case Reply::Piece::Broken:
        breakOff();
        return true;
    case Reply::Piece::End:
        _isAnswered = true;
        if (!_form.isOld)
            send("0\r\n\r\n");
        return true;
    case Reply::Piece::Text:
        break;
    }
    const std::string_view piece(buffer.data(), size);
    if (_form.isOld)
    {
        send(piece);
        return true;
    }
    char line[2 * sizeof size];
    send({line, static_cast<std::size_t>(std::to_chars(line, std::end(line), size, 16).ptr - line)});
    send("\r\n");
    send(piece);
    send("\r\n");
    return true;
}

// A client that wants trailers gets those of the reply; any other finds the connection closed without a last
// chunk.
void Connection::breakOff()
{
    const std::vector<HttpHeader> trailers = _exchange->reply.takeTrailers();
    log(LogLevel::Warning,
        "http",
        _peer + ": the answer broke off" + (trailers.empty() ? "" : ": " + trailers.back().second));
    if (!_form.takesTrailers || trailers.empty())
        return close(kGone);
    send("0\r\n");
    for (const auto& [name, value] : trailers)
        send(name + ": " + value + "\r\n");
    send("\r\n");
    _isAnswered = true;
}

void Connection::endAnswer()
{
    const bool closes = _form.closes;
    endRequest("the answer was sent");
    if (_out.capacity() > kKept)
        _out.shrink_to_fit();
    if (closes)
        startDrain();
    else
        enter(Phase::Idle);
}

void Connection::endRequest(const std::string& reason)
{
    _place->isBusy = false;
    _isFresh = false;
    _begun = kNever;
    _form = {};
    if (!_exchange)
        return;
    _exchange->reply.close(reason);
    _exchange.reset();
    _collect = nullptr;
    _station.ended();
}

void Connection::close(const std::string& reason)
{
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
