// What the command line of cimd says.
#ifndef AGENT_SETTINGS_COMMANDLINE_H
#define AGENT_SETTINGS_COMMANDLINE_H

#include "agent/settings/option_table.h"

#include <optional>
#include <string>
#include <vector>

namespace cimd
{

// What cimd is started for.
enum class Action
{
    Serve,
    Help,
    Version,
    ShowLimits,
    ShowConfig,
    CheckConfig,
    SampleConfig,
    ListProviders
};

// The options that say so, and --config; none of them is a key of the configuration file.
struct ActionRow
{
    const char* name;
    const char* argument; ///< Null: none.
    const char* meaning;
    Action action;
};

const std::vector<ActionRow>& actionRows();

struct CommandLine
{
    struct Word
    {
        const OptionRow* row;
        std::string value;
    };

    Action action = Action::Serve;
    std::vector<Word> words;               ///< In the order given.
    std::optional<std::string> configFile; ///< Empty: none is to be read.
};

// Throws StartError naming an option that there is not, or that lacks its argument. What follows --help or
// --version is not read.
CommandLine readCommandLine(int argc, char* const argv[]);

} // namespace cimd

#endif
