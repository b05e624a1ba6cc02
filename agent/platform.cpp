// The one thing the agent knows of the simulator: the names of its start functions.
#include "agent/platform.h"

#include <cstddef>
#include <dlfcn.h>
#include <stdexcept>

namespace cimd
{

namespace
{

// 0 for success; otherwise `message` holds a text.
using StartFunction = int (*)(const char* path, char* message, std::size_t size);

constexpr std::size_t kMessageBytes = 1024;

void callStart(const char* name, const std::string& directory, const std::string& file)
{
    const std::string library = directory + "/libvraxplatform.so";
    const std::string about = file + ": ";
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
    {
        const char* reason = dlerror();
        throw std::runtime_error(about + "cannot load " + library + ": " +
                                 (reason != nullptr ? reason : "unknown reason"));
    }
    const auto start = reinterpret_cast<StartFunction>(dlsym(handle, name));
    if (start == nullptr)
        throw std::runtime_error(about + library + " is not a simulated switch: it lacks " + name);
    char message[kMessageBytes] = "";
    if (start(file.c_str(), message, sizeof message) != 0)
        throw std::runtime_error(about +
                                 (message[0] != '\0' ? message : "the simulated switch did not start"));
}

} // namespace

void openScenario(const std::string& directory, const std::string& scenario)
{
    callStart("vraxsim_open", directory, scenario);
}

void keepState(const std::string& directory, const std::string& file)
{
    callStart("vraxsim_keep", directory, file);
}

void takeSwitchCommands(const std::string& directory, const std::string& socket)
{
    callStart("vraxsim_listen", directory, socket);
}

} // namespace cimd
