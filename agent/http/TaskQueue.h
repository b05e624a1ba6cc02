// What other threads have for one that waits with epoll.
#ifndef AGENT_HTTP_TASKQUEUE_H
#define AGENT_HTTP_TASKQUEUE_H

#include "agent/base/FileDescriptor.h"

#include <functional>
#include <mutex>
#include <vector>

namespace cimd
{

class TaskQueue
{
  public:
    // Throws std::system_error.
    TaskQueue();

    // Readable while there are tasks.
    int fd() const { return _wakeUp.get(); }
    // For the waiting thread: does what there is, in order.
    void run();

    // Any thread.
    void post(std::function<void()> task);
    // Any thread but the waiting one: returns when the task is done.
    void postAndWait(const std::function<void()>& task);

  private:
    const FileDescriptor _wakeUp;
    std::mutex _mutex;
    std::vector<std::function<void()>> _tasks;
};

} // namespace cimd

#endif
