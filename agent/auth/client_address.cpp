// Reading the names of peers.
#include "agent/auth/client_address.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstddef>
#include <iterator>

namespace cimd
{

namespace
{

constexpr std::size_t kNetworkBytes = 8;

} // namespace

std::string clientAddress(std::string_view peer)
{
    const std::string_view host = peer.substr(0, peer.rfind(':'));
    if (host.empty() || host.front() != '[')
        return std::string(host);
    const std::string text(host.substr(1, host.find_first_of("%]") - 1));
    in6_addr address{};
    if (inet_pton(AF_INET6, text.c_str(), &address) != 1)
        return std::string(host);
    std::fill(std::begin(address.s6_addr) + kNetworkBytes, std::end(address.s6_addr), '\0');
    char network[INET6_ADDRSTRLEN];
    return std::string(inet_ntop(AF_INET6, &address, network, sizeof network)) + "/64";
}

} // namespace cimd
