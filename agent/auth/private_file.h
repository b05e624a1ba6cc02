// Reading and replacing the files that hold secrets.
#ifndef AGENT_AUTH_PRIVATE_FILE_H
#define AGENT_AUTH_PRIVATE_FILE_H

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>

namespace cimd
{

// Tells one state of a file from another: device, inode, size, times of last change to contents and mode.
using FileStamp = std::
    tuple<std::uint64_t, std::uint64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t>;

// Nothing when there is no such file.
std::optional<FileStamp> fileStamp(const std::string& path);

struct FileContents
{
    FileStamp stamp;
    std::string text;
};

enum class Secrecy
{
    Public,
    Secret ///< Refused when others than the owner and the group can read it, or others than the owner write
           ///< it.
};

// Reads a regular file of at most 1 MiB. Throws std::runtime_error, "path: reason".
FileContents readSmallFile(const std::string& path, Secrecy secrecy);

// Puts a new text in the place of a file's, so that a reader sees the whole old or the whole new one, even
// after a power failure. Mode and group stay; a new file is its owner's alone. Throws std::runtime_error,
// "path: reason".
void replaceFile(const std::string& path, const std::string& text);

} // namespace cimd

#endif
