// The form of OpenMetrics text: metadata, escapes, numbers.
#include "agent/metrics/open_metrics.h"

#include "xml/utf8.h"

#include <cstddef>

namespace cimd
{

namespace
{

constexpr std::int32_t kMostZeros = 20; // more make a number harder to read than an exponent does

const char* typeText(MetricType type)
{
    switch (type)
    {
    case MetricType::Counter:
        return "counter";
    case MetricType::Gauge:
        return "gauge";
    case MetricType::Histogram:
        return "histogram";
    case MetricType::Info:
        return "info";
    case MetricType::StateSet:
        return "stateset";
    }
    return "unknown";
}

const char* suffixOf(MetricType type)
{
    return type == MetricType::Counter ? "_total" : type == MetricType::Info ? "_info" : "";
}

void appendEscaped(std::string& text, std::string_view value)
{
    for (std::size_t at = 0; at < value.size();)
    {
        const char32_t character = cimxml::decodeUtf8(value, at);
        switch (character)
        {
        case U'\\':
            text += "\\\\";
            break;
        case U'"':
            text += "\\\"";
            break;
        case U'\n':
            text += "\\n";
            break;
        default:
            cimxml::appendUtf8(text, character == cimxml::kNoCharacter ? U'\uFFFD' : character);
        }
    }
}

} // namespace

void appendDecimal(std::string& text, const Decimal& number)
{
    if (number.isNegative && number.magnitude != 0)
        text += '-';
    std::string digits = std::to_string(number.magnitude);
    if (number.exponent > kMostZeros || number.exponent < -kMostZeros)
    {
        text += digits + 'e' + std::to_string(number.exponent);
        return;
    }
    if (number.exponent >= 0)
    {
        text += digits;
        text.append(number.magnitude != 0 ? static_cast<std::size_t>(number.exponent) : 0, '0');
        return;
    }
    const auto decimals = static_cast<std::size_t>(-number.exponent);
    if (digits.size() <= decimals)
        digits.insert(0, decimals + 1 - digits.size(), '0');
    text += digits.insert(digits.size() - decimals, 1, '.');
}

void appendLabel(std::string& labels, std::string_view name, std::string_view value)
{
    if (!labels.empty())
        labels += ',';
    labels.append(name) += "=\"";
    appendEscaped(labels, value);
    labels += '"';
}

void OpenMetricsWriter::begin(const MetricFamily& family)
{
    _name = family.name;
    _suffix = suffixOf(family.type);
    std::string& text = _response.body;
    text += "# TYPE " + _name + ' ' + typeText(family.type) + '\n';
    if (*family.unit != '\0')
        text += "# UNIT " + _name + ' ' + family.unit + '\n';
    text += "# HELP " + _name + ' ';
    appendEscaped(text, family.help);
    text += '\n';
}

void OpenMetricsWriter::sample(std::string_view labels, const Decimal& value)
{
    part(_suffix, labels, value);
}

void OpenMetricsWriter::part(std::string_view suffix, std::string_view labels, const Decimal& value)
{
    if (value.isNull)
        return;
    std::string& text = _response.body;
    text.append(_name).append(suffix);
    if (!labels.empty())
        text.append("{").append(labels).append("}");
    text += ' ';
    appendDecimal(text, value);
    text += '\n';
    _stream.flush(_response);
}

void OpenMetricsWriter::single(const MetricFamily& family, std::uint64_t value)
{
    begin(family);
    sample({}, {value});
}

} // namespace cimd
