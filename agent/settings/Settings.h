// The values of all options and where each came from.
#ifndef AGENT_SETTINGS_SETTINGS_H
#define AGENT_SETTINGS_SETTINGS_H

#include "agent/settings/CommandLine.h"
#include "agent/settings/option_table.h"

#include <string>
#include <vector>

namespace cimd
{

class Settings
{
  public:
    // The files' defaults are beside the program: `programDir`/../share/cimd and `programDir`/../lib. Throws
    // StartError naming the options that are at fault.
    Settings(const CommandLine& line, const std::string& programDir);

    const Options& options() const { return _options; }
    // How a complaint about an option begins: "--port".
    std::string place(const char* option) const;

  private:
    void take(const OptionRow& row, const std::string& value, const std::string& source);
    bool isGiven(const char* option) const;
    void checkTogether() const;

    Options _options;
    std::vector<std::string> _sources; // of each row; empty: the default
};

} // namespace cimd

#endif
