// The switch's part of a scrape: each class read once, each family written as soon as its class is there.
#ifndef AGENT_METRICS_SWITCHMETRICS_H
#define AGENT_METRICS_SWITCHMETRICS_H

#include "agent/metrics/SwitchReader.h"
#include "agent/metrics/SwitchRows.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace cimd
{

// How the reading of a class went.
struct ClassRead
{
    std::string className;
    std::string fault; ///< empty: none
    std::chrono::microseconds time{0};
};

class SwitchMetrics
{
  public:
    // The arguments outlive the object.
    SwitchMetrics(const SwitchReader& reader, OpenMetricsWriter& out) : _reader(reader), _out(out) {}

    // A class that cannot be read leaves its families without samples. Throws AnswerClosed.
    std::vector<ClassRead> write();

  private:
    template <class Take>
    bool read(const std::string& className, const std::vector<CimName>& properties, Take take);
    SwitchRow rowOf(const Instance& instance, const SwitchClass& table);
    SwitchRow switchRow(const Instance& instance);
    SwitchRow portRow(const Instance& instance) const;
    SwitchRow partRow(const Instance& instance, const char* label) const;
    std::string nameOf(const std::string& wwn) const;
    void writeInfo(const MetricFamily& family, const SwitchRows& rows);
    void writeLogIns();

    const SwitchReader& _reader;
    OpenMetricsWriter& _out;
    std::map<std::uint64_t, std::string> _switches; // names by World Wide Name
    std::optional<SwitchRows> _ports;
    std::vector<ClassRead> _reads;
};

} // namespace cimd

#endif
