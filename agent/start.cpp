// Opens what outlives a serving process, and watches over that.
#include "agent/start.h"

#include "agent/auth/TlsIdentity.h"
#include "agent/http/SpoolArea.h"
#include "agent/limits/Limits.h"
#include "agent/log/log.h"
#include "agent/named_files.h"
#include "agent/run/descriptors.h"
#include "agent/run/readiness.h"
#include "agent/serving.h"
#include "agent/settings/StartError.h"

#include <csignal>
#include <cstdlib>
#include <malloc.h>
#include <optional>
#include <string>

namespace cimd
{

namespace
{

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

constexpr std::size_t kScrapes = 12; // one class each, of which all may hang

// Each worker would otherwise have a heap of its own, which keeps what its largest answer took.
constexpr int kHeaps = 2;

} // namespace

int start(const Settings& settings)
{
    const Options& options = settings.options();
    mallopt(M_ARENA_MAX, kHeaps);
    std::signal(SIGPIPE, SIG_IGN);
    const Limits& limits = options.limits;
    makeRoomForFiles(limits);
    Sockets sockets = openSockets(settings);
    handOnTrust(settings);
    starting(settings, "spool-directory", [&] { SpoolArea::tryDirectory(options.spoolDirectory); });
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

} // namespace cimd
