// Chunks, waiting, and what happens when time runs out.
#include "agent/http/Reply.h"

#include "agent/cim/CimError.h"
#include "agent/log/log.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::chrono::seconds kWaitStep{1};
const char* const kLate = "it did not finish in time";

// For a handler that has not said how to answer.
HttpResponse plainLateAnswer()
{
    HttpResponse response{kInternalError, {{"Content-Type", "text/plain"}}, "The request took too long.\n"};
    response.trailers.emplace_back("CIMStatusCode", "1");
    return response;
}

} // namespace

Reply::Reply(const Limits& limits, SpoolArea& area, std::function<void()> wake)
    : _chunk(limits.chunkBytes), _mostUnsent(limits.unsentBytes), _timeLimit(limits.operationSeconds),
      _wake(std::move(wake)), _overflow(area)
{
}

void Reply::start(Time now, std::function<void()> writeOff)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _due = now + _timeLimit;
    _writeOff = std::move(writeOff);
}

void Reply::wakeSender()
{
    if (std::exchange(_isAwaited, false) && !_isClosed)
        _wake();
}

void Reply::throwClosed() const
{
    throw AnswerClosed(_reason);
}

void Reply::flush(HttpResponse& response)
{
    if (response.body.size() < _chunk)
        return;
    std::unique_lock<std::mutex> lock(_mutex);
    if (_isClosed || _isComplete)
        throwClosed();
    std::string chunk = std::move(response.body);
    response.body.clear();
    response.body.reserve(chunk.capacity());
    if (!_isStreaming)
    {
        _response = response;
        _isStreaming = true;
    }
    _taken += chunk.size();
    if (hasRoom())
        push(std::move(chunk));
    else if (!overflows(chunk))
    {
        if (!waitForRoom(lock))
            throwClosed();
        push(std::move(chunk));
    }
    wakeSender();
}

void Reply::push(std::string&& chunk)
{
    _unsentBytes += chunk.size();
    _unsent.push_back(std::move(chunk));
}

bool Reply::overflows(std::string_view chunk)
try
{
    _overflow.add(chunk);
    return true;
}
catch (const CimError& error)
{
    log(LogLevel::Debug, "http", std::string("an operation waits for its client: ") + error.what());
    return false;
}

// False when the answer is closed.
bool Reply::waitForRoom(std::unique_lock<std::mutex>& lock)
{
    // The time that the client takes is not the provider's. The sender closes the answer of one that takes
    // nothing.
    const Time asked = timeNow();
    _isWaitingForRoom = true;
    _room.wait(lock, [this] { return hasRoom() || _isClosed; });
    _isWaitingForRoom = false;
    if (_due != kNever)
        _due += timeNow() - asked;
    return !_isClosed;
}

std::size_t Reply::taken() const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return _taken;
}

void Reply::whenLate(std::function<HttpResponse()> late)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _late = std::move(late);
}

// Takes the last of an answer; `response` is the rest of one that streams.
void Reply::end(HttpResponse&& response)
{
    if (!_isStreaming)
        _response = std::move(response);
    else if (!response.trailers.empty())
    {
        _isBroken = true;
        _trailers = std::move(response.trailers);
    }
    else
        _last = std::move(response.body);
    _isComplete = true;
}

// No time is running for the maker any more.
void Reply::hasReturned()
{
    _late = nullptr;
    _writeOff = nullptr;
    _due = kNever;
}

void Reply::finish(HttpResponse&& response, Time now)
{
    std::lock_guard<std::mutex> lock(_mutex);
    hasReturned();
    if (_isComplete)
        return;
    const auto hold = response.holdFor;
    end(std::move(response));
    if (hold.count() > 0 && !_isStreaming && !_isClosed)
    {
        _heldUntil = now + hold;
        _wake(); // to look at the time
    }
    else
        wakeSender();
}

Time Reply::check(Time now)
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (_heldUntil <= now)
    {
        _heldUntil = kNever;
        wakeSender();
    }
    if (_due == kNever)
        return _heldUntil;
    if (now < _due)
        return _due;
    if (_isWaitingForRoom)
        return now + kWaitStep; // by how much it is due later shows when the client has taken something
    if (!_isComplete)
    {
        _reason = kLate;
        end(_late ? _late() : plainLateAnswer());
    }
    const std::function<void()> writeOff = std::move(_writeOff);
    hasReturned();
    writeOff();
    wakeSender();
    return kNever;
}

void Reply::release()
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (_heldUntil == kNever)
        return;
    _heldUntil = kNever;
    wakeSender();
}

Reply::Start Reply::takeHead(HttpResponse& head)
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (_isClosed)
        return Start::None;
    _isAwaited = !_isStreaming && (!_isComplete || _heldUntil != kNever);
    if (_isAwaited)
        return Start::Later;
    head = std::move(_response);
    return _isStreaming ? Start::Stream : Start::Whole;
}

std::size_t Reply::readUnsent(char* to, std::size_t most)
{
    std::size_t size = 0;
    while (size < most && !_unsent.empty())
    {
        const std::string& first = _unsent.front();
        const std::size_t part = std::min(most - size, first.size() - _sentOfFirst);
        std::memcpy(to + size, first.data() + _sentOfFirst, part);
        size += part;
        _sentOfFirst += part;
        if (_sentOfFirst == first.size())
        {
            _unsent.pop_front();
            _sentOfFirst = 0;
        }
    }
    _unsentBytes -= size;
    return size;
}

Reply::Piece Reply::read(char* to, std::size_t& size)
{
    std::lock_guard<std::mutex> lock(_mutex);
    const std::size_t most = std::exchange(size, 0);
    if (_unsent.empty() && _overflow.empty() && !_last.empty())
        push(std::move(_last));
    try
    {
        size = _unsent.empty() ? _overflow.read(to, most) : readUnsent(to, most);
    }
    catch (const CimError& error)
    {
        log(LogLevel::Error, "http", error.what());
        _reason = error.what();
        _isComplete = _isBroken = true;
        _overflow.clear();
    }
    _sent += size;
    if (hasRoom())
        _room.notify_all();
    if (size != 0)
        return Piece::Text;
    if (_isComplete || _isClosed)
        return _isBroken || _isClosed ? Piece::Broken : Piece::End;
    _isAwaited = true;
    return Piece::Nothing;
}

std::vector<HttpHeader> Reply::takeTrailers()
{
    std::lock_guard<std::mutex> lock(_mutex);
    return std::move(_trailers);
}

void Reply::close(const std::string& reason)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _isClosed = true;
    if (_reason.empty())
        _reason = reason;
    _unsent.clear();
    _unsentBytes = _sentOfFirst = 0;
    _overflow.clear();
    _last.clear();
    _room.notify_all();
}

} // namespace cimd
