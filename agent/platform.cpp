// The one thing the agent knows of the simulator: the name of its start function.
#include "agent/platform.h"

#include "agent/Options.h"

#include <cstddef>
#include <dlfcn.h>

namespace cimd
{

namespace
{

// 0 for success; otherwise `message` holds a text.
using OpenFunction = int (*)(const char* path, char* message, std::size_t size);

constexpr const char* kOpenName = "vraxsim_open";
constexpr std::size_t kMessageBytes = 1024;

} // namespace

void openScenario(const std::string& directory, const std::string& scenario)
{
    const std::string library = directory + "/libvraxplatform.so";
    const std::string about = "--scenario " + scenario + ": ";
    void* const handle = dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr)
    {
        const char* reason = dlerror();
        throw StartError(about + "cannot load " + library + ": " +
                         (reason != nullptr ? reason : "unknown reason"));
    }
    const auto open = reinterpret_cast<OpenFunction>(dlsym(handle, kOpenName));
    if (open == nullptr)
        throw StartError(about + library + " is not a simulated switch: it lacks " + kOpenName);
    char message[kMessageBytes] = "";
    if (open(scenario.c_str(), message, sizeof message) != 0)
        throw StartError(about + (message[0] != '\0' ? message : "the simulated switch did not start"));
}

} // namespace cimd
