// Chunks, waiting, and what happens when time runs out.
#include "agent/http/Reply.h"

#include "agent/cim/CimError.h"
#include "agent/log/log.h"

#include <algorithm>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::chrono::seconds kWaitStep{1};
constexpr std::chrono::milliseconds kMoment{20};
constexpr std::chrono::milliseconds kPatience{200};
constexpr std::size_t kBeyond = 8 * 1024; // by which a chunk exceeds its size, mostly
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
    : _limits(limits), _wake(std::move(wake)), _overflow(area), _patience(kPatience)
{
}

void Reply::start(Time now, std::function<void()> writeOff)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _due = now + _limits.operationSeconds;
    _writeOff = std::move(writeOff);
}

void Reply::wakeSender()
{
    if (std::exchange(_isAwaited, false))
        _wake();
}

void Reply::checkWanted() const
{
    if (_isUnwanted)
        throw AnswerClosed(_reason);
}

void Reply::flush(HttpResponse& response)
{
    if (response.body.size() < _limits.chunkBytes && !_isUnwanted)
        return;
    std::unique_lock<std::mutex> lock(_mutex);
    if (!hasRoom())
        waitForQuickClient(lock);
    checkWanted();
    std::string chunk = std::move(response.body);
    response.body.clear();
    response.body.reserve(_limits.chunkBytes + kBeyond);
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
        waitUntilTaken(lock, kNever); // or until the sender closes the answer
        checkWanted();
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

// The time that the client takes is not the provider's.
void Reply::waitUntilTaken(std::unique_lock<std::mutex>& lock, Time end)
{
    const Time asked = timeNow();
    const auto isOver = [this] { return isTaken() || _isUnwanted; };
    _isWaiting = true;
    _room.wait_until(lock, end, isOver);
    _isWaiting = false;
    if (_due != kNever)
        _due += timeNow() - asked;
}

void Reply::waitForQuickClient(std::unique_lock<std::mutex>& lock)
{
    if (_patience <= Time::duration::zero() || !_overflow.empty())
        return;
    const Time asked = timeNow();
    waitUntilTaken(lock, asked + kMoment);
    _patience = hasRoom() ? _patience - (timeNow() - asked) : Time::duration::zero();
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
        _response.trailers = std::move(response.trailers);
    }
    else
        _response.body = std::move(response.body);
    _isComplete = true;
}

// No time is running for the maker any more.
void Reply::hasReturned()
{
    _late = nullptr;
    _writeOff = nullptr;
    _due = kNever;
}

void Reply::finish(HttpResponse&& response)
{
    std::lock_guard<std::mutex> lock(_mutex);
    hasReturned();
    if (_isComplete)
        return;
    end(std::move(response));
    wakeSender();
}

Time Reply::check(Time now)
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (now < _due || _due == kNever)
        return _due;
    if (_isWaiting)
        return now + kWaitStep; // by how much it is due later shows when the client has taken something
    if (!_isComplete)
    {
        _isUnwanted = true;
        _reason = kLate;
        end(_late ? _late() : plainLateAnswer());
    }
    const std::function<void()> writeOff = std::move(_writeOff);
    hasReturned();
    writeOff();
    wakeSender();
    return kNever;
}

Reply::Part Reply::take(HttpResponse& part)
{
    std::lock_guard<std::mutex> lock(_mutex);
    if (_hasBegun)
        return takeBody(part);
    _isAwaited = !_isStreaming && !_isComplete;
    if (_isAwaited)
        return Part::None;
    if (!_isStreaming)
    {
        part = std::move(_response);
        return Part::Whole;
    }
    _hasBegun = true;
    part.status = _response.status;
    part.headers = std::move(_response.headers);
    return Part::Head;
}

// The next chunk from the file, which ends with its last byte.
std::string Reply::overflowed()
{
    constexpr std::size_t kLineEnd = 2; // which HTTP puts behind a chunk
    std::string piece;
    piece.reserve(_limits.chunkBytes + kLineEnd);
    piece.resize(_limits.chunkBytes);
    piece.resize(_overflow.read(piece.data(), piece.size()));
    if (_overflow.empty())
        _overflow.clear();
    return piece;
}

// Empty if there is nothing to send now.
std::string Reply::nextPiece()
{
    if (_unsent.empty() && !_overflow.empty())
        return overflowed();
    if (_unsent.empty())
        return std::exchange(_response.body, {});
    std::string piece = std::move(_unsent.front());
    _unsent.pop_front();
    _unsentBytes -= piece.size();
    return piece;
}

Reply::Part Reply::takeBody(HttpResponse& part)
{
    try
    {
        part.body = nextPiece();
    }
    catch (const CimError& error)
    {
        log(LogLevel::Error, "http", error.what());
        _reason = error.what();
        _isUnwanted = _isComplete = _isBroken = true;
        _overflow.clear();
    }
    if (isTaken())
        _room.notify_all();
    if (!part.body.empty())
        return Part::Body;
    _isAwaited = !_isComplete;
    if (_isAwaited)
        return Part::None;
    part.trailers = std::move(_response.trailers);
    return _isBroken ? Part::Broken : Part::End;
}

void Reply::close(const std::string& reason)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _isAwaited = false;
    _isUnwanted = true;
    if (_reason.empty())
        _reason = reason;
    _unsent.clear();
    _unsentBytes = 0;
    _overflow.clear();
    _response.body.clear();
    _room.notify_all();
}

} // namespace cimd
