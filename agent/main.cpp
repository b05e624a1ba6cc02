// cimd: reads its command line, starts, serves until it is told to stop.
#include "agent/Limits.h"
#include "agent/Options.h"
#include "agent/Platform.h"
#include "agent/http/HttpServer.h"
#include "agent/ops/FrontEnd.h"
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

constexpr int kExitUnfinished = 1;
constexpr int kExitNotStarted = 2;

std::string programDirectory()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

/** Signals are taken by waitForSignal() alone, so this comes before the first thread. */
sigset_t blockSignals()
{
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    return set;
}

void waitForSignal(const sigset_t& set)
{
    int received = 0;
    sigwait(&set, &received);
    log(LogLevel::Info, "cimd", received == SIGTERM ? "SIGTERM: stopping" : "SIGINT: stopping");
    // Whoever sends a second one does not want to wait.
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
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

int serve(const Options& options)
{
    const sigset_t signals = blockSignals();
    const Limits& limits = options.limits;
    ListenSocket socket =
        starting("--listen", [&] { return ListenSocket(options.address, options.port, limits.backlog); });
    const std::string url = socket.url();
    if (options.scenario)
        openScenario(options.providerDir, *options.scenario);
    AgentCore core(starting("--repository", [&] { return ClassRepository::load(options.repository); }),
                   starting("--registration", [&] { return loadRegistrations(options.registration); }),
                   options.providerDir);
    InFlight inFlight(limits.workers);
    FrontEnd frontEnd(core.service(), limits, {&inFlight});
    HttpServer server(frontEnd, limits, std::move(socket));
    std::printf("cimd: listening on %s\n", url.c_str());
    std::fflush(stdout);

    waitForSignal(signals);
    if (server.stop(limits.stopGrace))
        return EXIT_SUCCESS;
    log(LogLevel::Error, "cimd", "a request did not finish in time; leaving it behind");
    _exit(kExitUnfinished); // a provider that hangs cannot be joined
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
    return serve(options);
}
catch (const std::exception& error)
{
    std::fprintf(stderr, "cimd: %s\n", error.what());
    return kExitNotStarted;
}
