// Reading the command line.
#include "agent/settings/CommandLine.h"

#include "agent/settings/StartError.h"

#include <getopt.h>

namespace cimd
{

const std::vector<ActionRow>& actionRows()
{
    static const std::vector<ActionRow> rows = {
        {"help", "Print this text and exit.", Action::Help},
        {"version", "Print the version and exit.", Action::Version},
        {"show-limits",
         "Print the limits with their defaults and what the command line made of them, and exit.",
         Action::ShowLimits},
    };
    return rows;
}

CommandLine readCommandLine(int argc, char* const argv[])
{
    const auto& rows = optionRows();
    const auto& actions = actionRows();
    std::vector<option> longOptions;
    for (const OptionRow& row : rows)
        longOptions.push_back(
            {row.name, row.argument != nullptr ? required_argument : optional_argument, nullptr, 0});
    for (const ActionRow& row : actions)
        longOptions.push_back({row.name, no_argument, nullptr, 0});
    longOptions.push_back({nullptr, 0, nullptr, 0});

    CommandLine line;
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
        const auto place = static_cast<std::size_t>(index);
        if (place < rows.size())
        {
            line.words.push_back({&rows[place], optarg != nullptr ? optarg : "true"});
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
