// The watching process.
#include "agent/run/Supervisor.h"

#include "agent/log/log.h"
#include "agent/run/exit_status.h"
#include "agent/run/signals.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace cimd
{

namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::duration_cast;
using std::chrono::milliseconds;

// The serving process keeps the grace itself and then says what it leaves behind; only one that cannot is
// killed.
constexpr std::chrono::seconds kKillMargin{2};

void complain(LogLevel level, const std::string& text)
{
    log(level, "supervisor", text);
}

std::string endText(int status)
{
    if (WIFSIGNALED(status))
        return "was ended by " + signalName(WTERMSIG(status)) + (WCOREDUMP(status) ? " (core dumped)" : "");
    return "ended by itself with exit status " + std::to_string(WEXITSTATUS(status));
}

void becomeServingProcess(pid_t parent)
{
    // An orphan would hold the port without anybody to stop it.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent)
        _exit(kExitUnfinished);
    // A terminal sends it to both processes; the parent's word is enough.
    std::signal(SIGINT, SIG_IGN);
    SignalSet({SIGINT, SIGUSR2, SIGCHLD}).unblock();
    markCrashes();
}

} // namespace

milliseconds RestartPause::next(milliseconds lived)
{
    constexpr milliseconds kFirst{100};
    constexpr std::chrono::minutes kEnough{1}; // of life, to be taken for able to run
    _pause = _pause == milliseconds(0) || lived >= kEnough ? kFirst : 2 * _pause;
    return _pause = std::min(_pause, _most);
}

Supervisor::Supervisor(const Limits& limits, InFlight& inFlight, Hooks hooks)
    : _limits(limits), _inFlight(inFlight), _hooks(std::move(hooks)), _parent(getpid()), _ready(1)
{
}

bool Supervisor::becomeReady()
{
    const bool isFirst = !std::exchange(_isReady, true) && _ready[0]++ == 0;
    if (getppid() == _parent)
        kill(_parent, SIGUSR2);
    return isFirst;
}

std::optional<int> Supervisor::run()
{
    RestartPause restart(_limits.restartSeconds);
    for (;;)
    {
        std::signal(SIGCHLD, SIG_DFL); // if it is ignored, nobody learns how a child ended
        const SignalSet early({SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGUSR2, SIGCHLD});
        const auto start = Clock::now();
        const pid_t child = fork();
        if (child < 0)
            throw std::system_error(errno, std::generic_category(), "cannot start the serving process");
        if (child == 0)
        {
            becomeServingProcess(_parent);
            return std::nullopt;
        }
        const End end = watch(child);
        const auto lived = duration_cast<milliseconds>(Clock::now() - start);
        // What kept the first process from serving will keep the next one; later ones may have bad luck.
        const bool isHopeless =
            WIFEXITED(end.status) && WEXITSTATUS(end.status) == kExitNotStarted && !hasBeenReady();
        if (isHopeless || (end.isAsked && WIFEXITED(end.status)))
            return WEXITSTATUS(end.status);
        report(child, end.status, lived);
        if (end.isAsked)
            return kExitUnfinished;
        const milliseconds time = restart.next(lived);
        complain(LogLevel::Warning, "starting again in " + secondsText(time));
        if (!pause(time))
            return EXIT_SUCCESS;
        _inFlight.clear();
    }
}

bool Supervisor::pause(milliseconds time)
{
    const SignalSet signals({SIGTERM, SIGINT, SIGHUP});
    const auto end = Clock::now() + time;
    for (auto left = time; left.count() > 0; left = duration_cast<milliseconds>(end - Clock::now()))
        if (const int signal = signals.wait(left); signal != 0 && isStop(signal))
        {
            complain(LogLevel::Info, signalName(signal) + ": stopping");
            _hooks.stop();
            return false;
        }
    return true;
}

bool Supervisor::isStop(int signal)
{
    if (signal != SIGHUP || _terminal.hasGone())
        return true;
    _hooks.reload();
    return false;
}

Supervisor::End Supervisor::watch(pid_t child)
{
    const SignalSet signals({SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGUSR2, SIGCHLD});
    End end{0, false};
    constexpr Clock::time_point kNone = Clock::time_point::max();
    Clock::time_point deadline = kNone;
    for (;;)
    {
        int signal = 0;
        if (deadline == kNone)
            signal = signals.wait();
        else if (const auto now = Clock::now(); now < deadline)
            signal = signals.wait(duration_cast<milliseconds>(deadline - now) + milliseconds(1));
        else
        {
            complain(LogLevel::Error, "the serving process does not stop: killing it");
            kill(child, SIGKILL);
            deadline = kNone;
        }
        switch (signal)
        {
        case SIGCHLD:
            if (waitpid(child, &end.status, WNOHANG) == child)
                return end;
            break;
        case SIGUSR1:
            kill(child, SIGUSR1);
            break;
        case SIGUSR2:
            if (hasBeenReady())
                _hooks.ready();
            break;
        case SIGHUP:
            if (!isStop(signal))
            {
                kill(child, SIGHUP);
                break;
            }
            [[fallthrough]];
        case SIGTERM:
        case SIGINT:
            // Whoever sends a second one does not want to wait.
            kill(child, end.isAsked ? SIGKILL : SIGTERM);
            if (!end.isAsked)
            {
                complain(LogLevel::Info, signalName(signal) + ": stopping");
                _hooks.stop();
                deadline = Clock::now() + _limits.stopGrace + kKillMargin;
            }
            end.isAsked = true;
            break;
        default:
            break;
        }
    }
}

void Supervisor::report(pid_t child, int status, milliseconds lived) const
{
    const auto requests = _inFlight.list();
    complain(LogLevel::Error,
             "serving process " + std::to_string(child) + " " + endText(status) + " after " +
                 secondsText(lived) + "; requests in flight: " + std::to_string(requests.size()));
    for (const InFlight::Request& request : requests)
        complain(LogLevel::Error, request.text());
}

} // namespace cimd
