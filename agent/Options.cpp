// Reading the command line; the table of options is also the source of the help text.
#include "agent/Options.h"

#include <charconv>
#include <cstdlib>
#include <getopt.h>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

namespace cimd
{

namespace
{

constexpr std::string_view kUsage = R"(NAME
       cimd - CIM-XML server for the management providers of a Fibre Channel switch

SYNOPSIS
       cimd [OPTION [ARGUMENT]]...

DESCRIPTION
       Answers CIM operations over HTTP at /cimom. Classes come from the repository, providers are loaded through
       CMPI as the registration file says. When cimd is ready it prints one line with its address to standard
       output; log lines go to standard error.

OPTIONS
)";

constexpr std::string_view kLimits = R"(
LIMITS
       Bounds on what clients and providers can make cimd hold or do; cimd --show-limits prints them as a table.

)";

constexpr std::string_view kEnd = R"(
PROCESSES
       Providers run inside the server, so a provider that crashes takes it along. Therefore cimd is two processes:
       one serves; the other, the one that was started, keeps the listening sockets and starts the serving process
       again when it crashes: after a tenth of a second, later when it happens again and again (--max-restart-seconds).
       It logs how it ended and which operations it was answering. It gives up only if cimd could never start.

SIGNALS
       SIGTERM and SIGINT end cimd after the requests in flight are answered; a second one ends it at once. SIGHUP has
       it read certificate and key again; when the terminal of cimd has gone it ends cimd, too.
       SIGUSR1 prints what was asked for since the start, per class and operation, the requests in flight and the
       connections to standard error. Send signals to the process that was started.

EXIT STATUS
       0 after a signal, 1 if a request in flight did not finish in time, 2 if cimd could not start.
)";

struct Entry
{
    const char* name;
    const char* argument; // null: none
    const char* meaning;
    CommandLine (*apply)(Options& options, const std::string& value);
};

[[noreturn]] void fail(const std::string& option, const std::string& what)
{
    throw StartError("--" + option + ": " + what);
}

std::uint16_t portOf(const char* option, const std::string& value)
{
    std::uint16_t port = 0;
    const char* const end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, port);
    if (error != std::errc() || stop != end)
        fail(option, '"' + value + "\" is not a port number (0 to 65535)");
    return port;
}

CommandLine applyPort(Options& options, const std::string& value)
{
    options.port = portOf("port", value);
    return CommandLine::Run;
}

CommandLine applyTlsPort(Options& options, const std::string& value)
{
    options.tlsPort = portOf("tls-port", value);
    return CommandLine::Run;
}

CommandLine applyLogLevel(Options& options, const std::string& value)
{
    const std::optional<LogLevel> level = levelFromName(value);
    if (!level)
        fail("log-level", '"' + value + "\" is not error, warning, info or debug");
    options.logLevel = *level;
    return CommandLine::Run;
}

void applyLimit(Options& options, const LimitRow& row, const std::string& value)
try
{
    setLimit(options.limits, row, value);
}
catch (const std::invalid_argument& error)
{
    fail(row.option, error.what());
}

template <auto Member>
CommandLine applyText(Options& options, const std::string& value)
{
    options.*Member = value;
    return CommandLine::Run;
}

template <auto Member, bool Value>
CommandLine applyFlag(Options& options, const std::string&)
{
    options.*Member = Value;
    return CommandLine::Run;
}

template <CommandLine What>
CommandLine only(Options&, const std::string&)
{
    return What;
}

constexpr Entry kEntries[] = {
    {"port", "PORT", "TCP port; 0 takes any free one. Default: 5988.", applyPort},
    {"listen",
     "ADDRESS",
     "IPv4 or IPv6 address to listen on. Default: 127.0.0.1, this machine only.",
     applyText<&Options::address>},
    {"certificate",
     "FILE",
     "Serve HTTPS, too, with this certificate, in PEM; those that vouch for it may follow in the file.",
     applyText<&Options::certificate>},
    {"private-key",
     "FILE",
     "The key of the certificate, in PEM and not encrypted. It must not be readable by everybody.",
     applyText<&Options::privateKey>},
    {"tls-port", "PORT", "TCP port of HTTPS; 0 takes any free one. Default: 5989.", applyTlsPort},
    {"no-http", nullptr, "Serve HTTPS only.", applyFlag<&Options::isPlainServed, false>},
    {"password-file",
     "FILE",
     "Only the users in this file, which cimd-passwd makes, may send operations. It must not be readable by "
     "everybody. cimd notices when it changes.",
     applyText<&Options::passwordFile>},
    {"no-authentication",
     nullptr,
     "Everybody may send operations. That is the default as long as only this machine can reach cimd; "
     "elsewhere "
     "cimd starts with --password-file or with this option only.",
     applyFlag<&Options::isOpen, true>},
    {"scenario",
     "FILE",
     "Start the simulated switch from this scenario file. Default: its built-in one.",
     applyText<&Options::scenario>},
    {"state",
     "FILE",
     "Keep what clients change on the simulated switch in this file, and start from it in place of the "
     "scenario once it exists.",
     applyText<&Options::state>},
    {"switch-socket",
     "PATH",
     "Let the simulated switch take commands of switchctl at this Unix socket, from the user of cimd alone.",
     applyText<&Options::switchSocket>},
    {"indication-ca",
     "FILE",
     "The certificates, in PEM, that vouch for HTTPS listeners of indications. Default: the system's.",
     applyText<&Options::indicationCa>},
    {"indication-insecure",
     nullptr,
     "Send indications to HTTPS listeners whatever their certificates are.",
     applyFlag<&Options::isIndicationInsecure, true>},
    {"log-level",
     "LEVEL",
     "error: cimd failed its clients. warning: also mistakes of clients and providers, and operations that "
     "failed. "
     "info: also a line for each operation. debug: everything. Default: warning.",
     applyLogLevel},
    {"repository",
     "FILE",
     "Class repository. Default: ../share/cimd/repository.xml beside the program.",
     applyText<&Options::repository>},
    {"registration",
     "FILE",
     "Provider registration. Default: ../share/cimd/providers.reg beside the program.",
     applyText<&Options::registration>},
    {"provider-dir",
     "DIRECTORY",
     "Where provider libraries are. Default: ../lib/cimd beside the program.",
     applyText<&Options::providerDir>},
    {"spool-directory",
     "DIRECTORY",
     "Where large results wait for pull operations, in files without a name. Default: $TMPDIR or /tmp.",
     applyText<&Options::spoolDirectory>},
    {"trace-xml",
     "FILE",
     "Append the bodies of requests and answers to FILE, which only its owner can read; - is standard "
     "output. "
     "Headers, and credentials with them, are left out.",
     applyText<&Options::traceXml>},
    {"no-supervisor",
     nullptr,
     "Serve in the one process that was started, for debugging: a crash ends it.",
     applyFlag<&Options::supervised, false>},
    {"help", nullptr, "Print this text and exit.", only<CommandLine::Help>},
    {"version", nullptr, "Print the version and exit.", only<CommandLine::Version>},
    {"show-limits",
     nullptr,
     "Print the limits with their defaults and what the command line made of them, and exit.",
     only<CommandLine::ShowLimits>},
};

