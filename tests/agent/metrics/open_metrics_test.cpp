// The form of the text: numbers that lose nothing, escapes, metadata, and that it leaves while it grows.
#include "agent/metrics/SwitchRows.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

// Takes the body whenever it is offered.
class Way : public AnswerStream
{
  public:
    void flush(HttpResponse& response) override
    {
        text += response.body;
        response.body.clear();
    }
    std::size_t taken() const override { return text.size(); }
    void whenLate(std::function<HttpResponse()>) override {}

    std::string text;
};

TEST(OpenMetricsTest, NumbersLoseNothing)
{
    const struct
    {
        Decimal number;
        const char* text;
    } rows[] = {
        {{0}, "0"},
        {{UINT64_MAX}, "18446744073709551615"},
        {{2847, -2}, "28.47"},
        {{7, -2}, "0.07"},
        {{7, -2, true}, "-0.07"},
        {{0, -3, true}, "0.000"},
        {{150000, -3}, "150.000"},
        {{12, 3}, "12000"},
        {{0, 3}, "0"},
        {{5, 99}, "5e99"},
        {{5, -99, true}, "-5e-99"},
    };
    for (const auto& row : rows)
    {
        std::string text;
        appendDecimal(text, row.number);
        EXPECT_EQ(row.text, text);
    }
    const CimValue least = CimValue::sint64(INT64_MIN);
    std::string text;
    appendDecimal(text, numberOf(&least, -2));
    EXPECT_EQ("-92233720368547758.08", text);
}

TEST(OpenMetricsTest, EscapesWhatWouldEndALabelAndLeavesNoBytesThatAreNoText)
{
    std::string labels;
    appendLabel(labels, "a", "\\ \" \n } , é \t");
    appendLabel(labels, "b", "\xC3|\xFF|\xED\xA0\x80");
    EXPECT_EQ("a=\"\\\\ \\\" \\n } , é \t\",b=\"\uFFFD|\uFFFD|\uFFFD\uFFFD\uFFFD\"", labels);
}

TEST(OpenMetricsTest, WritesFamiliesAsTheyAreDeclared)
{
    HttpResponse response;
    Way way;
    OpenMetricsWriter out(response, way);
    out.begin({"x_bytes", MetricType::Counter, "bytes", "What\\is it."});
    out.sample("a=\"1\"", {5});
    out.sample("a=\"2\"", {5, 0, false, true});
    EXPECT_EQ("", response.body) << "what is written is offered at once";
    out.begin({"x", MetricType::Info, "", "X."});
    out.sample("v=\"1\"", {1});
    out.begin({"x_seconds", MetricType::Histogram, "seconds", "Time."});
    out.part("_bucket", "le=\"+Inf\"", {2});
    out.single({"y", MetricType::Gauge, "", "Y."}, 3);
    out.end();
    EXPECT_EQ("# TYPE x_bytes counter\n# UNIT x_bytes bytes\n# HELP x_bytes What\\\\is it.\n"
              "x_bytes_total{a=\"1\"} 5\n"
              "# TYPE x info\n# HELP x X.\nx_info{v=\"1\"} 1\n"
              "# TYPE x_seconds histogram\n# UNIT x_seconds seconds\n# HELP x_seconds Time.\n"
              "x_seconds_bucket{le=\"+Inf\"} 2\n"
              "# TYPE y gauge\n# HELP y Y.\ny 3\n# EOF\n",
              way.text + response.body);
}

TEST(SwitchRowsTest, FindsPortsByWorldWideNameInAnyLetterCase)
{
    SwitchRows ports(switchClasses().front());
    const char* const names[] = {"B0:2", "a0:2", "A0:1", "7"};
    for (const char* name : names)
    {
        SwitchRow row;
        row.key = portKeyOf(name);
        row.labels = name;
        ports.add(std::move(row), Instance());
    }
    ports.sort();
    const auto found = [&](const char* name)
    {
        const SwitchRow* const row = ports.find(portKeyOf(name));
        return row != nullptr ? row->labels : "none";
    };
    EXPECT_EQ("a0:2", found("VRAX:FCPortStatistics:A0:2"));
    EXPECT_EQ("B0:2", found("b0:2"));
    EXPECT_EQ("A0:1", found("a0:1"));
    EXPECT_EQ("7", found("7"));
    for (const char* other : {"a0:3", "c0:1", "", "a0:", "a0:no", "a0:1ffffffffffffffff"})
        EXPECT_EQ("none", found(other)) << other;
}

// What may change at a port must not begin a new counter.
TEST(SwitchRowsTest, CountersHaveTheLabelsThatLast)
{
    SwitchRows ports(switchClasses().at(2));
    SwitchRow row;
    row.labels = "wwn=\"a\",type=\"F\"";
    row.lasting = row.labels.find(',');
    Instance statistics("VRAX_FCPortStatistics");
    statistics.set("BytesReceived", CimValue::uint64(5));
    ports.add(std::move(row), statistics);
    HttpResponse response;
    Way way;
    OpenMetricsWriter out(response, way);
    ports.write(out);
    EXPECT_NE(std::string::npos, way.text.find("\nvrax_port_received_bytes_total{wwn=\"a\"} 5\n"));
}

} // namespace
} // namespace cimd
