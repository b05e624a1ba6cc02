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
    : _chunk(limits.chunkBytes), _mostUnsent(limits.unsentBytes), _timeLimit(limits.operationSeconds),
      _wake(std::move(wake)), _overflow(area), _patience(kPatience)
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
    if (response.body.size() < _chunk && !_isUnwanted)
        return;
    std::unique_lock<std::mutex> lock(_mutex);
    if (!hasRoom())
        waitForQuickClient(lock);
    if (_isClosed || _isComplete)
        throwClosed();
    std::string chunk = std::move(response.body);
    response.body.clear();
    response.body.reserve(_chunk + kBeyond);
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
        if (_isClosed || _isComplete)
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

// The time that the client takes is not the provider's.
void Reply::waitUntilTaken(std::unique_lock<std::mutex>& lock, Time end)
{
    const Time asked = timeNow();
    const auto isOver = [this] { return isTaken() || _isClosed || _isComplete; };
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
        return _heldUntil != kNever ? Start::Held : Start::Later;
    head = std::move(_response);
    return _isStreaming ? Start::Stream : Start::Whole;
}

// Empty if there is nothing to send now.
std::string Reply::nextPiece()
{
    if (_unsent.empty() && !_overflow.empty())
        return _overflow.read(_chunk);
    if (_unsent.empty())
        return std::exchange(_last, {});
    std::string piece = std::move(_unsent.front());
    _unsent.pop_front();
    _unsentBytes -= piece.size();
    return piece;
}

Reply::Piece Reply::read(std::string& piece)
{
    std::lock_guard<std::mutex> lock(_mutex);
    try
    {
        piece = nextPiece();
    }
    catch (const CimError& error)
    {
        log(LogLevel::Error, "http", error.what());
        _reason = error.what();
        _isComplete = _isBroken = true;
        _overflow.clear();
    }
    _sent += piece.size();
    if (isTaken())
        _room.notify_all();
    if (!piece.empty())
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
    _isClosed = _isUnwanted = true;
    if (_reason.empty())
        _reason = reason;
    _unsent.clear();
    _unsentBytes = 0;
    _overflow.clear();
    _last.clear();
    _room.notify_all();
}

} // namespace cimd
