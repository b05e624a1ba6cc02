// Nameless files.
#include "agent/http/SpoolArea.h"

#include "agent/cim/CimError.h"
#include "agent/log/log.h"

#include <algorithm>
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

// Negative, with errno, if it cannot be made.
FileDescriptor namelessFile(const std::string& directory)
{
    std::string path = directory + "/cimd-XXXXXX";
    FileDescriptor file(::mkostemp(path.data(), O_CLOEXEC));
    if (file.get() >= 0)
        ::unlink(path.c_str());
    return file;
}

} // namespace

void SpoolArea::tryDirectory(const std::string& directory)
{
    if (namelessFile(directory).get() < 0)
        throw std::system_error(errno, std::generic_category(), "cannot create a file in " + directory);
}

// Every piece of every answer may meet a full disk.
void SpoolArea::tell(const std::string& fault)
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

void SpoolFile::fail(const std::string& what, int error) const
{
    const std::string text = "cannot " + what + " for results kept in " + _area._directory + ": " +
                             std::generic_category().message(error);
    _area.tell(text);
    throw CimError(error == ENOSPC || error == EDQUOT ? CimStatus::ServerLimitsExceeded : CimStatus::Failed,
                   text);
}

void SpoolFile::add(std::string_view bytes)
{
    const std::size_t end = _share.taken();
    if (!_share.take(bytes.size()))
        throw CimError(CimStatus::ServerLimitsExceeded,
                       "the results kept for clients would exceed " + std::to_string(_area._budget.most()) +
                           " bytes");
    try
    {
        write(bytes, end);
    }
    catch (const CimError&)
    {
        _share.giveBack(bytes.size());
        throw;
    }
}

void SpoolFile::write(std::string_view bytes, std::size_t offset)
{
    if (!exists())
        _file = namelessFile(_area._directory);
    if (!exists())
        fail("create a file", errno);
    while (!bytes.empty())
    {
        const ssize_t written = ::pwrite(_file.get(), bytes.data(), bytes.size(), static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            fail("write", errno);
        bytes.remove_prefix(static_cast<std::size_t>(written));
        offset += static_cast<std::size_t>(written);
    }
}

std::size_t SpoolFile::read(char* to, std::size_t size)
{
    size = std::min(size, _share.taken() - _read); // a write that failed may have left something behind that
    for (;;)
    {
        const ssize_t got = ::pread(_file.get(), to, size, static_cast<off_t>(_read));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            fail("read", got < 0 ? errno : EIO);
        _read += static_cast<std::size_t>(got);
        return static_cast<std::size_t>(got);
    }
}

void SpoolFile::clear()
{
    _share.giveBack();
    _read = 0;
    _file = FileDescriptor();
}

} // namespace cimd
