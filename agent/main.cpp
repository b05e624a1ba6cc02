// cimd: reads its command line, starts, serves until it is told to stop.
#include "agent/control/ControlServer.h"
#include "agent/http/HttpServer.h"
#include "agent/http/SpoolArea.h"
#include "agent/limits/Limits.h"
#include "agent/listening.h"
#include "agent/metrics/MetricsServer.h"
#include "agent/named_files.h"
#include "agent/ops/FrontEnd.h"
#include "agent/ops/LogInGate.h"
#include "agent/platform.h"
#include "agent/providers/provider_table.h"
#include "agent/run/Supervisor.h"
#include "agent/run/descriptors.h"
#include "agent/run/exit_status.h"
#include "agent/run/readiness.h"
#include "agent/run/signals.h"
#include "agent/service/AgentCore.h"
#include "agent/settings/Settings.h"
#include "agent/settings/StartError.h"
#include "agent/settings/help.h"
#include "agent/settings/show.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <malloc.h>
#include <optional>
#include <system_error>
#include <unistd.h>

namespace
{

using namespace cimd;

std::string programDirectory()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

// Everything that outlives a serving process, and how the one that reads this is told to behave.
struct Setting
{
    const Settings& settings;
    Sockets& sockets;
    const std::string urls; // of the sockets
    const TlsIdentity& tls;
    InFlight& inFlight;
    const Terminal& terminal;
    const ControlSocket* control; // null: none is wanted
    XmlTrace* trace;              // null: none is wanted
    Supervisor* supervisor;       // null: nobody watches
};

std::vector<CimName> classNames(const ClassRepository& repository)
{
    std::vector<CimName> names;
    for (const auto& info : repository.classes())
        names.push_back(info->name());
    return names;
}

// What --list-providers asks for at the control socket.
constexpr const char* kListProviders = "list-providers";

// How often memory that answers have left behind goes back to the system.
constexpr std::chrono::seconds kTidyPeriod{10};

// The next signal. Until it comes, the memory of past answers is given back every now and then.
int nextSignal(const SignalSet& signals)
{
    for (;;)
    {
        if (const int signal = signals.wait(kTidyPeriod))
            return signal;
        malloc_trim(0);
    }
}

struct Servers
{
    HttpServer& operations;
    std::optional<MetricsServer>& metrics;
};

// The certificate may have been renewed. Faulty files change nothing.
void renewTls(const Settings& settings, Servers servers)
try
{
    if (!settings.options().certificate)
        return;
    const TlsIdentity tls = readTlsIdentity(settings);
    servers.operations.setTls(tls);
    if (servers.metrics)
        servers.metrics->setTls(tls);
    log(LogLevel::Info, "cimd", "SIGHUP: certificate and key were read again");
}
catch (const std::exception& error)
{
    log(LogLevel::Error, "cimd", std::string(error.what()) + "; certificate and key stay as they were");
}

// The configuration file may say another log level. A faulty file changes nothing.
void renewLogLevel(const Settings& settings, ProviderManager& providers)
try
{
    const Settings now = settings.readAgain();
    const LogLevel level = now.options().logLevel;
    if (level != logLevel())
        logAlways("notice", "cimd", "SIGHUP: the log level is " + std::string(levelName(level)));
    setLogLevel(level);
    providers.followLogLevel();
    for (const OptionRow* row : settings.differences(now))
        if (row != findOption("log-level"))
            log(LogLevel::Warning,
                "cimd",
                now.place(row->name) + ": another value than at the start; it counts from the next start on");
}
catch (const StartError& error)
{
    for (const std::string& fault : error.faults())
        log(LogLevel::Error, "cimd", fault + "; the log level stays as it was");
}

void showWork(const Setting& setting, const Counters& counters, HttpServer& server)
{
    for (const std::string& line : counters.table())
        logAlways("notice", "counters", line);
    for (const std::string& line : server.connectionTable())
        logAlways("notice", "counters", line);
    const auto requests = setting.inFlight.list();
    logAlways("notice", "counters", "requests in flight: " + std::to_string(requests.size()));
    for (const InFlight::Request& request : requests)
        logAlways("notice", "counters", request.text());
}

// After the start and after a reload. True for the first time, among all serving processes.
bool sayReady(const Setting& setting)
{
    if (setting.supervisor != nullptr)
        return setting.supervisor->becomeReady();
    tellReady("listening on " + setting.urls);
    return true;
}

// Waits for a signal to stop; does what others ask for.
void waitForStop(SignalSet& signals,
                 const Setting& setting,
                 const Counters& counters,
                 Servers servers,
                 ProviderManager& providers)
{
    int signal = nextSignal(signals);
    for (; signal == SIGUSR1 || (signal == SIGHUP && !setting.terminal.hasGone());
         signal = nextSignal(signals))
    {
        if (signal == SIGUSR1)
        {
            showWork(setting, counters, servers.operations);
            continue;
        }
        if (setting.supervisor == nullptr)
            tellReloading();
        renewTls(setting.settings, servers);
        renewLogLevel(setting.settings, providers);
        sayReady(setting);
    }
    log(LogLevel::Info, "cimd", signalName(signal) + ": stopping");
    // Whoever sends a second one does not want to wait. A supervisor sees to that itself, and all processes
    // of a service may have been sent the first.
    if (setting.supervisor == nullptr)
    {
        tellStopping();
        std::signal(SIGUSR1, SIG_IGN); // its default is to kill
        signals.unblock();
    }
}

// Ends the process in spite of providers that hang and cannot be joined.
[[noreturn]] void leave(const Setting& setting, int status)
{
    for (const InFlight::Request& request : setting.inFlight.list())
        log(LogLevel::Error, "cimd", request.text());
    _exit(status);
}

[[noreturn]] void endHung(const Setting& setting)
{
    log(LogLevel::Error,
        "cimd",
        "more than " + std::to_string(setting.settings.options().limits.hungWorkers) +
            " operations hang in their providers; ending the process");
    leave(setting, kExitHung);
}

constexpr std::chrono::milliseconds kLeastTimeToStop{1000};

// What is left until the deadline; a little more when that is near, for a supervisor does not kill at once.
std::chrono::milliseconds timeToStop(std::chrono::steady_clock::time_point deadline)
{
    const auto left = deadline - std::chrono::steady_clock::now();
    return std::max(kLeastTimeToStop, std::chrono::duration_cast<std::chrono::milliseconds>(left));
}

// The libraries' indications; they end here at the latest, should the start fail.
class Indications
{
  public:
    explicit Indications(ProviderManager& providers) : _providers(providers)
    {
        _providers.startIndications();
    }
    ~Indications() { _providers.stopIndications(kLeastTimeToStop); }
    Indications(const Indications&) = delete;
    Indications& operator=(const Indications&) = delete;

