// Who has how many connections, for people.
#ifndef AGENT_HTTP_CONNECTION_LINES_H
#define AGENT_HTTP_CONNECTION_LINES_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace cimd
{

// By address and by what they are doing.
using ConnectionCounts = std::map<std::string, std::map<std::string, std::size_t>>;

// "192.0.2.7: 12: 10 idle, 2 head" for each address, those with the most connections first, below a line
// that counts all, of a server that takes `most`.
std::vector<std::string> connectionLines(const ConnectionCounts& counts, std::size_t most);

} // namespace cimd

#endif
