// One answer on its way from the thread that makes it to the thread that sends it.
#ifndef AGENT_HTTP_REPLY_H
#define AGENT_HTTP_REPLY_H

#include "agent/http/HttpHandler.h"
#include "agent/http/Overflow.h"
#include "agent/http/deadline.h"
#include "agent/limits/Limits.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace cimd
{

// Holds what the maker has passed on and the sender has not sent: some of it in memory, more in a file, for a
// provider that waited for its client could hold locks that others wait for. A client that keeps up is waited
// for a moment all the same, a fraction of a second in all, since a file costs more than sending. Only when
// there is no room in the file either the maker waits for long. Two threads meet here: the maker, who may be
// late or never come back, and the I/O thread, which sends, sees the client leave and looks at the time.
// Whoever is told that the answer is closed owes it nothing more, so both share the object.
class Reply : public AnswerStream
{
  public:
    // `area` outlives the reply. `wake` tells the sender that something it waits for has changed; it is
    // called with the reply locked, from any thread, and not after close().
    Reply(const Limits& limits, SpoolArea& area, std::function<void()> wake);

    // --- the maker

    // Time begins to run. `writeOff` is called, with the reply locked, if it runs out.
    void start(Time now, std::function<void()> writeOff);
    void flush(HttpResponse& response) override;
    std::size_t taken() const override;
    void whenLate(std::function<HttpResponse()> late) override;
    // The last word; nothing may follow. Ignored when the answer is closed.
    void finish(HttpResponse&& response, Time now);

    // --- the I/O thread

    // Does what is due. @return when to be called again.
    Time check(Time now);
    // Lets an answer go that is kept back.
    void release();

    enum class Start
    {
        Later,  ///< There will be a call of `wake`.
        Held,   ///< The same; the answer is there and kept back.
        Whole,  ///< an answer as it is
        Stream, ///< the head of one whose body is to be read
        None    ///< the answer was closed before it was made
    };
    // What is to be sent first.
    Start takeHead(HttpResponse& head);

    enum class Piece
    {
        Text,    ///< there are bytes
        Nothing, ///< there will be a call of `wake`
        End,
        Broken ///< the answer is incomplete and will stay so
    };
    // Gives the next bytes of a streaming answer's body.
    Piece read(std::string& piece);
    // What to send after the body; of a broken answer only.
    std::vector<HttpHeader> takeTrailers();
    // Nobody takes the rest: `reason` is what the maker hears.
    void close(const std::string& reason);

  private:
    void wakeSender();
    bool hasRoom() const { return _overflow.empty() && _unsentBytes <= _mostUnsent; }
    bool overflows(std::string_view chunk);
    std::string nextPiece();
    bool isTaken() const { return _overflow.empty() && _unsentBytes <= _mostUnsent / 2; }
    void waitUntilTaken(std::unique_lock<std::mutex>& lock, Time end);
    void waitForQuickClient(std::unique_lock<std::mutex>& lock);
    void push(std::string&& chunk);
    void end(HttpResponse&& response);
    void hasReturned();
    [[noreturn]] void throwClosed() const;

    const std::size_t _chunk;
    const std::size_t _mostUnsent;
    const std::chrono::seconds _timeLimit;
    const std::function<void()> _wake;

    mutable std::mutex _mutex;
    std::condition_variable _room;
    bool _isAwaited = false; // by the sender

    HttpResponse _response; // the head once the answer streams, everything if it never does
    std::deque<std::string> _unsent;
    std::size_t _unsentBytes = 0; // of _unsent
    Overflow _overflow;           // comes after _unsent
    std::string _last;            // comes after the overflow
    std::size_t _taken = 0;
    std::uint64_t _sent = 0; // bytes that the sender has read
    std::vector<HttpHeader> _trailers;
    bool _isStreaming = false;
    bool _isComplete = false; // the maker has nothing to add
    bool _isBroken = false;
    bool _isClosed = false; // the sender has nothing to take
    std::string _reason;
    // Closed, or complete without its maker, who looks at this for each result and at the rest for a chunk.
    std::atomic<bool> _isUnwanted{false};

    std::function<HttpResponse()> _late;
    std::function<void()> _writeOff;
    Time _due = kNever;
    Time _heldUntil = kNever; // set while a complete answer is kept back
    bool _isWaiting = false;  // for the client
    Time::duration _patience; // for a client that keeps up
};

} // namespace cimd

#endif
