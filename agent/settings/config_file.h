// Reading the configuration file.
#ifndef AGENT_SETTINGS_CONFIG_FILE_H
#define AGENT_SETTINGS_CONFIG_FILE_H

#include "agent/settings/option_table.h"

#include <optional>
#include <string>
#include <vector>

namespace cimd
{

struct FileValue
{
    const OptionRow* row;
    std::string value; ///< A file name is relative to the current directory, as one in the command line.
    unsigned line;
};

// The values in a file; nothing if there is no such file. The file is TOML (toml.io) without tables:
//     port = 5988
//     listen = "192.0.2.7"
//     no-http = true
// Names of files are relative to the directory that it is in; - and the empty name stay as they are. Throws
// StartError with everything that is wrong: "file:line: key: a number is wanted, not a string".
std::optional<std::vector<FileValue>> readConfigFile(const std::string& path);

} // namespace cimd

#endif
