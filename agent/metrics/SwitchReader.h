// Reads the switch's instances for a scrape, as a client's enumeration would.
#ifndef AGENT_METRICS_SWITCHREADER_H
#define AGENT_METRICS_SWITCHREADER_H

#include "agent/metrics/LateReads.h"
#include "agent/metrics/open_metrics.h"
#include "agent/run/InFlight.h"
#include "agent/service/CimService.h"

#include <chrono>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

// Gives each class half of the time that is left, so that one whose provider does not come back leaves some
// to the others. Reading goes on on a thread of its own, which is left behind then.
class SwitchReader
{
  public:
    using Time = std::chrono::steady_clock::time_point;

    // What readings need, even those that are left behind. All of it outlives them.
    struct Means
    {
        const CimService& service;
        InFlight& inFlight;
        LateReads& late;
    };
    // `context` says who scrapes, `end` until when. The means outlive the object.
    SwitchReader(Means means, std::string nameSpace, RequestContext context, Time end)
        : _means(means), _nameSpace(std::move(nameSpace)), _context(std::move(context)), _end(end)
    {
    }

    // Hands over each instance of a class and its subclasses, with its path and these properties. Throws
    // CimError when they cannot be read in time, then perhaps after some of them.
    void read(const CimName& className,
              std::vector<CimName> properties,
              const std::function<void(const Instance&)>& take) const;

  private:
    const Means _means;
    const std::string _nameSpace;
    const RequestContext _context;
    const Time _end;
};

// A property's value or, if the instance lacks it, a key's of its path; null if there is none, or NULL.
const CimValue* valueOf(const Instance& instance, const CimName& name);

// The first element of an array, any other value as it is; null for none.
const CimValue* firstOf(const CimValue* value);

// Strings as they are, integers as decimals; empty for anything else.
std::string textOf(const CimValue* value);

// Integers and booleans, with the exponent added; a null for anything else.
Decimal numberOf(const CimValue* value, std::int32_t exponent = 0);

// A reference's key as text; empty if there is none.
std::string keyOf(const CimValue* reference, const CimName& name);

} // namespace cimd

#endif
