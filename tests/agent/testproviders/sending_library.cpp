// A library with indications to start and stop, as the environment variable TEST_INDICATIONS says: "fail",
// "hang".
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace
{

using Sink = void (*)(int level, const char* text);

constexpr int kCritical = 4;

std::atomic<Sink> sink{nullptr};

bool isToldTo(const char* what)
{
    const char* const told = std::getenv("TEST_INDICATIONS");
    return told != nullptr && std::strcmp(told, what) == 0;
}

} // namespace

extern "C"
{

    [[gnu::visibility("default")]] void cim_log_configure(int, Sink to)
    {
        sink = to;
    }

    [[gnu::visibility("default")]] int vrax_start_indications()
    {
        const char* const ca = std::getenv("VRAX_INDICATION_CA");
        sink.load()(kCritical, ca != nullptr ? ca : "indications start");
        return isToldTo("fail") ? 7 : 0;
    }

    [[gnu::visibility("default")]] int vrax_stop_indications()
    {
        sink.load()(kCritical, "indications stop");
        while (isToldTo("hang"))
            pause();
        return 0;
    }
}
