// Waiting for signals, and the last moment of a crash.
#include "agent/run/signals.h"

#include "agent/base/FileDescriptor.h"
#include "agent/run/InFlight.h"

#include <array>
#include <cstring>
#include <ctime>
#include <fcntl.h>

namespace cimd
{

namespace
{

constexpr std::array kCrashes{SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};

// What was set for these signals before, which a sanitizer may have done.
std::array<struct sigaction, kCrashes.size()> before;

// Goes on as if it had not been there: the faulty instruction runs again, abort() raises again.
void onCrash(int signal, siginfo_t* info, void*)
{
    InFlight::markCulprit();
    for (std::size_t i = 0; i < kCrashes.size(); ++i)
        if (kCrashes[i] == signal)
            sigaction(signal, &before[i], nullptr);
    if (info->si_code <= 0) // sent by somebody, perhaps ourselves: nothing happens again by itself
        raise(signal);
}

bool isIgnored(int signal)
{
    struct sigaction action
    {
    };
    return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

} // namespace

SignalSet::SignalSet(std::initializer_list<int> signals)
{
    sigemptyset(&_set);
    for (const int signal : signals)
        if (signal != SIGHUP || !isIgnored(signal))
            sigaddset(&_set, signal);
    pthread_sigmask(SIG_BLOCK, &_set, nullptr);
}

void SignalSet::unblock()
{
    pthread_sigmask(SIG_UNBLOCK, &_set, nullptr);
}

int SignalSet::wait() const
{
    int signal = 0;
    sigwait(&_set, &signal);
    return signal;
}

int SignalSet::wait(std::chrono::milliseconds time) const
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    timespec left{};
    left.tv_sec = static_cast<time_t>(seconds.count());
    left.tv_nsec = static_cast<long>(std::chrono::nanoseconds(time - seconds).count());
    const int signal = sigtimedwait(&_set, nullptr, &left);
    return signal > 0 ? signal : 0;
}

bool Terminal::canBeOpened()
{
    return FileDescriptor(open("/dev/tty", O_RDONLY | O_NOCTTY | O_CLOEXEC)).get() >= 0;
}

std::string signalName(int signal)
{
    const char* const name = sigabbrev_np(signal);
    return name != nullptr ? std::string("SIG") + name : "signal " + std::to_string(signal);
}

void markCrashes()
{
    struct sigaction action
    {
    };
    action.sa_sigaction = &onCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kCrashes.size(); ++i)
        sigaction(kCrashes[i], &action, &before[i]);
}

} // namespace cimd
