// Reading the command line.
#include "agent/settings/CommandLine.h"

#include "agent/settings/StartError.h"

#include <getopt.h>

namespace cimd
{

const std::vector<ActionRow>& actionRows()
{
    // clang-format off
    static const std::vector<ActionRow> rows = {
        {"config", "FILE",
         "Read this configuration file, which must be there, in place of /etc/cimd/cimd.conf, which need not. An "
         "empty name: none. What the command line says counts more than the file.",
         Action::Serve},
        {"check-config", nullptr,
         "Check the configuration file, the rest of the command line and the files that they name, and exit: "
         "with status 0 if cimd could start with them, otherwise with 2 and everything that is wrong.",
         Action::CheckConfig},
        {"show-config", nullptr,
         "Print each key with its value and where that comes from, and exit.",
         Action::ShowConfig},
        {"sample-config", nullptr,
         "Print a configuration file that explains each key and sets none, and exit.",
         Action::SampleConfig},
        {"list-providers", nullptr,
         "Ask the cimd that runs with the same --control-socket for a table of its providers and exit: class, kind, "
         "calls and failed ones since the serving process started, library, and state.",
         Action::ListProviders},
        {"show-limits", nullptr,
         "Print the limits with their defaults and what file and command line made of them, and exit.",
         Action::ShowLimits},
        {"help", nullptr, "Print this text and exit.", Action::Help},
        {"version", nullptr, "Print the version and exit.", Action::Version},
    };
    // clang-format on
    return rows;
}

CommandLine readCommandLine(int argc, char* const argv[])
{
    const auto& rows = optionRows();
    const auto& actions = actionRows();
    std::vector<option> longOptions;
    longOptions.reserve(rows.size() + actions.size() + 1);
    for (const OptionRow& row : rows)
        longOptions.push_back(
            {row.name, row.argument != nullptr ? required_argument : optional_argument, nullptr, 0});
    for (const ActionRow& row : actions)
        longOptions.push_back(
            {row.name, row.argument != nullptr ? required_argument : no_argument, nullptr, 0});
    longOptions.push_back({nullptr, 0, nullptr, 0});

    CommandLine line;
    optind = 0; // starts over, so that tests can read more than one command line
    opterr = 0;
    for (;;)
    {
        int index = -1;
        const int current = optind == 0 ? 1 : optind;
        const int found = getopt_long(argc, argv, "+:", longOptions.data(), &index);
        if (found == -1)
            break;
        if (found == ':')
            throw StartError(std::string(argv[current]) + ": an argument is missing");
        if (found == '?')
            throw StartError(std::string(argv[current]) + ": there is no such option; see cimd --help");
        const auto place = static_cast<std::size_t>(index);
        if (place < rows.size())
        {
            line.words.push_back({&rows[place], optarg != nullptr ? optarg : "true"});
            continue;
        }
        if (optarg != nullptr)
        {
            line.configFile = optarg;
            continue;
        }
        line.action = actions[place - rows.size()].action;
        if (line.action == Action::Help || line.action == Action::Version)
            return line;
    }
    if (optind < argc)
        throw StartError(std::string(argv[optind]) + ": arguments without an option are not known");
    return line;
}

} // namespace cimd
