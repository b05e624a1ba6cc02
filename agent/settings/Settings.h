// The values of all options and where each came from.
#ifndef AGENT_SETTINGS_SETTINGS_H
#define AGENT_SETTINGS_SETTINGS_H

#include "agent/settings/CommandLine.h"
#include "agent/settings/option_table.h"

#include <string>
#include <vector>

namespace cimd
{

// The command line counts more than the configuration file, that more than the defaults.
class Settings
{
  public:
    struct Places
    {
        std::string programDir; ///< Files' defaults are in ../share/cimd and ../lib of it.
        std::string configFile = "/etc/cimd/cimd.conf"; ///< Read if it is there and no other was named.
    };

    // Throws StartError with what is wrong.
    Settings(CommandLine line, Places places);

    const Options& options() const { return _options; }
    // The configuration file that was read; empty if there was none.
    const std::string& configFile() const { return _configFile; }

    // How a complaint about an option begins: "--port", or "/etc/cimd/cimd.conf:3: port".
    std::string place(const std::string& option) const;
    // "default", "command line" or "/etc/cimd/cimd.conf:3".
    std::string source(const OptionRow& row) const;

    // The same command line with what the file says now. Throws as the constructor does.
    Settings readAgain() const { return {_line, _places}; }
    // The options whose values differ.
    std::vector<const OptionRow*> differences(const Settings& other) const;

  private:
    struct Source
    {
        enum
        {
            Default,
            File,
            CommandLine
        } kind = Default;
        unsigned line = 0; ///< Of the file.
    };

    void setDefaults();
    void takeFile();
    void takeCommandLine();
    bool isGiven(const std::string& option) const;
    void checkTogether() const;

    CommandLine _line;
    Places _places;
    Options _options;
    std::string _configFile;
    std::vector<Source> _sources; // of each row
};

} // namespace cimd

#endif
