// The one table of options: the command line, the configuration file and the help text are read from it.
#ifndef AGENT_SETTINGS_OPTION_TABLE_H
#define AGENT_SETTINGS_OPTION_TABLE_H

#include "agent/settings/Options.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

enum class OptionKind
{
    Flag, ///< "true" or "false"
    Number,
    Text,
    File ///< The name of a file or directory; empty: none, or "-".
};

// How an option is kept. `set` throws std::invalid_argument saying what may stand there; an empty text undoes
// an option that has no default. `get` gives a text that `set` takes.
struct OptionAccess
{
    OptionKind kind;
    std::function<void(Options& options, const std::string& value)> set;
    std::function<std::string(const Options& options)> get;
};

struct OptionRow
{
    const char* name;     ///< Without the dashes.
    const char* argument; ///< What stands for its value in texts; null for a flag.
    std::string meaning;
    OptionAccess access;
};

// In the order in which they are explained; the limits come last.
const std::vector<OptionRow>& optionRows();

// Null if there is none of this name.
const OptionRow* findOption(std::string_view name);

} // namespace cimd

#endif
