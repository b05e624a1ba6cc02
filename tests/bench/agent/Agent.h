// A running cimd to be measured.
#ifndef TESTS_BENCH_AGENT_AGENT_H
#define TESTS_BENCH_AGENT_AGENT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <sys/types.h>

namespace bench
{

// What /proc says of a process, in kilobytes.
struct Memory
{
    std::size_t now = 0;   // VmRSS
    std::size_t peak = 0;  // VmHWM: the most that VmRSS ever was
    std::size_t own = 0;   // RssAnon: the part that is no file's, that is, no program's and no library's
    std::size_t share = 0; // Pss: as VmRSS, but a page that several processes have counts for each in part
};

// Started on a free port; stopped at the end of the scope. Throws when it does not come up.
class Agent
{
  public:
    // `arguments` follow --port. The serving process is measured, so it runs without its supervisor unless
    // `supervised`.
    Agent(const std::string& program, std::vector<std::string> arguments, bool supervised = false);
    ~Agent();
    Agent(const Agent&) = delete;
    Agent& operator=(const Agent&) = delete;

    std::uint16_t port() const { return _port; }
    std::uint16_t tlsPort() const { return _tlsPort; } // 0: none
    std::uint16_t metricsPort() const { return _metricsPort; }
    Memory memory() const; // of the process that was started
    // Of all its threads since the start.
    double processorSeconds() const;
    // Makes the next peak that of the time from now on.
    void forgetPeak() const;

  private:
    pid_t _pid = -1;
    std::uint16_t _port = 0;
    std::uint16_t _tlsPort = 0;
    std::uint16_t _metricsPort = 0;
};

} // namespace bench

#endif
