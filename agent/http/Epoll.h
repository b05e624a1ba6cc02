// Waiting for what happens at descriptors.
#ifndef AGENT_HTTP_EPOLL_H
#define AGENT_HTTP_EPOLL_H

#include "agent/base/FileDescriptor.h"

#include <cstdint>
#include <sys/epoll.h>
#include <vector>

namespace cimd
{

// Used on one thread at a time.
class Epoll
{
  public:
    // Throws std::system_error.
    Epoll();

    // From now on wait() tells of `events` there with this identity. A descriptor that is closed is
    // forgotten. Throws std::system_error.
    void add(int fd, std::uint64_t id, std::uint32_t events);
    // For one that others have open, too.
    void remove(int fd);
    // Waits for up to so many milliseconds; -1: as long as it takes. What has happened is valid until the
    // next call.
    const std::vector<epoll_event>& wait(int milliseconds);

  private:
    const FileDescriptor _fd;
    std::vector<epoll_event> _events;
};

} // namespace cimd

#endif
