// How long an address waits for the answer to a failed log-in.
#ifndef AGENT_AUTH_GUESSDELAY_H
#define AGENT_AUTH_GUESSDELAY_H

#include "agent/auth/RecentMap.h"

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

namespace cimd
{

// The delay starts at a quarter of a second, doubles with each failure in a row from one address and is
// forgotten after a success or a quarter of an hour. All members may be called from any thread.
class GuessDelay
{
  public:
    using Time = RecentMap<unsigned>::Time;

    // Remembers that many addresses; more push out those that failed longest ago.
    GuessDelay(std::size_t addresses, std::chrono::milliseconds longest);

    // `peer` is "address:port". IPv6 addresses count as one if their first 64 bits, the network, are the
    // same: a host picks the rest as it likes.

    // Counts a failure; the delay for its answer.
    std::chrono::milliseconds failed(const std::string& peer, Time now);
    // The delay of the latest failure; none if there was none.
    std::chrono::milliseconds present(const std::string& peer, Time now);
    // Whether that address has failed lately, and not succeeded since.
    bool hasFailed(const std::string& peer, Time now);
    void succeeded(const std::string& peer);

  private:
    std::chrono::milliseconds delayAfter(unsigned failures) const;

    const std::chrono::milliseconds _longest;
    std::mutex _mutex;
    RecentMap<unsigned> _failures;
};

} // namespace cimd

#endif
