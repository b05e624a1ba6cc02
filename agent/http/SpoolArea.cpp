// Nameless files.
#include "agent/http/SpoolArea.h"

#include "agent/cim/CimError.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace cimd
{

FileDescriptor SpoolArea::file() const
{
    std::string path = _directory + "/cimd-XXXXXX";
    FileDescriptor file(::mkostemp(path.data(), O_CLOEXEC));
    if (file.get() < 0)
        fail("create a file", errno);
    ::unlink(path.c_str());
    return file;
}

void SpoolArea::take(std::size_t bytes)
{
    if (_used.fetch_add(bytes) + bytes <= _fileBytes)
        return;
    _used -= bytes;
    throw CimError(CimStatus::ServerLimitsExceeded,
                   "the results kept for clients would exceed " + std::to_string(_fileBytes) + " bytes");
}

void SpoolArea::fail(const std::string& what, int error) const
{
    throw CimError(error == ENOSPC || error == EDQUOT ? CimStatus::ServerLimitsExceeded : CimStatus::Failed,
                   "cannot " + what + " for results kept in " + _directory + ": " + std::strerror(error));
}

void SpoolArea::write(const FileDescriptor& file, std::string_view bytes, std::size_t offset) const
{
    while (!bytes.empty())
    {
        const ssize_t written = ::pwrite(file.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail("write", errno);
        bytes.remove_prefix(static_cast<std::size_t>(written));
        offset += static_cast<std::size_t>(written);
    }
}

std::size_t SpoolArea::read(const FileDescriptor& file, char* to, std::size_t size, std::size_t offset) const
{
    for (;;)
    {
        const ssize_t got = ::pread(file.get(), to, size, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            fail("read", got < 0 ? errno : EIO);
        return static_cast<std::size_t>(got);
    }
}

} // namespace cimd
