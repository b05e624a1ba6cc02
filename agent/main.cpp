// cimd: reads its command line and does what that says.
#include "agent/control/ControlServer.h"
#include "agent/limits/Limits.h"
#include "agent/log/log.h"
#include "agent/named_files.h"
#include "agent/run/exit_status.h"
#include "agent/serving.h"
#include "agent/settings/Settings.h"
#include "agent/settings/StartError.h"
#include "agent/settings/help.h"
#include "agent/settings/show.h"
#include "agent/start.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

namespace
{

using namespace cimd;

std::string programDirectory()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
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
