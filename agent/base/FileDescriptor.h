// An open file, socket or pipe with an owner.
#ifndef AGENT_BASE_FILEDESCRIPTOR_H
#define AGENT_BASE_FILEDESCRIPTOR_H

#include <unistd.h>
#include <utility>

namespace cimd
{

// Closes a file descriptor at the end of its scope.
class FileDescriptor
{
  public:
    explicit FileDescriptor(int fd = -1) : _fd(fd) {}
    ~FileDescriptor()
    {
        if (_fd >= 0)
            close(_fd);
    }
    FileDescriptor(FileDescriptor&& other) noexcept : _fd(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        FileDescriptor old(std::exchange(_fd, other.release()));
        return *this;
    }
    int get() const { return _fd; }
    // Gives the descriptor away; the caller closes it.
    int release() { return std::exchange(_fd, -1); }

  private:
    int _fd;
};

} // namespace cimd

#endif
