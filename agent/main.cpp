// cimd: reads its command line, starts, serves until it is told to stop.
#include "agent/Limits.h"
#include "agent/Options.h"
#include "agent/Platform.h"
#include "agent/http/HttpServer.h"
#include "agent/ops/FrontEnd.h"
#include "agent/run/ExitStatus.h"
#include "agent/run/Signals.h"
#include "agent/run/Supervisor.h"
#include "agent/service/AgentCore.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <optional>
#include <unistd.h>

namespace
{

using namespace cimd;

std::string programDirectory()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

/** Runs a step of the start and puts the option that is to blame before its complaint. */
template <class Step>
auto starting(const char* option, Step step)
{
    try
    {
        return step();
    }
    catch (const StartError&)
    {
        throw;
    }
    catch (const std::exception& error)
    {
        throw StartError(std::string(option) + ": " + error.what());
    }
}

/** Waits for a signal to stop. */
void waitForStop(SignalSet& signals, bool isSupervised)
{
    const int signal = signals.wait();
    log(LogLevel::Info, "cimd", signalName(signal) + ": stopping");
    // Whoever sends a second one does not want to wait. A supervisor sees to that itself, and all processes
    // of a service may have been sent the first.
    if (!isSupervised)
        signals.unblock();
}

int serve(const Options& options, ListenSocket& socket, InFlight& inFlight, Supervisor* supervisor)
{
    // Before the first thread, so that signals are taken here alone.
    SignalSet signals({SIGTERM, SIGINT, SIGHUP});
    const Limits& limits = options.limits;
    const std::string url = socket.url();
    if (options.scenario)
        openScenario(options.providerDir, *options.scenario);
    AgentCore core(starting("--repository", [&] { return ClassRepository::load(options.repository); }),
                   starting("--registration", [&] { return loadRegistrations(options.registration); }),
                   options.providerDir);
    FrontEnd frontEnd(core.service(), limits, {&inFlight}, options.spoolDirectory);
    HttpServer server(frontEnd, limits, std::move(socket));
    if (supervisor == nullptr || supervisor->isFirstReady())
    {
        std::printf("cimd: listening on %s\n", url.c_str());
        std::fflush(stdout);
    }

    waitForStop(signals, supervisor != nullptr);
    if (server.stop(limits.stopGrace))
        return EXIT_SUCCESS;
    log(LogLevel::Error, "cimd", "a request did not finish in time; leaving it behind");
    _exit(kExitUnfinished); // a provider that hangs cannot be joined
}

int start(const Options& options)
{
    std::signal(SIGPIPE, SIG_IGN);
    const Limits& limits = options.limits;
    ListenSocket socket =
        starting("--listen", [&] { return ListenSocket(options.address, options.port, limits.backlog); });
    InFlight inFlight(limits.workers);
    if (!options.supervised)
        return serve(options, socket, inFlight, nullptr);
    Supervisor supervisor(limits, inFlight);
    if (const std::optional<int> status = supervisor.run([&] { FileDescriptor(socket.release()); }))
        return *status;
    return serve(options, socket, inFlight, &supervisor);
}

} // namespace

int main(int argc, char* argv[])
try
{
    Options options;
    switch (readCommandLine(argc, argv, programDirectory(), options))
    {
    case CommandLine::Help:
        std::fputs(helpText().c_str(), stdout);
        return EXIT_SUCCESS;
    case CommandLine::Version:
        std::puts("cimd " CIMD_VERSION);
        return EXIT_SUCCESS;
    case CommandLine::ShowLimits:
        std::fputs(limitsTable(options.limits).c_str(), stdout);
        return EXIT_SUCCESS;
    case CommandLine::Run:
        break;
    }
    setLogLevel(options.logLevel);
    return start(options);
}
catch (const std::exception& error)
{
    std::fprintf(stderr, "cimd: %s\n", error.what());
    return kExitNotStarted;
}
