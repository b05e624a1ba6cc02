// Writing bodies to the trace file.
#include "agent/log/XmlTrace.h"

#include "agent/log/log.h"

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace cimd
{

XmlTrace::XmlTrace(const std::string& file)
    : _name(file == "-" ? "standard output" : file),
      _fd(file == "-" ? fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)
                      : open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR))
{
    if (_fd.get() < 0)
        throw std::system_error(errno, std::generic_category(), "cannot open " + file);
}

void XmlTrace::write(std::string_view about, std::string_view peer, std::string_view body) noexcept
try
{
    std::string text = "--- " + timeStamp() + ' ';
    text.append(about).append(" ").append(peer).append(": ");
    text.append(std::to_string(body.size())).append(" bytes\n").append(body).append("\n");
    const std::lock_guard<std::mutex> lock(_mutex);
    if (!writeAll(_fd.get(), text) && !std::exchange(_hasFailed, true))
        log(LogLevel::Error,
            "trace",
            "cannot write to " + _name + ": " + std::generic_category().message(errno));
}
catch (...)
{
    // Out of memory: the answer matters more than its trace.
}

} // namespace cimd
