// One answer on its way from the thread that makes it to the thread that sends it.
#ifndef AGENT_HTTP_REPLY_H
#define AGENT_HTTP_REPLY_H

#include "agent/Limits.h"
#include "agent/http/Alarm.h"
#include "agent/http/HttpHandler.h"
#include "agent/http/Overflow.h"

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

// The connection that an answer leaves through, as its reply moves it. Called with the reply locked.
class Outlet
{
  public:
    virtual ~Outlet() = default;
    // There is nothing to send at present.
    virtual void pause() = 0;
    // There is again. Called once for each pause().
    virtual void goOn() = 0;
    // The client is to be left alone with what it got.
    virtual void drop() = 0;
};

// Holds what the maker has passed on and the sender has not sent: some of it in memory, more in a file, for a
// provider that waits for a client may be holding locks that others wait for. Only when there is no room in
// the file either the maker waits. Three threads meet here: the maker, who may be late or never come back;
// the sender, whose client may leave; and the alarm, which ends what takes too long. Whoever is told that the
// answer is closed owes it nothing more, so all of them share the object.
class Reply : public AnswerStream
{
  public:
    using Time = Alarm::Time;

    // `area` outlives the reply; `outlet` is not used after close().
    Reply(const Limits& limits, SpoolArea& area, Outlet& outlet);

    // --- the maker

    // Time begins to run. `writeOff` is called, with the reply locked, if it runs out.
    void start(Time now, std::function<void()> writeOff);
    void flush(HttpResponse& response) override;
    std::size_t taken() const override;
    void whenLate(std::function<HttpResponse()> late) override;
    // The last word; nothing may follow. Ignored when the answer is closed.
    void finish(HttpResponse&& response, Time now);

    // --- the alarm

    // Does what is due. @return when to be called again.
    Time check(Time now);
    // Lets an answer go that is kept back.
    void release();

    // --- the sender

    // Pauses the outlet until there is something to send; not if the answer is closed.
    void await();

    enum class Start
    {
        Whole,  ///< an answer as it is
        Stream, ///< the head of one whose body is to be read
        None    ///< the answer was closed before it was made
    };
    // What is to be sent first, once the outlet went on.
    Start takeHead(HttpResponse& head);

    enum class Piece
    {
        Text,    ///< bytes were copied
        Nothing, ///< the outlet was paused
        End,
        Broken ///< the answer is incomplete and will stay so
    };
    // Copies at most `size` bytes of a streaming answer's body to `to` and sets `size` to their number.
    Piece read(char* to, std::size_t& size);
    // What to send after the body; of a broken answer only.
    std::vector<HttpHeader> takeTrailers();
    // Nobody takes the rest: `reason` is what the maker hears.
    void close(const std::string& reason);

  private:
    void goOn();
    bool hasRoom() const { return _overflow.empty() && _unsentBytes <= _mostUnsent; }
    bool overflows(std::string_view chunk);
    std::size_t readUnsent(char* to, std::size_t most);
    bool waitForRoom(std::unique_lock<std::mutex>& lock);
    void push(std::string&& chunk);
    void end(HttpResponse&& response);
    void hasReturned();
    [[noreturn]] void throwClosed() const;

    const std::size_t _chunk;
    const std::size_t _mostUnsent;
    const std::chrono::seconds _timeLimit;
    const std::chrono::seconds _patience;

    mutable std::mutex _mutex;
    std::condition_variable _room;
    Outlet& _outlet;
    bool _isPaused = false;

    HttpResponse _response; // the head once the answer streams, everything if it never does
    std::deque<std::string> _unsent;
    std::size_t _unsentBytes = 0; // of _unsent
    std::size_t _sentOfFirst = 0;
    Overflow _overflow; // comes after _unsent
    std::string _last;  // comes after the overflow
    std::size_t _taken = 0;
    std::uint64_t _sent = 0; // bytes that the sender has read
    std::vector<HttpHeader> _trailers;
    bool _isStreaming = false;
    bool _isComplete = false; // the maker has nothing to add
    bool _isBroken = false;
    bool _isClosed = false; // the sender has nothing to take
    std::string _reason;

    std::function<HttpResponse()> _late;
    std::function<void()> _writeOff;
    Time _due = Alarm::kNever;
    Time _heldUntil = Alarm::kNever; // set while a complete answer is kept back
    bool _isWaitingForRoom = false;
};

} // namespace cimd

#endif
