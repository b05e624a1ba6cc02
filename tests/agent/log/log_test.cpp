// What the log makes of texts that others chose, and what the trace makes of answers in pieces.
#include "agent/log/log.h"

#include "agent/log/XmlTrace.h"
#include "agent/ops/TracedStream.h"
#include "tests/agent/pull/TemporaryDirectory.h"

#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>

namespace cimd
{
namespace
{

TEST(LogTest, LongNamesAreCutBetweenCharacters)
{
    const struct
    {
        const char* text;
        std::size_t most;
        const char* expected;
    } rows[] = {
        {"", 3, ""},
        {"abc", 3, "abc"},
        {"abcd", 3, "abc..."},
        {"ab\u00e9d", 3, "ab..."}, // two bytes
        {"ab\u00e9d", 4, "ab\u00e9..."},
        {"\U0001f600x", 3, "..."},      // four bytes
        {"\x80\x80\x80\x80", 2, "..."}, // no UTF-8 at all
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.expected, clipped(row.text, row.most)) << row.text << " " << row.most;
    EXPECT_EQ("Get Class: ", operationText("Get", "Class"));
    EXPECT_EQ("Get: ", operationText("Get", ""));
    EXPECT_EQ(std::string(128, 'o') + "... " + std::string(128, 'c') + "...: ",
              operationText(std::string(200, 'o'), std::string(200, 'c')));
}

TEST(LogTest, NobodyForgesALine)
{
    std::string got;
    setLogWriter([&](LogLevel, std::string_view line) { got = line; });
    setLogLevel(LogLevel::Warning);
    log(LogLevel::Info, "cim", "not at this level");
    EXPECT_EQ("", got);
    logAlways("notice", "cim", "one\n2026-01-31T12:00:00.000Z error x: two\x7f\x1b[2J ");
    setLogWriter({});
    EXPECT_TRUE(std::regex_match(
        got,
        std::regex(
            R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z notice cim: one 2026-01-31T12:00:00.000Z error x: two  \[2J)")))
        << got;
}

// Takes a body that has become long enough.
class FakeStream : public AnswerStream
{
  public:
    void flush(HttpResponse& response) override
    {
        if (response.body.size() < 4)
            return;
        _taken += response.body.size();
        response.body.clear();
    }
    std::size_t taken() const override { return _taken; }
    void whenLate(std::function<HttpResponse()> function) override { late = std::move(function); }

    std::function<HttpResponse()> late;

  private:
    std::size_t _taken = 0;
};

TEST(XmlTraceTest, HoldsWhatLeftAndNotWhatWasReplaced)
{
    const TemporaryDirectory directory;
    const std::string file = directory.path() + "/trace";
    std::ostringstream text;
    {
        XmlTrace trace(file);
        FakeStream stream;
        const std::string peer = "192.0.2.1:4000";
        TracedStream traced(stream, trace, peer);
        HttpResponse response;
        for (const char* item : {"a", "b", "cd", "e", "fghij", "kl"})
        {
            response.body += item;
            traced.flush(response);
        }
        response.body = "an error";
        traced.finish(response);
        EXPECT_EQ(10U, traced.taken());
        EXPECT_EQ(10U, stream.taken());

        FakeStream hasty;
        TracedStream late(hasty, trace, peer);
        late.whenLate([] { return HttpResponse{200, {}, "too late"}; });
        EXPECT_EQ("too late", hasty.late().body);
        late.finish(response);
        late.whenLate({});
        EXPECT_FALSE(hasty.late);
        text << std::ifstream(file).rdbuf();
    }
    const std::string about = " to 192\\.0\\.2\\.1:4000: ";
    const std::regex expected(
        "--- \\S+ part of the answer" + about + "4 bytes\nabcd\n--- \\S+ part of the answer" + about +
        "6 bytes\nefghij\n--- \\S+ rest of the answer" + about + "8 bytes\nan error\n--- \\S+ late answer" +
        about + "8 bytes\ntoo late\n--- \\S+ dropped answer" + about + "8 bytes\nan error\n");
    EXPECT_TRUE(std::regex_match(text.str(), expected)) << text.str();
}

} // namespace
} // namespace cimd
