// A platform library with the simulator's start function; built a second time without it.
#include <cstddef>
#include <cstdio>
#include <cstring>

#ifdef WITH_SCENARIOS
extern "C" __attribute__((visibility("default"))) int
vraxsim_open(const char* path, char* message, std::size_t size)
{
    if (std::strstr(path, "bad") == nullptr)
        return 0;
    std::snprintf(message, size, "%s:3: ports: a number was expected", path);
    return 1;
}
#endif
