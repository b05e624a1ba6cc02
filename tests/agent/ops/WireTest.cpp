// Requests and answers as pairs of files: what a client sends and what must come back, to the byte.
//
// A .request file holds header lines, an empty line and the body. The .answer file beside it holds the HTTP
// status, the header lines that matter and the body; where two tags meet in the answer, the file has a line
// break for people.
#include "agent/ops/FrontEnd.h"

#include "agent/log/Log.h"
#include "tests/agent/http/WholeAnswer.h"
#include "tests/agent/ops/FakeService.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace cimd
{
namespace
{

namespace fs = std::filesystem;

std::string contents(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    EXPECT_TRUE(in) << file;
    return text.str();
}

HttpRequest requestOf(const std::string& text)
{
    HttpRequest request;
    request.method = "POST";
    request.target = "/cimom";
    request.peer = "192.0.2.7:40000";
    request.headers = {
        {"Host", "switch:5988"}, {"Content-Type", "application/xml"}, {"CIMOperation", "MethodCall"}};
    const std::size_t end = text.find("\n\n");
    std::istringstream head(text.substr(0, end));
    for (std::string line; std::getline(head, line);)
        request.headers.emplace_back(line.substr(0, line.find(": ")), line.substr(line.find(": ") + 2));
    request.body = text.substr(end + 2);
    return request;
}

std::string answerText(const HttpResponse& response)
{
    std::string text = "HTTP " + std::to_string(response.status) + "\n";
    for (const HttpHeader& header : response.headers)
        text += header.first + ": " + header.second + "\n";
    text += "\n";
    for (const char c : response.body)
        text += c == '<' && text.back() == '>' ? "\n<" : std::string(1, c);
    return text;
}

std::vector<std::string> wireCases()
{
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(CIMD_WIRE_DIR))
        if (entry.path().extension() == ".request")
            names.push_back(entry.path().stem());
    std::sort(names.begin(), names.end());
    return names;
}

class WireTest : public ::testing::TestWithParam<std::string>
{
  protected:
    void SetUp() override { setLogLevel(LogLevel::Error); }
};

TEST_P(WireTest, AnswersAsRecorded)
{
    FakeService service;
    FrontEnd frontEnd(service, Limits());
    const fs::path base = fs::path(CIMD_WIRE_DIR) / GetParam();
    HttpRequest request = requestOf(contents(base.string() + ".request"));
    WholeAnswer whole;
    const std::optional<HttpResponse> refused = frontEnd.refuse(request).response;
    const std::string answer = answerText(refused ? *refused : frontEnd.answer(request, whole));
    if (std::getenv("CIMD_WIRE_RECORD") != nullptr)
    {
        std::ofstream(base.string() + ".answer", std::ios::binary) << answer;
        GTEST_SKIP() << "recorded; read the difference before it is committed";
    }
    EXPECT_EQ(contents(base.string() + ".answer"), answer);
}

TEST(FrontEndLimits, AnswerWhatGoesBeyondThem)
{
    setLogLevel(LogLevel::Error);
    const struct
    {
        const char* request;
        std::size_t Limits::*limit;
        std::size_t value;
        const char* complaint;
    } rows[] = {
        {"EnumerateInstances", &Limits::parameters, 2, "more than 2 parameters"},
        {"EnumerateInstances", &Limits::instanceProperties, 0, "PropertyList names more than 0 properties"},
        {"GetInstanceEveryKeyForm", &Limits::pathKeys, 7, "has more than 7 keys"},
        {"CreateInstance", &Limits::instanceProperties, 3, "has more than 3 properties"},
    };
    for (const auto& row : rows)
    {
        Limits limits;
        limits.*row.limit = row.value;
        FakeService service;
        HttpRequest request = requestOf(contents(fs::path(CIMD_WIRE_DIR) / row.request += ".request"));
        WholeAnswer whole;
        const std::string answer = FrontEnd(service, limits).answer(request, whole).body;
        EXPECT_NE(answer.find("CODE=\"4\""), std::string::npos) << answer;
        EXPECT_NE(answer.find(row.complaint), std::string::npos) << answer;
    }
}

INSTANTIATE_TEST_SUITE_P(Wire,
                         WireTest,
                         ::testing::ValuesIn(wireCases()),
                         [](const auto& row) { return row.param; });

} // namespace
} // namespace cimd
