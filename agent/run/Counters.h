// What was asked for since the start, per class and operation.
#ifndef AGENT_RUN_COUNTERS_H
#define AGENT_RUN_COUNTERS_H

#include "agent/cim/CimName.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cimd
{

// Has rows for known classes only, so that clients cannot make it grow. Any number of threads may count; they
// meet only over the same class, for the time of a few additions.
class Counters
{
  public:
    // Requests about other classes are counted as being about "(unknown)", those about none as "-".
    explicit Counters(const std::vector<CimName>& classes);
    ~Counters();
    Counters(const Counters&) = delete;
    Counters& operator=(const Counters&) = delete;

    struct Call
    {
        std::string_view operation; ///< One of a fixed set of texts that live on; empty: unknown.
        std::string_view className;
        bool hasFailed;
        std::chrono::microseconds time;
        std::uint64_t results; ///< Instances, paths, classes ...
        std::uint64_t bytes;   ///< Of the answer's body.
    };
    void add(const Call& call);

    // Steps of a histogram of times, in ascending order.
    static constexpr std::array<std::chrono::microseconds, 7> kTimeSteps{std::chrono::milliseconds(1),
                                                                         std::chrono::milliseconds(5),
                                                                         std::chrono::milliseconds(25),
                                                                         std::chrono::milliseconds(100),
                                                                         std::chrono::milliseconds(500),
                                                                         std::chrono::milliseconds(2500),
                                                                         std::chrono::milliseconds(10000)};

    // The calls of one operation.
    struct Row
    {
        std::string_view operation;
        std::uint64_t calls = 0;
        std::uint64_t errors = 0;
        std::chrono::microseconds total{0};
        std::chrono::microseconds longest{0};
        std::uint64_t results = 0;
        std::uint64_t bytes = 0;
        // Calls that took at most that long, and longer than the step before allows.
        std::array<std::uint64_t, kTimeSteps.size()> steps{};

        void add(const Row& other);
    };
    struct ClassRow
    {
        std::string className;
        Row row;
    };
    // Classes in the order given, their operations in order of first use; none that were not used.
    std::vector<ClassRow> rows() const;

    // Lines of a table of the rows, and a sum.
    std::vector<std::string> table() const;

  private:
    struct ClassRows;
    ClassRows& rowsOf(std::string_view className);

    std::vector<std::unique_ptr<ClassRows>> _all; // the last two: no class, other classes
    std::unordered_map<CimName, ClassRows*> _byName;
};

} // namespace cimd

#endif
