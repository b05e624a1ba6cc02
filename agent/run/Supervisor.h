// Keeps a serving process running: one that crashes is reported and replaced.
#ifndef AGENT_RUN_SUPERVISOR_H
#define AGENT_RUN_SUPERVISOR_H

#include "agent/limits/Limits.h"
#include "agent/run/InFlight.h"
#include "agent/run/SharedArray.h"
#include "agent/run/signals.h"

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
    struct Hooks
    {
        std::function<void()> stop;   ///< The parent is told to stop: clients are to be turned away.
        std::function<void()> reload; ///< What serving processes get from the parent is to be read again.
        std::function<void()> ready;  ///< A serving process is ready, after its start or a reload.
    };

    // `inFlight` outlives the object. The calling process has no threads.
    Supervisor(const Limits& limits, InFlight& inFlight, Hooks hooks);

    // Returns in each serving process, with nothing, and in the parent when all is over, with the status to
    // exit with. SIGTERM and SIGINT stop the serving process (as SIGTERM; a second one kills it), and so does
    // SIGHUP when the terminal has gone. SIGHUP otherwise and SIGUSR1 are passed on. Ends of the serving
    // process that nobody asked for are followed by a new one after a pause, but for kExitNotStarted before
    // any was ready.
    std::optional<int> run();

    // For a serving process that is ready, or ready again after a reload: lets the parent know, by SIGUSR2.
    // True if none was before.
    bool becomeReady();
    // Whether any serving process has become ready.
    bool hasBeenReady() const { return _ready[0] != 0; }
    // How many were ready before this one.
    std::uint32_t restarts() const { return _ready[0] - (_isReady ? 1 : 0); }

  private:
    struct End
    {
        int status;   // as waitpid() gives it
        bool isAsked; // by a signal to the parent
    };
    End watch(pid_t child);
    // False if a signal to stop comes first.
    bool pause(std::chrono::milliseconds time);
    // Whether a signal means to stop; does what it means otherwise.
    bool isStop(int signal);
    void report(pid_t child, int status, std::chrono::milliseconds lived) const;

    const Limits& _limits;
    InFlight& _inFlight;
    const Hooks _hooks;
    const Terminal _terminal;
    const pid_t _parent;
    const SharedArray<std::atomic<std::uint32_t>> _ready; // serving processes that became so
    bool _isReady = false;                                // this process
};

} // namespace cimd

#endif
