// Indications that did not reach their listener, counted by reason and logged now and then.
#ifndef DELIVERY_LOSSES_H
#define DELIVERY_LOSSES_H

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cimple
{

enum class Loss : std::size_t
{
    Queue_Full, // more are waiting than may
    Unheard,    // the listener did not answer any try
    Refused,    // the listener answered with an error
    Expired,    // they waited for a transient listener that was given up
    Unusable,   // the destination is no URL of HTTP or HTTPS
    Stopped     // the delivery ended before
};
constexpr std::size_t kLossReasons = 6;

// "queue_full": one word for a program that counts.
const char* lossName(Loss reason);

// The losses of one destination since its last line in the log.
class Losses
{
  public:
    typedef std::chrono::steady_clock::time_point Time;

    // `detail`: what came from the listener or its connection.
    void add(Loss reason, std::size_t count, const std::string& detail = {});

    bool isEmpty() const { return _count == 0; }
    // When there is a line due, if one is.
    std::optional<Time> dueTime() const;
    // "2 for which there was no room, 1 refused (HTTP status 400)". Starts over; the next line is due a
    // `period` from now at the earliest.
    std::string take(Time now, std::chrono::milliseconds period);

  private:
    std::array<std::uint64_t, kLossReasons> _counts{};
    std::uint64_t _count = 0;
    std::string _detail; // of the last loss that had one
    Time _quietUntil{};
};

// A URL for the log: without user and password, in printable characters, not too long.
std::string loggable(std::string_view url);
// A text from elsewhere for the log.
std::string printable(std::string_view text);

} // namespace cimple

#endif
