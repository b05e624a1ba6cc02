// Text in lines.
#ifndef AGENT_SETTINGS_PARAGRAPH_H
#define AGENT_SETTINGS_PARAGRAPH_H

#include <string>

namespace cimd
{

// The words in lines of at most 110 characters that begin with `start`.
std::string paragraph(const std::string& start, const std::string& words);

} // namespace cimd

#endif
