// Who has a connection, and whose ends when there are no more to be had.
#ifndef AGENT_HTTP_ADMISSION_H
#define AGENT_HTTP_ADMISSION_H

#include "agent/http/deadline.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <unordered_map>

namespace cimd
{

// A client is a stranger until a request of its connection was answered well or carried right credentials.
// The stranger that came first goes first; when there is none, the client that was last served longest ago.
// Nobody goes while its answer is made or on its way, unless it has been behind with taking it for longer
// than `patience`: then the one that has been so longest goes, after all others. Used on one thread.
class Admission
{
  public:
    struct Guest
    {
        std::uint64_t id;
        std::string address; ///< IPv6 clients count by network.
        bool isKnown = false;
        bool isBusy = false;       ///< Its answer is made or on its way.
        Time behindSince = kNever; ///< It has not taken all that there is of its answer.
    };
    using Place = std::list<Guest>::iterator;

    // For so many guests, and so many of one address.
    Admission(std::size_t most, std::size_t mostOfOne, std::chrono::seconds patience)
        : _most(most), _mostOfOne(mostOfOne), _patience(patience)
    {
    }

    bool isFull() const { return size() >= _most; }
    bool isFullFor(const std::string& address) const { return countOf(address) >= _mostOfOne; }
    // Who goes for somebody new; null if nobody can.
    const Guest* next(Time now) const;
    // Which stranger of this address goes for another client there; null if none can.
    const Guest* next(const std::string& address) const;

    // The place is valid until leave().
    Place enter(std::uint64_t id, const std::string& address);
    // The guest has been served.
    void served(Place place);
    void leave(Place place);

    std::size_t size() const { return _strangers.size() + _known.size(); }
    // "192.0.2.7 (96)", the address with the most guests; empty if there is none.
    std::string most() const;

  private:
    std::size_t countOf(const std::string& address) const;

    const std::size_t _most;
    const std::size_t _mostOfOne;
    const std::chrono::seconds _patience;
    std::list<Guest> _strangers; // the one that waits longest first
    std::list<Guest> _known;     // the one served longest ago first
    std::unordered_map<std::string, std::size_t> _byAddress;
};

} // namespace cimd

#endif
