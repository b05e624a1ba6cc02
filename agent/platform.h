// Starting the simulated switch, which stands where a switch has its platform library.
#ifndef AGENT_PLATFORM_H
#define AGENT_PLATFORM_H

#include <string>

namespace cimd
{

// Loads `directory`/libvraxplatform.so and lets it start from a scenario file; must happen before the first
// provider is loaded. The library stays loaded. Throws std::runtime_error naming the file and the reason;
// a switch's own platform library has no scenarios and is refused.
void openScenario(const std::string& directory, const std::string& scenario);

// Lets it start from what `file` holds of an earlier run, if there is one, and keep there what outlives a
// restart. After openScenario(); throws as that does.
void keepState(const std::string& directory, const std::string& file);

// Lets it take commands at a Unix socket with this path. Throws as openScenario() does.
void takeSwitchCommands(const std::string& directory, const std::string& socket);

} // namespace cimd

#endif
