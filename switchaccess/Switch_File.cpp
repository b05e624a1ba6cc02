// Files of the switch.
#include "switchaccess/Switch_File.h"

#include "platform/configuration.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace cimple
{

namespace
{

struct Close_File
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};
typedef std::unique_ptr<std::FILE, Close_File> Open_File;

class Descriptor
{
  public:
    explicit Descriptor(int number) : _number(number) {}
    ~Descriptor()
    {
        if (_number >= 0)
            ::close(_number);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return _number; }

  private:
    int _number;
};

bool writeTo(Open_File file, const uint8* data, std::size_t sizeBytes)
{
    const bool written = std::fwrite(data, 1, sizeBytes, file.get()) == sizeBytes &&
                         std::fflush(file.get()) == 0 && ::fsync(::fileno(file.get())) == 0;
    // What the kernel kept back until now counts as well.
    return std::fclose(file.release()) == 0 && written;
}

// The names in a directory reach the disk with it. Some file systems cannot sync one; each file is whole
// either way.
void syncDirectoryOf(const std::string& place)
{
    const Descriptor directory(
        ::open(place.substr(0, place.rfind('/') + 1).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (directory.number() >= 0)
        ::fsync(directory.number());
}

} // namespace

Switch_File::Switch_File(const char* path)
{
    char place[kPlaceSize];
    if (locateSwitchFile(path, place, sizeof(place)) == 0)
        _place = place;
}

bool Switch_File::stat(Facts& facts) const
{
    struct stat found;
    if (::stat(_place.c_str(), &found) != 0)
        return false;
    facts = {static_cast<std::uint64_t>(found.st_size), static_cast<std::int64_t>(found.st_mtime)};
    return true;
}

bool Switch_File::isMissing() const
{
    Facts facts;
    return !_place.empty() && !stat(facts) && errno == ENOENT;
}

bool Switch_File::read(Array_uint8& into) const
{
    const Descriptor file(::open(_place.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.number() < 0)
        return false;
    uint8 chunk[2048];
    for (;;)
    {
        const ssize_t size = ::read(file.number(), chunk, sizeof(chunk));
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return size == 0;
        into.append(chunk, static_cast<std::size_t>(size));
    }
}

Switch_File::Written Switch_File::write(const uint8* data, std::size_t sizeBytes) const
{
    const std::string aside = _place + ".part";
    Open_File file(!_place.empty() ? std::fopen(aside.c_str(), "wbe") : nullptr);
    if (!file)
        return Written::NotOpened;
    if (!writeTo(std::move(file), data, sizeBytes) || std::rename(aside.c_str(), _place.c_str()) != 0)
    {
        ::unlink(aside.c_str());
        return Written::NotWritten;
    }
    syncDirectoryOf(_place);
    return Written::Done;
}

bool Switch_File::remove() const
{
    return ::unlink(_place.c_str()) == 0 || errno == ENOENT;
}

bool Switch_File::moveTo(const Switch_File& other) const
{
    if (std::rename(_place.c_str(), other._place.c_str()) != 0)
        return false;
    syncDirectoryOf(other._place);
    return true;
}

} // namespace cimple
