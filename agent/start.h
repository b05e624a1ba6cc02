// Starting to serve.
#ifndef AGENT_START_H
#define AGENT_START_H

#include "agent/settings/Settings.h"

namespace cimd
{

// Serves until a signal says to stop, in this process or in one that it starts and replaces as the settings
// say. Returns in each of them, with the exit status. Throws std::exception, StartError mostly, if it cannot
// start.
int start(const Settings& settings);

} // namespace cimd

#endif
