// Measures and prints the figures of the benchmarks.
#include "tests/bench/report.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <utility>

#include <malloc.h>

namespace bench
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr double kRoundSeconds = 0.1;
constexpr int kRounds = 5;
constexpr int kPreparedCalls = 25;

double seconds(Clock::duration duration)
{
    return std::chrono::duration<double>(duration).count();
}

// Processor time of this thread.
double threadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

} // namespace

double secondsPerCall(const std::function<void()>& run)
{
    double best = 0;
    for (int round = 0; round < kRounds; ++round)
    {
        Clock::duration spent{};
        std::size_t calls = 0;
        do
        {
            const Clock::time_point start = Clock::now();
            run();
            spent += Clock::now() - start;
            ++calls;
        } while (seconds(spent) < kRoundSeconds);
        const double each = seconds(spent) / static_cast<double>(calls);
        best = round == 0 ? each : std::min(best, each);
    }
    return best;
}

double processorSeconds(const std::function<void()>& run, const std::function<void()>& prepare)
{
    double best = 0;
    for (int call = 0; call < kPreparedCalls; ++call)
    {
        prepare();
        const double start = threadSeconds();
        run();
        const double each = threadSeconds() - start;
        best = call == 0 ? each : std::min(best, each);
    }
    return best;
}

std::size_t heapGrowth(const std::function<std::function<void()>()>& make)
{
    malloc_trim(0);
    const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
    const std::function<void()> release = make();
    const std::size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
    release();
    return after > before ? after - before : 0;
}

Table::Table(std::string title, std::string size, std::string unit)
    : _title(std::move(title)), _size(std::move(size)), _unit(std::move(unit))
{
}

void Table::print() const
{
    std::printf("\n%s\n  %10s  %14s  %7s\n", _title.c_str(), _size.c_str(), _unit.c_str(), "ratio");
    double previous = 0;
    for (const Row& row : _rows)
    {
        std::printf("  %10zu  %14.3f  ", row.size, row.value);
        if (previous > 0)
            std::printf("%7.2f", row.value / previous);
        else
            std::printf("%7s", "");
        std::printf("  %s\n", row.remark.c_str());
        previous = row.value;
    }
    std::fflush(stdout);
}

void Table::row(std::size_t size, double valuePerUnit, const std::string& remark)
{
    _rows.push_back({size, valuePerUnit, remark});
}

} // namespace bench
