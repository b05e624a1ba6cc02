// The text of cimd --help.
#ifndef AGENT_SETTINGS_HELP_H
#define AGENT_SETTINGS_HELP_H

#include <string>

namespace cimd
{

// Sections as in a manual page; the options are those of the tables.
std::string helpText();

} // namespace cimd

#endif
