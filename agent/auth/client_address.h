// What tells clients apart that share a limit.
#ifndef AGENT_AUTH_CLIENT_ADDRESS_H
#define AGENT_AUTH_CLIENT_ADDRESS_H

#include <string>
#include <string_view>

namespace cimd
{

// "192.0.2.7" for the peer "192.0.2.7:49152"; of an IPv6 address the network part, "2001:db8::/64", for one
// host has as many addresses as it likes. A peer without an address is returned as it is.
std::string clientAddress(std::string_view peer);

} // namespace cimd

#endif
