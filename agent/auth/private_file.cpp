// Files with secrets: permissions, stamps, atomic replacement.
#include "agent/auth/private_file.h"

#include "agent/base/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace cimd
{

namespace
{

constexpr std::int64_t kLargest = 1024 * 1024; // bytes

[[noreturn]] void fail(const std::string& path, const std::string& reason)
{
    throw std::runtime_error(path + ": " + reason);
}

[[noreturn]] void failSystem(const std::string& path, const char* step)
{
    fail(path, std::string(step) + ": " + std::generic_category().message(errno));
}

FileStamp stampOf(const struct stat& status)
{
    return {status.st_dev,
            status.st_ino,
            status.st_size,
            status.st_mtim.tv_sec,
            status.st_mtim.tv_nsec,
            status.st_ctim.tv_sec,
            status.st_ctim.tv_nsec};
}

void checkPermissions(const std::string& path, mode_t mode)
{
    constexpr mode_t kForbidden = S_IWGRP | S_IROTH | S_IWOTH;
    if ((mode & kForbidden) == 0)
        return;
    char text[8];
    std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode & 07777));
    fail(path,
         std::string("others may ") + ((mode & S_IROTH) != 0 ? "read" : "write") + " it (mode " + text +
             "); make it 0600 or 0640");
}

// Removes a file at the end of its scope unless it was kept.
class TemporaryFile
{
  public:
    explicit TemporaryFile(const std::string& target)
        : _name(target + ".XXXXXX"), _fd(mkostemp(_name.data(), O_CLOEXEC))
    {
        if (_fd.get() < 0)
            failSystem(target, "cannot create a file beside it");
    }
    ~TemporaryFile()
    {
        if (!_name.empty())
            unlink(_name.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int fd() const { return _fd.get(); }

    void moveTo(const std::string& target)
    {
        if (std::rename(_name.c_str(), target.c_str()) != 0)
            failSystem(target, "cannot replace it");
        _name.clear();
    }

  private:
    std::string _name;
    FileDescriptor _fd;
};

} // namespace

std::optional<FileStamp> fileStamp(const std::string& path)
{
    struct stat status
    {
    };
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return stampOf(status);
}

FileContents readSmallFile(const std::string& path, Secrecy secrecy)
{
    // A FIFO without a writer must not keep us.
    const FileDescriptor fd(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status
    {
    };
    if (fd.get() < 0 || fstat(fd.get(), &status) != 0)
        failSystem(path, "cannot open");
    if (!S_ISREG(status.st_mode))
        fail(path, "is not a file");
    if (secrecy == Secrecy::Secret)
        checkPermissions(path, status.st_mode);
    if (status.st_size > kLargest)
        fail(path, "is larger than " + std::to_string(kLargest) + " bytes");
    FileContents contents{stampOf(status), {}};
    char bytes[4096];
    ssize_t got = 0;
    while ((got = read(fd.get(), bytes, sizeof bytes)) != 0)
    {
        if (got < 0 && errno != EINTR)
            failSystem(path, "cannot read");
        contents.text.append(bytes, got > 0 ? static_cast<std::size_t>(got) : 0);
        if (contents.text.size() > static_cast<std::size_t>(kLargest))
            fail(path, "grows while it is read");
    }
    return contents;
}

void replaceFile(const std::string& path, const std::string& text)
{
    struct stat old
    {
    };
    const bool exists = stat(path.c_str(), &old) == 0;
    if (!exists && errno != ENOENT)
        failSystem(path, "cannot open");
    const std::string target = exists ? std::filesystem::canonical(path).string() : path;
    const std::string folder = std::filesystem::absolute(target).parent_path();
    TemporaryFile fresh(target); // mode 0600
    if (exists &&
        (fchown(fresh.fd(), old.st_uid, old.st_gid) != 0 || fchmod(fresh.fd(), old.st_mode & 07777) != 0))
        failSystem(path, "cannot give the new file the owner and mode of the old one");
    if (!writeAll(fresh.fd(), text) || fsync(fresh.fd()) != 0)
        failSystem(path, "cannot write");
    fresh.moveTo(target);
    const FileDescriptor directory(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() < 0 || fsync(directory.get()) != 0)
        failSystem(folder, "cannot make the change durable");
}

} // namespace cimd
