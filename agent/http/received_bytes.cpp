// Asks the kernel; alone in its file because its headers do not go together with others.
#include "agent/http/received_bytes.h"

#include <cstddef>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace cimd
{

std::optional<std::uint64_t> receivedBytes(int fd)
{
    tcp_info info{};
    socklen_t size = sizeof info;
    if (getsockopt(fd, IPPROTO_TCP, TCP_INFO, &info, &size) != 0 ||
        size < offsetof(tcp_info, tcpi_bytes_received) + sizeof info.tcpi_bytes_received)
        return std::nullopt;
    return info.tcpi_bytes_received;
}

} // namespace cimd
