// Keeps a serving process running: one that crashes is reported and replaced.
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

// How long to wait before the next start: hardly at all after bad luck, longer and longer while a program
// cannot run, so that trying costs little and what is wrong may be put right meanwhile.
class RestartPause
{
  public:
    explicit RestartPause(std::chrono::seconds most) : _most(most) {}

    // After an end that came so long after the start.
    std::chrono::milliseconds next(std::chrono::milliseconds lived);

  private:
    const std::chrono::milliseconds _most;
    std::chrono::milliseconds _pause{0};
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
    // SIGUSR1 is passed on. Ends of the serving process that nobody asked for are followed by a new one after
    // a pause, but for kExitNotStarted before any was ready.
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
    // False if a signal to stop comes first.
    static bool pause(std::chrono::milliseconds time);
    void report(pid_t child, int status, std::chrono::milliseconds lived) const;

    const Limits& _limits;
    InFlight& _inFlight;
    const SharedArray<std::atomic<std::uint32_t>> _ready;
};

} // namespace cimd

#endif
