// What was asked for since the start, per class and operation.
#ifndef AGENT_RUN_COUNTERS_H
#define AGENT_RUN_COUNTERS_H

#include "agent/cim/CimName.h"

#include <chrono>
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

    // Lines of a table: classes in the order given, their operations in order of first use, and a sum.
    std::vector<std::string> table() const;

  private:
    struct ClassRows;
    ClassRows& rowsOf(std::string_view className);

    std::vector<std::unique_ptr<ClassRows>> _all; // the last two: no class, other classes
    std::unordered_map<CimName, ClassRows*> _byName;
};

} // namespace cimd

#endif
