// The rows of the options and how each is kept.
#include "agent/settings/option_table.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace cimd
{

namespace
{

[[noreturn]] void refuse(const std::string& value, const std::string& wanted)
{
    throw std::invalid_argument('"' + value + "\" is not " + wanted);
}

template <auto Member, bool WhenSet>
OptionAccess flag()
{
    return {OptionKind::Flag,
            [](Options& options, const std::string& value)
            {
                if (value != "true" && value != "false")
                    refuse(value, "true or false");
                options.*Member = (value == "true") == WhenSet;
            },
            [](const Options& options) { return options.*Member == WhenSet ? "true" : "false"; }};
}

std::uint16_t portOf(const std::string& value)
{
    std::uint16_t port = 0;
    const char* const end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, port);
    if (error != std::errc() || stop != end)
        refuse(value, "a port number (0 to 65535)");
    return port;
}

template <auto Member>
OptionAccess portNumber()
{
    return {OptionKind::Number,
            [](Options& options, const std::string& value) { options.*Member = portOf(value); },
            [](const Options& options) { return std::to_string(options.*Member); }};
}

// Of a port that is served only when it is named.
template <auto Member>
OptionAccess optionalPort()
{
    return {OptionKind::Number,
            [](Options& options, const std::string& value)
            { options.*Member = value.empty() ? std::nullopt : std::optional(portOf(value)); },
            [](const Options& options)
            { return options.*Member ? std::to_string(*(options.*Member)) : std::string(); }};
}

void keep(std::string& member, const std::string& value)
{
    if (value.empty())
        refuse(value, "a name");
    member = value;
}

void keep(std::optional<std::string>& member, const std::string& value)
{
    member = value.empty() ? std::nullopt : std::optional(value);
}

const std::string& textOf(const std::string& member)
{
    return member;
}

std::string textOf(const std::optional<std::string>& member)
{
    return member.value_or("");
}

template <auto Member>
OptionAccess text(OptionKind kind = OptionKind::Text)
{
    return {kind,
            [](Options& options, const std::string& value) { keep(options.*Member, value); },
            [](const Options& options) { return textOf(options.*Member); }};
}

template <auto Member>
OptionAccess file()
{
    return text<Member>(OptionKind::File);
}

OptionAccess level()
{
    return {OptionKind::Text,
            [](Options& options, const std::string& value)
            {
                const std::optional<LogLevel> named = levelFromName(value);
                if (!named)
                    refuse(value, "error, warning, info or debug");
                options.logLevel = *named;
            },
            [](const Options& options) { return std::string(levelName(options.logLevel)); }};
}

OptionRow limitOption(const LimitRow& row)
{
    return {row.option,
            "NUMBER",
            row.meaning + (" Default: " + limitText(row, row.standard)) + ".",
            {OptionKind::Number,
             [&row](Options& options, const std::string& value) { setLimit(options.limits, row, value); },
             [&row](const Options& options) { return std::to_string(row.get(options.limits)); }}};
}

std::vector<OptionRow> allRows()
{
    // clang-format off
    std::vector<OptionRow> rows = {
        {"port", "PORT",
         "TCP port; 0 takes any free one. Default: 5988.",
         portNumber<&Options::port>()},
        {"listen", "ADDRESS",
         "IPv4 or IPv6 address to listen on. Default: 127.0.0.1, this machine only.",
         text<&Options::address>()},
        {"certificate", "FILE",
         "Serve HTTPS, too, with this certificate, in PEM; those that vouch for it may follow in the file.",
         file<&Options::certificate>()},
        {"private-key", "FILE",
         "The key of the certificate, in PEM and not encrypted. It must not be readable by everybody.",
         file<&Options::privateKey>()},
        {"tls-port", "PORT",
         "TCP port of HTTPS; 0 takes any free one. Default: 5989.",
         portNumber<&Options::tlsPort>()},
        {"no-http", nullptr,
         "Serve HTTPS only.",
         flag<&Options::isPlainServed, false>()},
        {"password-file", "FILE",
         "Only the users in this file, which cimd-passwd makes, may send operations. It must not be readable "
         "by everybody. cimd notices when it changes.",
         file<&Options::passwordFile>()},
        {"no-authentication", nullptr,
         "Everybody may send operations. That is the default as long as only this machine can reach cimd; "
         "elsewhere cimd starts with --password-file or with this option only.",
         flag<&Options::isOpen, true>()},
        {"metrics-port", "PORT",
         "Serve metrics, too: OpenMetrics text for Prometheus and its kin, over HTTP at /metrics on this TCP "
         "port; 0 takes any free one. Default: none are served.",
         optionalPort<&Options::metricsPort>()},
        {"metrics-listen", "ADDRESS",
         "IPv4 or IPv6 address to serve metrics on. Default: 127.0.0.1, this machine only, where nobody has to "
         "log in. Elsewhere they need what operations need, and come over HTTPS if there is a certificate.",
         text<&Options::metricsAddress>()},
        {"scenario", "FILE",
         "Start the simulated switch from this scenario file. Default: its built-in one.",
         file<&Options::scenario>()},
        {"state", "FILE",
         "Keep what clients change on the simulated switch in this file, and start from it in place of the "
         "scenario once it exists.",
         file<&Options::state>()},
        {"switch-socket", "PATH",
         "Let the simulated switch take commands of switchctl at this Unix socket, from the user of cimd "
         "alone.",
         file<&Options::switchSocket>()},
        {"control-socket", "PATH",
         "Answer cimd --list-providers at this Unix socket, to the user of cimd alone.",
         file<&Options::controlSocket>()},
        {"indication-ca", "FILE",
         "The certificates, in PEM, that vouch for HTTPS listeners of indications. Default: the system's.",
         file<&Options::indicationCa>()},
        {"indication-insecure", nullptr,
         "Send indications to HTTPS listeners whatever their certificates are.",
         flag<&Options::isIndicationInsecure, true>()},
        {"log-level", "LEVEL",
         "error: cimd failed its clients. warning: also mistakes of clients and providers, and operations that "
         "failed. info: also a line for each operation. debug: everything. Default: warning.",
         level()},
        {"repository", "FILE",
         "Class repository. Default: ../share/cimd/repository.xml beside the program.",
         file<&Options::repository>()},
        {"registration", "FILE",
         "Provider registration. Default: ../share/cimd/providers.reg beside the program.",
         file<&Options::registration>()},
        {"provider-dir", "DIRECTORY",
         "Where provider libraries are. Default: ../lib/cimd beside the program.",
         file<&Options::providerDir>()},
        {"spool-directory", "DIRECTORY",
         "Where large results wait for pull operations, in files without a name. Default: $TMPDIR or /tmp.",
         file<&Options::spoolDirectory>()},
        {"trace-xml", "FILE",
         "Append the bodies of requests and answers to FILE, which only its owner can read; - is standard "
         "output. Headers, and credentials with them, are left out.",
         file<&Options::traceXml>()},
        {"no-supervisor", nullptr,
         "Serve in the one process that was started, for debugging: a crash ends it.",
         flag<&Options::supervised, false>()},
    };
    // clang-format on
    for (const LimitRow& row : limitRows())
        rows.push_back(limitOption(row));
    return rows;
}

} // namespace

const std::vector<OptionRow>& optionRows()
{
    static const std::vector<OptionRow> rows = allRows();
    return rows;
}

const OptionRow* findOption(std::string_view name)
{
    const auto& rows = optionRows();
    const auto place =
        std::find_if(rows.begin(), rows.end(), [&](const OptionRow& row) { return row.name == name; });
    return place == rows.end() ? nullptr : &*place;
}

} // namespace cimd
