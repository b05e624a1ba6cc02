// A file with the bodies of requests and answers as they were on the wire.
#ifndef AGENT_LOG_XMLTRACE_H
#define AGENT_LOG_XMLTRACE_H

#include "agent/base/FileDescriptor.h"

#include <mutex>
#include <string>
#include <string_view>

namespace cimd
{

// Each body stands after a line "--- time direction peer about: N bytes" and is followed by a line end. Only
// bodies are written: credentials are in headers. Members may be called from any thread and never throw; what
// cannot be written is lost, and the log says so once.
class XmlTrace
{
  public:
    // Appends to a file that only its owner can read; "-" is standard output. Throws std::system_error.
    explicit XmlTrace(const std::string& file);

    // `about` says what it is: "request", "answer", "part of an answer".
    void write(std::string_view about, std::string_view peer, std::string_view body) noexcept;

  private:
    std::mutex _mutex;
    const std::string _name;
    const FileDescriptor _fd;
    bool _hasFailed = false;
};

} // namespace cimd

#endif
