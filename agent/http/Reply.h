// One answer on its way from the thread that makes it to the thread that sends it.
#ifndef AGENT_HTTP_REPLY_H
#define AGENT_HTTP_REPLY_H

#include "agent/http/HttpHandler.h"
#include "agent/http/SpoolArea.h"
#include "agent/http/deadline.h"
#include "agent/limits/Limits.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <string>

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
    // `limits` and `area` outlive the reply. `wake` tells the sender that something it waits for has changed;
    // it is called with the reply locked, from any thread, and not after close().
    Reply(const Limits& limits, SpoolArea& area, std::function<void()> wake);

    // --- the maker

    // Time begins to run. `writeOff` is called, with the reply locked, if it runs out.
    void start(Time now, std::function<void()> writeOff);
    void flush(HttpResponse& response) override;
    std::size_t taken() const override { return _taken; }
    void whenLate(std::function<HttpResponse()> late) override;
    // The last word; nothing may follow. Ignored when the answer is closed.
    void finish(HttpResponse&& response);

    // --- the I/O thread

    // Does what is due. @return when to be called again.
    Time check(Time now);

    enum class Part
    {
        None,  ///< There will be a call of `wake`.
        Whole, ///< an answer as it is
        Head,  ///< of an answer whose body follows
        Body,  ///< the next bytes of that
        End,   ///< of the body
        Broken ///< The answer is incomplete and will stay so; `part` has the trailers.
    };
    // Takes out what is to be sent next.
    Part take(HttpResponse& part);
    // Nobody takes the rest: `reason` is what the maker hears.
    void close(const std::string& reason);

  private:
    void wakeSender();
    bool hasRoom() const { return _overflow.empty() && _unsentBytes <= _overflow.memoryBytes(); }
    bool overflows(std::string_view chunk);
    std::string overflowed();
    std::string nextPiece();
    Part takeBody(HttpResponse& part);
    bool isTaken() const { return _overflow.empty() && _unsentBytes <= _overflow.memoryBytes() / 2; }
    void waitUntilTaken(std::unique_lock<std::mutex>& lock, Time end);
    void waitForQuickClient(std::unique_lock<std::mutex>& lock);
    void push(std::string&& chunk);
    void end(HttpResponse&& response);
    void hasReturned();
    void checkWanted() const;

    const Limits& _limits;
    const std::function<void()> _wake;

    std::mutex _mutex;
    std::condition_variable _room;
    bool _isAwaited = false; // by the sender

    HttpResponse _response; // everything, or of an answer that streams head, last piece and trailers
    std::deque<std::string> _unsent;
    std::size_t _unsentBytes = 0; // of _unsent
    SpoolFile _overflow;          // comes after _unsent and before the last piece
    std::size_t _taken = 0;       // the maker's
    bool _isStreaming = false;
    bool _hasBegun = false;   // the sender has the head
    bool _isComplete = false; // the maker has nothing to add
    bool _isBroken = false;
    std::string _reason;
    // Closed, or complete without its maker, who looks at this for each result and at the rest for a chunk;
    // _reason says why.
    std::atomic<bool> _isUnwanted{false};

    std::function<HttpResponse()> _late;
    std::function<void()> _writeOff;
    Time _due = kNever;
    bool _isWaiting = false;  // for the client
    Time::duration _patience; // for a client that keeps up
};

} // namespace cimd

#endif
