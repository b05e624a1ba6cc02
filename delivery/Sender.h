// The way of indications to their listeners: a queue for each destination, tries, and what is given up.
#ifndef DELIVERY_SENDER_H
#define DELIVERY_SENDER_H

#include "delivery/Http_Client.h"
#include "delivery/Subscriptions.h"
#include "delivery/delivery.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace cimple
{

// What bounds the delivery. Sizes are bytes of message bodies, each counted for every destination it waits
// for.
struct Sender_Settings
{
    // Waiting for one destination: the status of each port of the largest switch, at some 2.3 KB.
    std::size_t messagesEach = 2000;
    std::size_t bytesEach = 5 * 1024 * 1024;
    std::size_t bytesInAll = 8 * 1024 * 1024;
    unsigned tries = 8;                         // of one message
    std::chrono::milliseconds firstPause{1000}; // after a failed try; doubles with each in a row
    std::chrono::milliseconds longestPause{30000};
    std::chrono::milliseconds logPeriod{60000}; // between lines on losses of a destination
    std::chrono::milliseconds idleTime{120000}; // after which a destination is forgotten
    std::chrono::milliseconds stopTime{3000};   // for what is queued at the end
    Http_Settings http;

    // After so many failed tries in a row, one at least.
    std::chrono::milliseconds pauseAfter(unsigned failures) const;
};

// One thread that sends; any number that queue. The thread takes the sender's lock to look at the queues, and
// holds none while it talks to listeners or calls its hooks.
class Sender
{
  public:
    // Called on the sender's thread. Must not throw.
    struct Hooks
    {
        std::function<Persistence(const String& destination)> persistenceOf;
        std::function<std::uint32_t(const String& destination)> expire;
    };

    // Starts the thread. Throws std::bad_alloc or std::system_error.
    Sender(const Sender_Settings& settings, Hooks hooks);
    ~Sender() { stop(); }
    Sender(const Sender&) = delete;
    Sender& operator=(const Sender&) = delete;

    // See sendIndication. Throws std::bad_alloc; what was queued before stays.
    void send(const Instance& indication, const Destinations& list);

    // Ends the thread; once is enough. What comes later is lost.
    void stop();

    Delivery_Counts counts() const;

  private:
    typedef std::chrono::steady_clock Clock;

    // A destination. The first message of the queue is the one that is under way, or was tried without
    // success.
    struct Target
    {
        std::string url;
        String destination;
        std::deque<Http_Body> queue;
        std::size_t bytes = 0;
        bool isUnderWay = false;
        bool takesFresh = false;     // the next try is on a connection of its own
        bool wasAnswered = false;    // one of the tries of the first message
        unsigned tries = 0;          // of the first message
        unsigned failures = 0;       // in a row, of whichever message
        Clock::time_point dueTime{}; // of the next try
        Clock::time_point idleSince{};
        Losses losses;

        // Messages that must stay: the first, once it was tried.
        std::size_t held() const { return isUnderWay || tries > 0 ? 1 : 0; }
    };

    struct Start
    {
        Target* target;
        Http_Body body;
        bool isFresh;
    };

    std::string nextMessageId();
    // With the lock held.
    bool enqueue(const String& destination, const Http_Body& body);
    bool makeRoom(std::size_t size);

    void run();
    void serve();
    std::vector<Start> takeDue(Clock::time_point now);
    std::chrono::milliseconds pauseUntilDue(Clock::time_point now) const;
    void settle(Http_Client::Outcome& outcome) noexcept;
    void conclude(Http_Client::Outcome& outcome);
    void retry(Target& target, const Http_Client::Outcome& outcome);
    void giveUp(Target& target, const std::string& reason);
    void reportLosses(bool all);
    void forgetIdle(Clock::time_point now);
    bool isDone(Clock::time_point now) const;
    void abandon();

    // With the lock held.
    void startOver(Target& target);
    void
    lose(Target& target, Loss reason, std::size_t first, std::size_t count, const std::string& detail = {});
    void countLoss(Target& target, Loss reason, std::size_t count, const std::string& detail);

    const Sender_Settings _settings;
    const Hooks _hooks;
    const std::string _idPrefix;
    Http_Client _client; // the thread's, but for wake()

    mutable std::mutex _lock;               // leaf; guards what follows
    std::map<std::string, Target> _targets; // by URL; only the thread removes any
    std::size_t _bytes = 0;
    std::uint64_t _lastId = 0;
    Delivery_Counts _counts; // but for what is queued
    bool _isStopping = false;
    Clock::time_point _stopDeadline{};

    std::mutex _stopping; // one stop at a time
    std::thread _thread;
};

} // namespace cimple

#endif
