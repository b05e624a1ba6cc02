// Writes OpenMetrics text, what Prometheus and its kin scrape.
#ifndef AGENT_METRICS_OPEN_METRICS_H
#define AGENT_METRICS_OPEN_METRICS_H

#include "agent/http/HttpHandler.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace cimd
{

// The content type of the text (OpenMetrics 1.0).
inline constexpr const char* kOpenMetricsType = "application/openmetrics-text; version=1.0.0; charset=utf-8";

enum class MetricType
{
    Counter,
    Gauge,
    Histogram,
    Info,    ///< labels that say something; its value is 1
    StateSet ///< a sample for each state: 1 for the present one, else 0
};

inline constexpr MetricType kCounter = MetricType::Counter;
inline constexpr MetricType kGauge = MetricType::Gauge;

// Samples of one name. The texts live on.
struct MetricFamily
{
    const char* name; ///< Without "_total" or "_info"; ends in "_" and the unit, if there is one.
    MetricType type;
    const char* unit; ///< "seconds", "bytes" ...; empty: none
    const char* help;
};

// A number as it was counted or measured: magnitude * 10^exponent. Texts of it lose nothing.
struct Decimal
{
    std::uint64_t magnitude = 0;
    std::int32_t exponent = 0;
    bool isNegative = false;
    bool isNull = false; ///< There is no number.
};

inline constexpr std::int32_t kMilli = -3; // exponents of prefixes
inline constexpr std::int32_t kMicro = -6;

// "28.47" for 2847 * 10^-2.
void appendDecimal(std::string& text, const Decimal& number);

// Adds `name="value"` to a list of labels. Backslash, quote and line feed in the value are escaped; what is
// not UTF-8 becomes U+FFFD.
void appendLabel(std::string& labels, std::string_view name, std::string_view value);

// Families come one after the other, each with its samples. The text leaves as it grows.
class OpenMetricsWriter
{
  public:
    // Writes to the body of `response`. Both outlive the object.
    OpenMetricsWriter(HttpResponse& response, AnswerStream& stream) : _response(response), _stream(stream) {}

    void begin(const MetricFamily& family);
    // `labels` as appendLabel() makes them, no two samples with the same; nothing for a null.
    void sample(std::string_view labels, const Decimal& value);
    // Of a histogram: "_bucket", "_sum", "_count".
    void part(std::string_view suffix, std::string_view labels, const Decimal& value);
    // The last word.
    void end() { _response.body += "# EOF\n"; }

    // Families of one sample.
    void single(const MetricFamily& family, std::uint64_t value);

  private:
    HttpResponse& _response;
    AnswerStream& _stream;
    std::string _name;
    std::string_view _suffix; // of the samples' names
};

} // namespace cimd

#endif
