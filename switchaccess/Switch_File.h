// Files of the switch, by the paths that operators know them by.
#ifndef SWITCHACCESS_SWITCH_FILE_H
#define SWITCHACCESS_SWITCH_FILE_H

#include <cimple/cimple.h>

#include <cstdint>
#include <string>

namespace cimple
{

// A file that may or may not be there. `path` is the switch's; where this machine keeps it is the platform's
// business.
class Switch_File
{
  public:
    explicit Switch_File(const char* path);
    Switch_File(const Switch_File&) = delete;
    Switch_File& operator=(const Switch_File&) = delete;

    struct Facts
    {
        std::uint64_t size;    // bytes
        std::int64_t modified; // seconds since the epoch
    };
    // False when there is no such file, or none that can be asked.
    bool stat(Facts& facts) const;
    // True when there is certainly no such file.
    bool isMissing() const;

    // Appends the whole file; false when it cannot be opened or read to its end.
    bool read(Array_uint8& into) const;

    enum class Written
    {
        Done,
        NotOpened,
        NotWritten
    };
    // Makes this the file's content, which reaches the disk before the file has its name: nobody ever sees a
    // part of it, not after a power loss either. On failure nothing of it is left.
    Written write(const uint8* data, std::size_t sizeBytes) const;

    // False when the file is there and cannot be removed.
    bool remove() const;
    // Takes the other one's place.
    bool moveTo(const Switch_File& other) const;

  private:
    std::string _place; // empty: the platform does not tell
};

} // namespace cimple

#endif
