// Keeps a serving process running: one that crashes is reported and replaced at once.
#ifndef AGENT_RUN_SUPERVISOR_H
#define AGENT_RUN_SUPERVISOR_H

#include "agent/Limits.h"
#include "agent/run/InFlight.h"
#include "agent/run/SharedArray.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>

namespace cimd
{

// Tells bad luck from a program that cannot run.
class CrashStreak
{
  public:
    CrashStreak(unsigned most, std::chrono::seconds within) : _most(most), _within(within) {}

    // Counts a crash that came so long after the start; true when it was one too many.
    bool add(std::chrono::milliseconds lived);
    unsigned length() const { return _length; }

  private:
    const unsigned _most;
    const std::chrono::seconds _within;
    unsigned _length = 0;
};

// Forks the process that serves and watches it from a process that does nothing else: no threads, no
// provider, no client. What the parent opened before, above all the listening sockets, every serving process
// inherits, so clients that connect between two of them are served by the second.
class Supervisor
{
  public:
    // `inFlight` outlives the object. The calling process has no threads.
    Supervisor(const Limits& limits, InFlight& inFlight);

    // Returns in each serving process, with nothing, and in the parent when all is over, with the status to
    // exit with. SIGTERM, SIGINT and SIGHUP stop the serving process (as SIGTERM; a second one kills it),
    // SIGUSR1 is passed on. Ends of the serving process that nobody asked for are followed by a new one, but
    // for kExitNotStarted before any was ready.
    // @param stopListening  Called in the parent when it is told to stop, so that clients are turned away.
    std::optional<int> run(const std::function<void()>& stopListening);

    // For a serving process that is ready: true if none was before.
    bool isFirstReady();
    // Whether any serving process has become ready.
    bool hasBeenReady() const { return _ready[0] != 0; }

  private:
    struct End
    {
        int status;   // as waitpid() gives it
        bool isAsked; // by a signal to the parent
    };
    End watch(pid_t child, const std::function<void()>& stopListening);
    void report(pid_t child, int status, std::chrono::milliseconds lived) const;

    const Limits& _limits;
    InFlight& _inFlight;
    const SharedArray<std::atomic<std::uint32_t>> _ready;
};

} // namespace cimd

#endif
