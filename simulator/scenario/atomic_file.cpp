// Whole files. One is replaced by: write aside, sync, rename, sync the directory.
#include "simulator/scenario/atomic_file.h"

#include "simulator/FileDescriptor.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace simulator
{
namespace
{

[[noreturn]] void fail(const std::string& step, const std::string& path)
{
    throw std::system_error(errno, std::generic_category(), step + " " + path);
}

// Removes the file unless it was kept.
class TemporaryFile
{
  public:
    explicit TemporaryFile(std::string path) : _path(std::move(path)) {}
    ~TemporaryFile()
    {
        if (!_kept)
            ::unlink(_path.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void keep() { _kept = true; }

  private:
    std::string _path;
    bool _kept = false;
};

void writeAll(int descriptor, std::string_view text, const std::string& path)
{
    while (!text.empty())
    {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail("cannot write", path);
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::string directoryOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

} // namespace

void replaceFile(const std::string& path, std::string_view text)
{
    // A name of its own for each writer: two that save at once do not write into one file.
    std::string aside = path + ".XXXXXX";
    FileDescriptor file(::mkstemp(aside.data()));
    if (file.get() < 0)
        fail("cannot create a file beside", path);
    TemporaryFile temporary(aside);
    writeAll(file.get(), text, path);
    if (::fchmod(file.get(), 0644) != 0 || ::fsync(file.get()) != 0 || !file.close())
        fail("cannot complete", path);
    if (::rename(aside.c_str(), path.c_str()) != 0)
        fail("cannot replace", path);
    temporary.keep();
    // The rename itself reaches the disk with the directory. Some file systems cannot sync one; the file is
    // whole either way.
    const FileDescriptor directory(::open(directoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.get() >= 0)
        ::fsync(directory.get());
}

std::string readFile(const std::string& path, std::size_t limit)
{
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0)
        fail("cannot open", path);
    std::string text;
    char block[1 << 14];
    for (;;)
    {
        const ssize_t size = ::read(file.get(), block, sizeof block);
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0)
            fail("cannot read", path);
        if (size == 0)
            return text;
        text.append(block, static_cast<std::size_t>(size));
        if (text.size() > limit)
            throw std::system_error(EFBIG, std::generic_category(), "cannot read " + path);
    }
}

bool holdsText(const std::string& path, std::string_view text)
{
    try
    {
        return readFile(path, text.size()) == text;
    }
    catch (const std::system_error&)
    {
        return false;
    }
}

} // namespace simulator
