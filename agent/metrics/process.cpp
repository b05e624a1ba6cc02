// Memory, processor time and files, from /proc.
#include "agent/metrics/process.h"

#include <cstddef>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>

namespace cimd
{

namespace
{

constexpr std::uint64_t kMicrosPerSecond = 1000000;
constexpr std::uint64_t kNanosPerMicro = 1000;

// Time of all threads; a null if the system does not tell.
Decimal processorTime()
{
    timespec time{};
    if (clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time) != 0)
        return {0, 0, false, true};
    return {static_cast<std::uint64_t>(time.tv_sec) * kMicrosPerSecond +
                static_cast<std::uint64_t>(time.tv_nsec) / kNanosPerMicro,
            kMicro};
}

std::uint64_t openFiles()
{
    std::error_code error;
    const std::filesystem::directory_iterator files("/proc/self/fd", error);
    return error ? 0 : static_cast<std::uint64_t>(std::distance(begin(files), end(files)));
}

} // namespace

void writeProcess(OpenMetricsWriter& out)
{
    std::uint64_t pages = 0;
    std::uint64_t resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    const auto pageBytes = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
    out.single({"process_resident_memory_bytes", kGauge, "bytes", "Memory that the process has in RAM."},
               resident * pageBytes);
    out.single({"process_virtual_memory_bytes", kGauge, "bytes", "Addresses that the process has in use."},
               pages * pageBytes);
    out.begin({"process_cpu_seconds", MetricType::Counter, "seconds", "Processor time that was used."});
    out.sample({}, processorTime());
    out.single({"process_open_fds", kGauge, "", "Open files, sockets among them."}, openFiles());
}

} // namespace cimd
