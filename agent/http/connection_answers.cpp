// The answers of a connection, on their way from their makers to the socket.
#include "agent/http/Connection.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace cimd
{

namespace
{

constexpr unsigned kErrors = 400;          // and up
constexpr std::size_t kCopied = 64 * 1024; // a body that follows its head in the same buffer
constexpr std::size_t kKept = 4 * 1024;    // of a buffer between two answers

} // namespace

// Answers after the time that the answer says, which may be seconds, at the wish of a client that guesses:
// that makes nobody busy.
void Connection::hold(HttpResponse&& answer)
{
    if (answer.holdFor.count() != 0)
        _place->isBusy = false;
    _heldUntil = _station.now + answer.holdFor;
    _held = std::move(answer);
}

void Connection::respond(HttpResponse&& answer)
{
    _form.closes = _form.closes || _station.isStopping;
    enter(Phase::Answer);
    _isAnswered = true;
    sendHead(answer, answer.body.size());
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
    if (_held)
    {
        if (_station.now < _heldUntil && !_station.isStopping)
            return false;
        respond(*std::exchange(_held, std::nullopt));
        return true;
    }
    HttpResponse part;
    Reply::Part kind = _exchange->reply.take(part);
    if (kind == Reply::Part::Whole || kind == Reply::Part::Head)
        served(part.status);
    if (kind == Reply::Part::Head)
    {
        _form.closes = _form.closes || _form.isOld || _station.isStopping;
        sendHead(part, std::nullopt);
        kind = _exchange->reply.take(part); // leaves together with the head
    }
    switch (kind)
    {
    case Reply::Part::Whole:
        noteLogIn(part);
        hold(std::move(part));
        break;
    case Reply::Part::Body:
        sendPiece(std::move(part.body));
        break;
    case Reply::Part::Broken:
        breakOff(part.trailers);
        break;
    case Reply::Part::End:
        _isAnswered = true;
        if (!_form.isOld)
            send("0\r\n\r\n");
        break;
    default:
        if (_out.empty())
            _place->behindSince = kNever;
        return !_out.empty();
    }
    return true;
}

void Connection::sendHead(const HttpResponse& answer, std::optional<std::size_t> length)
{
    ++_station.answers[answer.status];
    send(answerHead(answer, length, _form));
}

void Connection::served(unsigned status)
{
    if (_place->isBusy && status < kErrors)
        _station.admission.served(_place);
}

void Connection::sendPiece(std::string&& piece)
{
    if (_form.isOld)
        return send(piece);
    char size[2 * sizeof piece.size() + sizeof "\r\n"];
    std::snprintf(size, sizeof size, "%zx\r\n", piece.size());
    send(size);
    _rest = std::move(piece) + "\r\n";
}

// A client that wants trailers gets those of the reply; any other finds the connection closed without a last
// chunk.
void Connection::breakOff(const std::vector<HttpHeader>& trailers)
{
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

void Connection::send(std::string_view bytes)
{
    if (_out.empty())
        _progress = _station.now;
    _out.append(bytes);
}

bool Connection::write()
{
    if (!_canWrite)
        return false;
    const Channel::Result put = _channel.write(std::string_view(_out).substr(_sent), !_rest.empty());
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
        _place->behindSince = std::min(_place->behindSince, _station.now);
        return false;
    default:
        close(kGone);
        return false;
    }
}

} // namespace cimd