// What no option can say alone.
void checkTogether(const Options& options)
{
    if (options.passwordFile && options.isOpen)
        fail("no-authentication", "--password-file says the opposite");
    if (options.certificate && !options.privateKey)
        fail("certificate", "--private-key is needed, too");
    if (options.privateKey && !options.certificate)
        fail("private-key", "--certificate is needed, too");
    if (options.tlsPort && !options.certificate)
        fail("tls-port", "--certificate and --private-key are needed, too");
    if (options.indicationCa && options.isIndicationInsecure)
        fail("indication-insecure", "--indication-ca says the opposite");
    if (!options.isPlainServed && !options.certificate)
        fail("no-http", "--certificate and --private-key are needed, or nothing would be served");
}

// A paragraph below the name of an option.
std::string indented(const std::string& words)
{
    constexpr std::size_t kIndent = 14;
    constexpr std::size_t kWidth = 110;
    std::string text;
    std::string line;
    std::istringstream rest(words);
    for (std::string word; rest >> word;)
    {
        if (kIndent + line.size() + 1 + word.size() > kWidth)
            text += std::string(kIndent, ' ') + std::exchange(line, "") + '\n';
        line += (line.empty() ? "" : " ") + word;
    }
    return text + std::string(kIndent, ' ') + line + '\n';
}

} // namespace

CommandLine readCommandLine(int argc, char* const argv[], const std::string& programDir, Options& options)
{
    options.repository = programDir + "/../share/cimd/repository.xml";
    options.registration = programDir + "/../share/cimd/providers.reg";
    options.providerDir = programDir + "/../lib/cimd";
    const char* const temporary = std::getenv("TMPDIR");
    options.spoolDirectory = temporary != nullptr && *temporary != '\0' ? temporary : "/tmp";

    std::vector<option> longOptions;
    for (const Entry& entry : kEntries)
        longOptions.push_back(
            {entry.name, entry.argument != nullptr ? required_argument : no_argument, nullptr, 0});
    for (const LimitRow& row : limitRows())
        longOptions.push_back({row.option, required_argument, nullptr, 0});
    longOptions.push_back({nullptr, 0, nullptr, 0});

    CommandLine result = CommandLine::Run;
    optind = 0; // starts over, so that tests can read more than one command line
    opterr = 0;
    for (;;)
    {
        int index = -1;
        const int current = optind == 0 ? 1 : optind;
        const int found = getopt_long(argc, argv, ":", longOptions.data(), &index);
        if (found == -1)
            break;
        if (found == ':')
            throw StartError(std::string(argv[current]) + ": an argument is missing");
        if (found == '?')
            throw StartError(std::string(argv[current]) + ": there is no such option; see cimd --help");
        const std::string value = optarg != nullptr ? optarg : "";
        const auto place = static_cast<std::size_t>(index);
        if (place >= std::size(kEntries))
        {
            applyLimit(options, limitRows()[place - std::size(kEntries)], value);
            continue;
        }
        const CommandLine what = kEntries[place].apply(options, value);
        if (what == CommandLine::ShowLimits)
            result = what; // with what the rest of the line makes of them
        else if (what != CommandLine::Run)
            return what;
    }
    checkTogether(options);
    if (optind < argc)
        throw StartError(std::string(argv[optind]) + ": arguments without an option are not known");
    return result;
}

std::string helpText()
{
    std::string text(kUsage);
    const auto add = [&text](const char* name, const char* argument, const std::string& meaning)
    {
        text += std::string("       --") + name;
        if (argument != nullptr)
            text += std::string(" ") + argument;
        text += '\n' + indented(meaning);
    };
    for (const Entry& entry : kEntries)
        add(entry.name, entry.argument, entry.meaning);
    text += kLimits;
    for (const LimitRow& row : limitRows())
        add(row.option, "NUMBER", row.meaning + (" Default: " + limitText(row, row.standard)) + ".");
    return text.append(kEnd);
}

} // namespace cimd
