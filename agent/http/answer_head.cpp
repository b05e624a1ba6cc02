// Writing status lines and headers.
#include "agent/http/answer_head.h"

#include "agent/http/cim_headers.h"

#include <ctime>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::pair<unsigned, const char*> kPhrases[] = {
    {200, "OK"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {406, "Not Acceptable"},
    {408, "Request Timeout"},
    {413, "Content Too Large"},
    {414, "URI Too Long"},
    {415, "Unsupported Media Type"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {503, "Service Unavailable"},
    {505, "HTTP Version Not Supported"},
    {510, "Not Extended"},
};

const char* phraseOf(unsigned status)
{
    for (const auto& [known, phrase] : kPhrases)
        if (known == status)
            return phrase;
    return "Unknown";
}

// "Sun, 06 Nov 1994 08:49:37 GMT"
std::string dateText()
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    char text[64];
    return {text, std::strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S GMT", &parts)};
}

} // namespace

std::string answerHead(const HttpResponse& answer, std::optional<std::size_t> length, const AnswerForm& form)
{
    std::string head = "HTTP/1.1 " + std::to_string(answer.status) + ' ' + phraseOf(answer.status) + "\r\n";
    const auto add = [&head](std::string_view name, std::string_view value)
    { head.append(name).append(": ").append(value).append("\r\n"); };
    if (form.closes)
        add("Connection", "close");
    else if (form.isOld)
        add("Connection", "Keep-Alive");
    if (length)
        add("Content-Length", std::to_string(*length));
    else if (!form.isOld)
        add("Transfer-Encoding", "chunked");
    add("Date", dateText());
    add("Server", "cimd/" CIMD_VERSION);
    for (const auto& [name, value] : answer.headers)
        add(name, value);
    if (!length && form.takesTrailers)
        add("Trailer", kFailureTrailers);
    return head + "\r\n";
}

} // namespace cimd