    // False when they do not end in time. Once is enough.
    bool stop(std::chrono::milliseconds atMost) { return _providers.stopIndications(atMost); }

  private:
    ProviderManager& _providers;
};

// The simulated switch, if the options ask something of it.
void startSwitch(const Settings& settings)
{
    const Options& options = settings.options();
    if (options.scenario)
        starting(settings, "scenario", [&] { openScenario(options.providerDir, *options.scenario); });
    if (options.state)
        starting(settings, "state", [&] { keepState(options.providerDir, *options.state); });
    if (options.switchSocket)
        starting(settings,
                 "switch-socket",
                 [&] { takeSwitchCommands(options.providerDir, *options.switchSocket); });
}

int serve(const Setting& setting)
{
    // Before the first thread, so that signals are taken here alone.
    SignalSet signals({SIGTERM, SIGINT, SIGHUP, SIGUSR1});
    const Settings& settings = setting.settings;
    const Options& options = settings.options();
    const Limits& limits = options.limits;
    startSwitch(settings);
    AgentCore core(
        starting(settings, "repository", [&] { return ClassRepository::load(options.repository); }),
        starting(settings, "registration", [&] { return loadRegistrations(options.registration); }),
        options.providerDir);
    Counters counters(classNames(core.repository()));
    const Watch watch{&setting.inFlight, &counters, setting.trace};
    FrontEnd frontEnd(core.service(), limits, watch, options.spoolDirectory);
    std::optional<Authenticator> authenticator;
    std::optional<LogInGate> gate;
    if (options.passwordFile)
    {
        const bool isReplacement = setting.supervisor != nullptr && setting.supervisor->hasBeenReady();
        const FirstRead firstRead = isReplacement ? FirstRead::MayFail : FirstRead::MustSucceed;
        starting(settings,
                 "password-file",
                 [&] { return &authenticator.emplace(*options.passwordFile, limits, firstRead); });
        gate.emplace(frontEnd, *authenticator, limits);
    }
    // Before the first client, whose changes may be worth an indication already.
    Indications indications(core.providers());
    HttpHandler& handler = gate ? static_cast<HttpHandler&>(*gate) : frontEnd;
    HttpServer server(handler,
                      limits,
                      std::move(setting.sockets.operations),
                      {setting.tls, options.spoolDirectory, [&setting] { endHung(setting); }});
    std::optional<MetricsServer> metrics;
    if (setting.sockets.metrics)
        metrics.emplace(AgentParts{core.service(),
                                   core.providers(),
                                   counters,
                                   setting.inFlight,
                                   frontEnd.enumerations(),
                                   server,
                                   limits,
                                   setting.supervisor != nullptr ? setting.supervisor->restarts() : 0},
                        std::move(*setting.sockets.metrics),
                        ServerOptions{setting.tls, options.spoolDirectory, [&setting] { endHung(setting); }},
                        authenticator ? &*authenticator : nullptr);
    std::optional<ControlServer> control;
    if (setting.control != nullptr)
        control.emplace(*setting.control,
                        std::vector<ControlCommand>{
                            {kListProviders, [&core] { return providerTable(core.providers()); }}});
    if (sayReady(setting))
    {
        std::printf("cimd: listening on %s\n", setting.urls.c_str());
        std::fflush(stdout);
    }

    waitForStop(signals, setting, counters, {server, metrics}, core.providers());
    const auto deadline = std::chrono::steady_clock::now() + limits.stopGrace;
    bool isDone = server.stop(limits.stopGrace);
    if (metrics)
        isDone = metrics->stop(timeToStop(deadline)) && isDone;
    if (!isDone)
        log(LogLevel::Error, "cimd", "a request did not finish in time; leaving it behind");
    // After the requests, for what these do may be worth an indication.
    if (!indications.stop(timeToStop(deadline)))
    {
        log(LogLevel::Error, "cimd", "indications did not stop in time; leaving them behind");
        isDone = false;
    }
    for (const std::string& line : counters.table())
        log(LogLevel::Info, "counters", line);
    if (isDone)
        return EXIT_SUCCESS;
    leave(setting, kExitUnfinished);
}

// The modules that send indications read from the environment whom they trust.
void handOnTrust(const Settings& settings)
{
    const Options& options = settings.options();
    if (options.indicationCa)
    {
        starting(settings, "indication-ca", [&] { return readCertificate(*options.indicationCa); });
        setenv("VRAX_INDICATION_CA", options.indicationCa->c_str(), 1);
    }
    if (options.isIndicationInsecure)
        setenv("VRAX_INDICATION_INSECURE", "1", 1);
}

// The server, that of the metrics, providers and the C library have some descriptors of their own.
constexpr std::size_t kOtherDescriptors = 64;

// A connection is a socket and, with a slow client, a file; so is an enumeration that waits to be pulled.
void makeRoomForFiles(const Limits& limits)
{
    const std::size_t needed = 2 * std::size_t{limits.connections} + limits.enumerations + kOtherDescriptors;
    const std::size_t allowed = allowDescriptors(needed);
    if (allowed < needed)
        log(LogLevel::Warning,
            "cimd",
            "--max-connections " + std::to_string(limits.connections) + " and --max-enumerations " +
                std::to_string(limits.enumerations) + " may need " + std::to_string(needed) +
                " open files; the system allows " + std::to_string(allowed) + " (RLIMIT_NOFILE)");
}

constexpr std::size_t kScrapes = 2; // one of them hangs

// Each worker would otherwise have a heap of its own, which keeps what its largest answer took.
constexpr int kHeaps = 2;

int start(const Settings& settings)
{
    const Options& options = settings.options();
    mallopt(M_ARENA_MAX, kHeaps);
    std::signal(SIGPIPE, SIG_IGN);
    const Limits& limits = options.limits;
    makeRoomForFiles(limits);
    Sockets sockets = openSockets(settings);
    handOnTrust(settings);
    starting(settings, "spool-directory", [&] { return SpoolArea::fileIn(options.spoolDirectory); });
    TlsIdentity tls = readTlsIdentity(settings); // not after a crash: then files may be half renewed
    std::optional<XmlTrace> trace;
    if (options.traceXml)
        starting(settings, "trace-xml", [&] { return &trace.emplace(*options.traceXml); });
    std::optional<ControlSocket> control;
    if (options.controlSocket)
        starting(settings, "control-socket", [&] { return &control.emplace(*options.controlSocket); });
    // All that can run at once: one more that hangs than may is what ends the process.
    InFlight inFlight(std::size_t{limits.workers} + limits.hungWorkers + 1 + kScrapes);
    const Terminal terminal;
    Setting setting{settings,
                    sockets,
                    sockets.urls(),
                    tls,
                    inFlight,
                    terminal,
                    control ? &*control : nullptr,
                    trace ? &*trace : nullptr,
                    nullptr};
    if (!options.supervised)
        return serve(setting);
    // For serving processes to come. The one that is there says what is wrong.
    const auto readAgain = [&]
    {
        tellReloading();
        try
        {
            tls = readTlsIdentity(settings);
        }
        catch (const StartError&)
        {
        }
        try
        {
            setLogLevel(settings.readAgain().options().logLevel);
        }
        catch (const StartError&)
        {
        }
    };
    const auto stop = [&]
    {
        tellStopping();
        sockets = {};
    };
    const auto ready = [&] { tellReady("listening on " + setting.urls); };
    const Supervisor::Hooks hooks{stop, readAgain, ready};
    Supervisor supervisor(limits, inFlight, hooks);
    setting.supervisor = &supervisor;
    if (const std::optional<int> status = supervisor.run())
        return *status;
    return serve(setting);
}

// What a running cimd answers.
std::string ask(const Settings& settings, const std::string& command)
{
    const auto& path = settings.options().controlSocket;
    if (!path)
        throw StartError("--" + command +
                         ": --control-socket is needed, or the key in the configuration file");
    return starting(settings, "control-socket", [&] { return askControl(*path, command); });
}

} // namespace

