// The signals that the program is told things by, and those that it dies of.
#ifndef AGENT_RUN_SIGNALS_H
#define AGENT_RUN_SIGNALS_H

#include <chrono>
#include <csignal>
#include <initializer_list>
#include <string>

namespace cimd
{

// A set of signals that are taken by wait() instead of interrupting whoever runs.
class SignalSet
{
  public:
    // Blocks the signals, for threads and processes started from now on too. A SIGHUP that is ignored, as
    // nohup does it, is left alone.
    explicit SignalSet(std::initializer_list<int> signals);

    void unblock();

    // The next signal to arrive.
    int wait() const;
    // The same; 0 if none arrives in time.
    int wait(std::chrono::milliseconds time) const;

  private:
    sigset_t _set;
};

// The terminal that the program was started at, if there is one. When it goes the system sends SIGHUP, and
// nobody can stop the program by hand any more; other SIGHUPs are an operator's.
class Terminal
{
  public:
    Terminal() : _isThere(canBeOpened()) {}

    bool hasGone() const { return _isThere && !canBeOpened(); }

  private:
    static bool canBeOpened();

    const bool _isThere;
};

// "SIGSEGV"
std::string signalName(int signal);

// From now on a crash (SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT) marks the request that the crashing thread
// answers as the culprit before it takes its course.
void markCrashes();

} // namespace cimd

#endif
