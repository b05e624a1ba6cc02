// The instances of one class as a scrape keeps them: labels and numbers.
#ifndef AGENT_METRICS_SWITCHROWS_H
#define AGENT_METRICS_SWITCHROWS_H

#include "agent/metrics/SwitchReader.h"
#include "agent/metrics/switch_tables.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

// A port anywhere: its system, a switch or the fabric, and the port itself, by World Wide Name.
struct PortKey
{
    std::uint64_t system = 0;
    std::uint64_t port = 0; ///< 0: not known

    friend bool operator<(const PortKey& a, const PortKey& b)
    {
        return a.system < b.system || (a.system == b.system && a.port < b.port);
    }
};

// A World Wide Name in hexadecimal digits; 0 for another text.
std::uint64_t wwnOf(std::string_view text);

// Key of what is named "...switch:port".
PortKey portKeyOf(std::string_view name);

// The part of a text behind its last colon.
std::string_view lastPart(std::string_view text);

struct SwitchRow
{
    struct States
    {
        std::vector<std::string> possible;
        std::string present;
    };

    PortKey key;
    std::string labels;
    std::size_t lasting = 0; ///< of the labels: those that stay while states change
    std::string more;        ///< further labels, which only an info has
    bool isDevice = false;   ///< a port that is no switch's
    std::unique_ptr<States> states;
};

// Rows and, for each, a number for each family of the class.
class SwitchRows
{
  public:
    explicit SwitchRows(const SwitchClass& table) : _table(&table) {}

    // What to ask for so that the families can be told.
    std::vector<CimName> properties() const;
    void add(SwitchRow row, const Instance& instance);
    // By key; find() needs it.
    void sort();

    // Null if there is none.
    const SwitchRow* find(const PortKey& key) const;
    const std::vector<SwitchRow>& all() const { return _rows; }

    void write(OpenMetricsWriter& out) const;

  private:
    void writeStates(OpenMetricsWriter& out, const char* label) const;

    const SwitchClass* _table; // outlives the object
    std::vector<SwitchRow> _rows;
    std::vector<Decimal> _numbers; // of each row, one for each family
    std::vector<std::size_t> _order;
};

} // namespace cimd

#endif
