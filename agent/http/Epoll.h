// Waiting for what happens at descriptors, and for what other threads want done.
#ifndef AGENT_HTTP_EPOLL_H
#define AGENT_HTTP_EPOLL_H

#include "agent/base/FileDescriptor.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <sys/epoll.h>
#include <vector>

namespace cimd
{

// Used on one thread at a time, but for the last two members.
class Epoll
{
  public:
    // Throws std::system_error.
    Epoll();

    // What wait() calls the event that there are tasks.
    static constexpr std::uint64_t kTasks = 0;

    // From now on wait() tells of `events` there with this identity. A descriptor that is closed is
    // forgotten. Throws std::system_error.
    void add(int fd, std::uint64_t id, std::uint32_t events);
    // For one that others have open, too.
    void remove(int fd);
    // Waits for up to so many milliseconds; -1: as long as it takes. What has happened is valid until the
    // next call.
    const std::vector<epoll_event>& wait(int milliseconds);
    // Does what there is, in order.
    void runTasks();

    // Any thread.
    void post(std::function<void()> task);
    // Any thread but the waiting one: returns when the task is done.
    void postAndWait(const std::function<void()>& task);

  private:
    const FileDescriptor _fd;
    const FileDescriptor _wakeUp; // readable while there are tasks
    std::vector<epoll_event> _events;
    std::mutex _mutex;
    std::vector<std::function<void()>> _tasks;
};

} // namespace cimd

#endif
