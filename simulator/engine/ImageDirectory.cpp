// Where the simulated switch keeps its files.
#include "simulator/engine/ImageDirectory.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace simulator
{
namespace
{

namespace fs = std::filesystem;

constexpr const char* kOption = "VRAX_IMAGE_DIR";

void makeDirectory(const std::string& path)
{
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST)
        throw std::system_error(errno, std::generic_category(), "cannot make the directory " + path);
}

// Makes every directory of the path from `from` on.
void makeDirectories(const std::string& path, std::size_t from)
{
    for (std::size_t end = path.find('/', from); end != std::string::npos; end = path.find('/', end + 1))
        makeDirectory(path.substr(0, end));
}

std::string madeForThisProcess()
{
    std::string path = (fs::temp_directory_path() / "simulated-switch-XXXXXX").string();
    if (::mkdtemp(path.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "cannot make a directory like " + path);
    return path;
}

} // namespace

ImageDirectory& ImageDirectory::instance()
{
    static ImageDirectory directory;
    return directory;
}

ImageDirectory::~ImageDirectory()
{
    const Locked<Mutex> guard(_mutex);
    std::error_code ignored; // there is nobody left to tell
    if (_removedBy == ::getpid())
        fs::remove_all(_root, ignored);
}

std::string ImageDirectory::locate(std::string_view switchPath)
{
    const bool upwards = (std::string(switchPath) + "/").find("/../") != std::string::npos;
    if (switchPath.substr(0, 1) != "/" || upwards)
        throw std::invalid_argument(std::string(switchPath) + " is no absolute path");
    const Locked<Mutex> guard(_mutex);
    // What lies in the temporary directory for long may be cleaned away.
    if (_root.empty() || (_removedBy != 0 && !fs::is_directory(_root)))
    {
        const char* given = std::getenv(kOption);
        if (given != nullptr && *given != '\0')
        {
            makeDirectories(std::string(given) + "/", 1);
            _root = given;
        }
        else
        {
            _root = madeForThisProcess();
            _removedBy = ::getpid();
        }
    }
    std::string place = _root + std::string(switchPath);
    makeDirectories(place, _root.size() + 1);
    return place;
}

} // namespace simulator
