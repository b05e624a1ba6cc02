// Fuzzes the way of an HTTP request, head and body, through the front end to the answer's text.
//
// The input is header lines, an empty line and the body. The classes are there but no provider is, so every
// operation ends in the agent.
#include "agent/log/log.h"
#include "agent/ops/FrontEnd.h"
#include "agent/service/AgentCore.h"
#include "agent/xml/ByteArrayPacker.h"
#include "agent/xml/XmlDocument.h"
#include "tests/fuzz/fuzz.h"

using namespace cimd;

namespace
{

// Nothing leaves early: the whole answer is looked at.
class Held : public AnswerStream
{
  public:
    void flush(HttpResponse&) override {}
    std::size_t taken() const override { return 0; }
    void whenLate(std::function<HttpResponse()>) override {}
};

struct Agent
{
    AgentCore core{ClassRepository::load(FUZZ_REPOSITORY), {}, "."};
    FrontEnd frontEnd{core.service(), Limits()};
};

HttpRequest requestOf(std::string_view text)
{
    HttpRequest request;
    request.method = "POST";
    request.target = "/cimom";
    request.peer = "192.0.2.7:40000";
    request.headers = {{"Host", "switch"}, {"Content-Type", "text/xml"}, {"CIMOperation", "MethodCall"}};
    while (!text.empty() && text.front() != '\n')
    {
        const auto [line, rest] = fuzz::splitLine(text);
        const std::size_t colon = std::min(line.find(": "), line.size());
        request.headers.emplace_back(line.substr(0, colon), line.substr(std::min(colon + 2, line.size())));
        text = rest;
    }
    request.body = text.substr(text.empty() ? 0 : 1);
    return request;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    setLogLevel(LogLevel::Error);
    static Agent agent;
    HttpRequest request = requestOf(fuzz::textOf(data, size));
    const Verdict verdict = agent.frontEnd.refuse(request);
    if (verdict.response)
        return 0;
    // As it arrives: in two parts.
    const std::string arrived = std::exchange(request.body, {});
    const std::size_t half = arrived.size() / 2;
    verdict.collect(request.body, arrived.substr(0, half));
    verdict.collect(request.body, arrived.substr(half));
    Held stream;
    HttpResponse response = agent.frontEnd.answer(request, stream);
    Limits unbounded;
    unbounded.xmlNodes = unbounded.xmlBytes = 16 * 1024 * 1024;
    if (response.status == 200)
        XmlDocument(packByteArrays(response.body), unbounded); // throws unless it is well-formed
    return 0;
}
