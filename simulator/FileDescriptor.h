// An open file or socket with an owner.
#ifndef SIMULATOR_FILEDESCRIPTOR_H
#define SIMULATOR_FILEDESCRIPTOR_H

#include <unistd.h>
#include <utility>

namespace simulator
{

class FileDescriptor
{
  public:
    explicit FileDescriptor(int descriptor = -1) : _descriptor(descriptor) {}
    ~FileDescriptor() { close(); }
    FileDescriptor(FileDescriptor&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(_descriptor, other._descriptor);
        return *this;
    }

    int get() const { return _descriptor; }

    // Closes now, so that the caller sees an error that the kernel kept until then. False on such an error.
    bool close()
    {
        const int descriptor = std::exchange(_descriptor, -1);
        return descriptor < 0 || ::close(descriptor) == 0;
    }

  private:
    int _descriptor;
};

} // namespace simulator

#endif
