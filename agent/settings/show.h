// What cimd prints of its configuration.
#ifndef AGENT_SETTINGS_SHOW_H
#define AGENT_SETTINGS_SHOW_H

#include "agent/settings/Settings.h"

#include <string>

namespace cimd
{

// A line for each key: its value as the file would have it, and where that comes from.
std::string configTable(const Settings& settings);

// A configuration file with every key, explained and commented out.
std::string sampleConfig();

} // namespace cimd

#endif
