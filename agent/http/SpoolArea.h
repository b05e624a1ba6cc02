// Files for what does not fit in memory, bounded in their sum.
#ifndef AGENT_HTTP_SPOOLAREA_H
#define AGENT_HTTP_SPOOLAREA_H

#include "agent/base/FileDescriptor.h"
#include "agent/http/ByteBudget.h"
#include "agent/http/deadline.h"

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
        : _directory(std::move(directory)), _memoryBytes(memoryBytes), _budget(fileBytes)
    {
    }

    // Throws std::system_error with the directory if no file can be made there.
    static void tryDirectory(const std::string& directory);

    std::size_t used() const { return _budget.used(); }

  private:
    friend class SpoolFile;

    void tell(const std::string& fault);

    const std::string _directory;
    const std::size_t _memoryBytes;
    ByteBudget _budget;
    std::mutex _mutex;     // guards what follows
    std::string _told;     // the latest fault in the log
    Time _quietUntil{};    // as far as that goes
    std::size_t _more = 0; // that were not told
};

// First in, first out, in a file without a name, which nobody else can open and which is there from the first
// bytes on. What fails there is a CimError with directory and reason, which also go to the log, the same once
// a minute. Used on one thread at a time.
class SpoolFile
{
  public:
    // `area` outlives the object.
    explicit SpoolFile(SpoolArea& area) : _area(area), _share(area._budget) {}

    // What its user should keep in memory before it adds anything here.
    std::size_t memoryBytes() const { return _area._memoryBytes; }
    bool exists() const { return _file.get() >= 0; }
    // Whether all was read that was added.
    bool empty() const { return _read == _share.taken(); }
    // CimError (server limits exceeded), too, if the files would hold more than they may. Adds nothing then.
    void add(std::string_view bytes);
    // Reads up to `size` bytes, at least one.
    std::size_t read(char* to, std::size_t size);
    // The last bytes that were read will be read again.
    void unread(std::size_t bytes) { _read -= bytes; }
    void clear();

  private:
    void write(std::string_view bytes, std::size_t offset);
    [[noreturn]] void fail(const std::string& what, int error) const;

    SpoolArea& _area;
    ByteShare _share; // the size of the file
    FileDescriptor _file;
    std::size_t _read = 0;
};

} // namespace cimd

#endif
