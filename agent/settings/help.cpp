// What --help prints.
#include "agent/settings/help.h"

#include "agent/settings/CommandLine.h"
#include "agent/settings/option_table.h"
#include "agent/settings/paragraph.h"

#include <string_view>

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
CONFIGURATION FILE
       /etc/cimd/cimd.conf, in TOML. Each option is a key of the same name, but for --config and those that print
       something and exit: port = 5988, listen = "192.0.2.7", no-http = true. Names of files are relative to the
       directory of the file. The command line takes back what the file says by =false behind an option without
       an argument, and by an empty argument of one without default.

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
       it read certificate, key and users again, and the log level of the configuration file; when the terminal of cimd
       has gone it ends cimd, too.
       SIGUSR1 prints what was asked for since the start, per class and operation, the requests in flight and the
       connections to standard error. Send signals to the process that was started.

EXIT STATUS
       0 after a signal, 1 if a request in flight did not finish in time, 2 if cimd could not start.
)";

} // namespace

std::string helpText()
{
    std::string text(kUsage);
    const auto add = [&text](const char* name, const char* argument, const std::string& meaning)
    {
        text += std::string("       --") + name;
        if (argument != nullptr)
            text += std::string(" ") + argument;
        text += '\n' + paragraph(std::string(14, ' '), meaning);
    };
    const auto& rows = optionRows();
    const std::size_t limits = rows.size() - limitRows().size(); // where they begin
    for (std::size_t i = 0; i < limits; ++i)
        add(rows[i].name, rows[i].argument, rows[i].meaning);
    for (const ActionRow& row : actionRows())
        add(row.name, row.argument, row.meaning);
    text += kLimits;
    for (std::size_t i = limits; i < rows.size(); ++i)
        add(rows[i].name, rows[i].argument, rows[i].meaning);
    return text.append(kEnd);
}

} // namespace cimd
