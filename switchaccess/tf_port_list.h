// The lists of ports to which a switch in transparent mode forwards a port, as the attribute store writes
// them: decimal port numbers with commas between them, or "None".
#ifndef SWITCHACCESS_TF_PORT_LIST_H
#define SWITCHACCESS_TF_PORT_LIST_H

#include <string>
#include <vector>

namespace cimple
{

// Whether the text names no port.
bool isNoTFPort(const char* text);

// The numbers in a text, in its order; each is logged. Nothing between two commas is no number, and what
// begins with no digit counts as 0. The text is not that of an empty list.
std::vector<int> getTFPortList(const char* text);

// The text of the list without this port.
std::string deleteFromTFPortList(const std::vector<int>& ports, int port);

} // namespace cimple

#endif
