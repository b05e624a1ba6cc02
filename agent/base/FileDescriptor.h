// An open file, socket or pipe with an owner.
#ifndef AGENT_BASE_FILEDESCRIPTOR_H
#define AGENT_BASE_FILEDESCRIPTOR_H

#include <cerrno>
#include <cstddef>
#include <string_view>
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

// Writes all of a text to a file; false, with errno, if that fails.
inline bool writeAll(int fd, std::string_view text)
{
    while (!text.empty())
    {
        const ssize_t written = ::write(fd, text.data(), text.size());
        if (written < 0 && errno != EINTR)
            return false;
        if (written > 0)
            text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

} // namespace cimd

#endif
