// The answers of a connection, on their way from their makers to the socket.
#include "agent/http/Connection.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

namespace cimd
{

namespace
{

constexpr unsigned kErrors = 400;          // and up
constexpr std::size_t kCopied = 64 * 1024; // a body that follows its head in the same buffer
constexpr std::size_t kKept = 4 * 1024;    // of a buffer between two answers

} // namespace

void Connection::respond(HttpResponse&& answer, bool closes)
{
    _form.closes = closes || _station.isStopping;
    enter(Phase::Answer);
    _isAnswered = true;
    sendHead(answer, answer.body.size());
    if (!_form.hasBody)
        return;
    if (answer.body.size() <= kCopied)
        send(answer.body);
    else
        sendAfter(std::move(answer.body));
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
    case Reply::Start::Held: // which may be for seconds, at the wish of a client that guesses
        _place->isBusy = false;
        return false;
    case Reply::Start::None:
        close(kGone);
        return false;
    case Reply::Start::Whole:
        served(head.status);
        noteLogIn(head);
        respond(std::move(head), _form.closes);
        return true;
    case Reply::Start::Stream:
        break;
    }
    served(head.status);
    _isStreaming = true;
    _form.closes = _form.closes || _form.isOld || _station.isStopping;
    sendHead(head, std::nullopt);
    return fetchPiece();
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

bool Connection::fetchPiece()
{
    std::string piece;
    switch (_exchange->reply.read(piece))
    {
    case Reply::Piece::Nothing:
        if (_out.empty())
            _place->behindSince = kNever;
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
    if (!_form.isOld)
    {
        char size[2 * sizeof piece.size()];
        const auto sizeEnd = std::to_chars(size, std::end(size), piece.size(), 16).ptr;
        send({size, static_cast<std::size_t>(sizeEnd - size)});
        send("\r\n");
        piece += "\r\n";
    }
    sendAfter(std::move(piece));
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

void Connection::send(std::string_view bytes)
{
    if (_out.empty())
        _progress = _station.now;
    _out.append(bytes);
}

void Connection::sendAfter(std::string&& bytes)
{
    if (!_out.empty())
    {
        _rest = std::move(bytes);
        return;
    }
    _progress = _station.now;
    _out = std::move(bytes);
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