int main(int argc, char* argv[])
try
{
    const CommandLine line = readCommandLine(argc, argv);
    if (line.action == Action::Help)
        return std::fputs(helpText().c_str(), stdout) < 0;
    if (line.action == Action::Version)
        return std::puts("cimd " CIMD_VERSION) < 0;
    if (line.action == Action::SampleConfig)
        return std::fputs(sampleConfig().c_str(), stdout) < 0;
    const Settings settings(line, {programDirectory()});
    if (line.action == Action::ShowLimits)
        return std::fputs(limitsTable(settings.options().limits).c_str(), stdout) < 0;
    if (line.action == Action::ShowConfig)
        return std::fputs(configTable(settings).c_str(), stdout) < 0;
    if (line.action == Action::ListProviders)
        return std::fputs(ask(settings, kListProviders).c_str(), stdout) < 0;
    if (line.action == Action::CheckConfig)
    {
        checkNamedFiles(settings);
        const std::string& file = settings.configFile();
        const std::string& what = file.empty() ? "no configuration file; the command line" : file;
        return std::printf("cimd: %s is in order\n", what.c_str()) < 0;
    }
    setLogLevel(settings.options().logLevel);
    return start(settings);
}
catch (const StartError& error)
{
    for (const std::string& fault : error.faults())
        std::fprintf(stderr, "cimd: %s\n", fault.c_str());
    return kExitNotStarted;
}
catch (const std::exception& error)
{
    std::fprintf(stderr, "cimd: %s\n", error.what());
    return kExitNotStarted;
}
