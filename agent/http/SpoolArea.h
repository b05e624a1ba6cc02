// Files for what does not fit in memory, bounded in their sum.
#ifndef AGENT_HTTP_SPOOLAREA_H
#define AGENT_HTTP_SPOOLAREA_H

#include "agent/http/ListenSocket.h"
#include "agent/http/deadline.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace cimd
{

// What all spools share: where their files are, and how much may be in them. Used from any thread.
class SpoolArea
{
  public:
    // @param directory     Where files are made.
    // @param memoryBytes   What one spool keeps in memory before it opens a file.
    // @param fileBytes     What all files together may hold.
    SpoolArea(std::string directory, std::size_t memoryBytes, std::size_t fileBytes)
        : _directory(std::move(directory)), _memoryBytes(memoryBytes), _fileBytes(fileBytes)
    {
    }

    // A file without a name. Throws std::system_error with the directory.
    static FileDescriptor fileIn(const std::string& directory);

    std::size_t memoryBytes() const { return _memoryBytes; }
    // A file for reading and writing that nobody else can open. CimError (failed) with path and reason, which
    // also go to the log, the same once a minute.
    FileDescriptor file() const;
    // CimError (server limits exceeded) if the files would hold more than they may.
    void take(std::size_t bytes);
    void giveBack(std::size_t bytes) { _used -= bytes; }
    std::size_t used() const { return _used; }

    // Writes all of it from `offset` on; CimError with the reason if that fails.
    void write(const FileDescriptor& file, std::string_view bytes, std::size_t offset) const;
    // Reads up to `size` bytes from `offset` on, at least one. CimError if there are none.
    std::size_t read(const FileDescriptor& file, char* to, std::size_t size, std::size_t offset) const;

  private:
    [[noreturn]] void fail(const std::string& what, int error) const;
    void tell(const std::string& fault) const;

    const std::string _directory;
    const std::size_t _memoryBytes;
    const std::size_t _fileBytes;
    std::atomic<std::size_t> _used{0};
    mutable std::mutex _mutex;     // guards what follows
    mutable std::string _told;     // the latest fault in the log
    mutable Time _quietUntil{};    // as far as that goes
    mutable std::size_t _more = 0; // that were not told
};

} // namespace cimd

#endif
