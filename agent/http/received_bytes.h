// How much a TCP connection has received.
#pragma once

#include <cstdint>
#include <optional>

namespace cimd
{

/** Bytes that the peer of a connected TCP socket has sent so far; nothing on kernels before 4.1. */
std::optional<std::uint64_t> receivedBytes(int fd);

} // namespace cimd
