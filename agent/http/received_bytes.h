// How much a TCP connection has received.
#ifndef AGENT_HTTP_RECEIVED_BYTES_H
#define AGENT_HTTP_RECEIVED_BYTES_H

#include <cstdint>
#include <optional>

namespace cimd
{

// Bytes that the peer of a connected TCP socket has sent so far; nothing on kernels before 4.1.
std::optional<std::uint64_t> receivedBytes(int fd);

} // namespace cimd

#endif
