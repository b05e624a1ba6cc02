// Nameless files.
#include "agent/http/SpoolArea.h"

#include "agent/cim/CimError.h"
#include "agent/log/log.h"

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace cimd
{

namespace
{

constexpr std::chrono::minutes kQuiet{1};

} // namespace

FileDescriptor SpoolArea::fileIn(const std::string& directory)
{
    std::string path = directory + "/cimd-XXXXXX";
    FileDescriptor file(::mkostemp(path.data(), O_CLOEXEC));
    if (file.get() < 0)
        throw std::system_error(errno, std::generic_category(), "cannot create a file in " + directory);
    ::unlink(path.c_str());
    return file;
}

FileDescriptor SpoolArea::file() const
try
{
    return fileIn(_directory);
}
catch (const std::system_error& error)
{
    fail("create a file", error.code().value());
}

void SpoolArea::take(std::size_t bytes)
{
    if (_used.fetch_add(bytes) + bytes <= _fileBytes)
        return;
    _used -= bytes;
    throw CimError(CimStatus::ServerLimitsExceeded,
                   "the results kept for clients would exceed " + std::to_string(_fileBytes) + " bytes");
}

// Every piece of every answer may meet a full disk.
void SpoolArea::tell(const std::string& fault) const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    const Time now = timeNow();
    if (fault == _told && now < _quietUntil)
    {
        ++_more;
        return;
    }
    const std::string more =
        _more == 0 ? "" : "; " + std::to_string(_more) + " more faults since the last line";
    log(LogLevel::Error, "spool", fault + more);
    _told = fault;
    _quietUntil = now + kQuiet;
    _more = 0;
}

void SpoolArea::fail(const std::string& what, int error) const
{
    const std::string text = "cannot " + what + " for results kept in " + _directory + ": " +
                             std::generic_category().message(error);
    tell(text);
    throw CimError(error == ENOSPC || error == EDQUOT ? CimStatus::ServerLimitsExceeded : CimStatus::Failed,
                   text);
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
