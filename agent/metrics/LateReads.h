// Readings of classes that outlast their scrape.
#ifndef AGENT_METRICS_LATEREADS_H
#define AGENT_METRICS_LATEREADS_H

#include <chrono>
#include <future>
#include <map>
#include <mutex>
#include <string>

namespace cimd
{

// A provider cannot be interrupted. What it was asked for and has not given in time is kept here until it
// comes back, and its class is not asked for again meanwhile: one thread a class hangs at most. The
// destructor waits for all of them. All members may be called from any thread.
class LateReads
{
  public:
    using Time = std::chrono::steady_clock::time_point;

    void add(const std::string& className, std::future<void>&& reading);
    bool has(const std::string& className);
    // False when some are not back by then.
    bool awaitAll(Time end);

  private:
    std::mutex _mutex;
    std::map<std::string, std::future<void>> _readings; // by class
};

} // namespace cimd

#endif
