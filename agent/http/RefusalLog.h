// The log's lines about clients that are turned away.
#ifndef AGENT_HTTP_REFUSALLOG_H
#define AGENT_HTTP_REFUSALLOG_H

#include "agent/http/deadline.h"
#include "agent/log/log.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace cimd
{

// A reason has one line a minute; what it happens more often within that minute is counted and told in one
// more line at its end, with the address that did it most. Used on one thread.
class RefusalLog
{
  public:
    RefusalLog() = default;
    ~RefusalLog() { tellAll(kNever); }
    RefusalLog(const RefusalLog&) = delete;
    RefusalLog& operator=(const RefusalLog&) = delete;

    struct Refusal
    {
        LogLevel level;
        const char* area;
        std::string reason;      ///< One of a limited set of texts: each is remembered.
        std::string detail = {}; ///< Follows the reason in its line.
    };
    // `peer` is "address:port".
    void add(const Refusal& refusal, const std::string& peer, Time now);

    // How many there were since the start, told or not, by reason; reasons beyond the first 64 are "other".
    const std::map<std::string, std::uint64_t>& totals() const { return _totals; }

    // Whether such a refusal would be told, not counted.
    bool isNews(const std::string& reason) const { return _minutes.count(reason) == 0; }

    // Tells what is due. @return when to call it again.
    Time tellAll(Time now);

  private:
    struct Minute
    {
        LogLevel level;
        const char* area;
        Time end;
        std::size_t more = 0;
        std::map<std::string, std::size_t> addresses; // bounded; of `more`
    };
    std::map<std::string, Minute> _minutes;       // by reason
    std::map<std::string, std::uint64_t> _totals; // by reason
};

} // namespace cimd

#endif
