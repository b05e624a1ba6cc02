// Responses of libmicrohttpd made from ours.
#include "agent/http/queue_response.h"

#include "agent/cim/CimName.h"
#include "agent/http/cim_headers.h"
#include "agent/log/log.h"

#include <string>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::size_t kBlock = 32 * 1024; // what libmicrohttpd asks for at once where chunks do not limit it

struct FreeResponse
{
    void operator()(MHD_Response* response) const { MHD_destroy_response(response); }
};
using ResponsePtr = std::unique_ptr<MHD_Response, FreeResponse>;

// "TE: trailers", as one word of several.
bool takesTrailers(const HttpRequest& request)
{
    for (const HttpHeader& header : request.headers)
        if (equalNoCase(header.first, MHD_HTTP_HEADER_TE) && listsWord(header.second, "trailers"))
            return true;
    return false;
}

// A body on its way out.
struct Body
{
    std::shared_ptr<Exchange> exchange;
    bool hasTrailers;
    MHD_Response* response = nullptr;
};

ssize_t breakOff(const Body& body)
{
    const std::vector<HttpHeader> trailers = body.exchange->reply.takeTrailers();
    log(LogLevel::Warning,
        "http",
        body.exchange->request.peer + ": the answer broke off" +
            (trailers.empty() ? "" : ": " + trailers.back().second));
    if (!body.hasTrailers || trailers.empty())
        return MHD_CONTENT_READER_END_WITH_ERROR;
    for (const HttpHeader& trailer : trailers)
        if (MHD_add_response_footer(body.response, trailer.first.c_str(), trailer.second.c_str()) != MHD_YES)
            return MHD_CONTENT_READER_END_WITH_ERROR;
    return MHD_CONTENT_READER_END_OF_STREAM;
}

ssize_t readBody(void* self, std::uint64_t, char* to, size_t size)
{
    const auto& body = *static_cast<Body*>(self);
    switch (body.exchange->reply.read(to, size))
    {
    case Reply::Piece::Text:
        return static_cast<ssize_t>(size);
    case Reply::Piece::Nothing:
        return 0;
    case Reply::Piece::End:
        return MHD_CONTENT_READER_END_OF_STREAM;
    case Reply::Piece::Broken:
        break;
    }
    return breakOff(body);
}

MHD_Result queue(MHD_Connection* connection, const HttpResponse& head, MHD_Response* response, bool close)
{
    for (const HttpHeader& header : head.headers)
        if (MHD_add_response_header(response, header.first.c_str(), header.second.c_str()) != MHD_YES)
            return MHD_NO;
    if (close)
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONNECTION, "close");
    return MHD_queue_response(connection, head.status, response);
}

} // namespace

MHD_Result queueWhole(MHD_Connection* connection, HttpResponse&& answer, bool close)
{
    auto body = std::make_unique<std::string>(std::move(answer.body));
    const ResponsePtr response(MHD_create_response_from_buffer_with_free_callback_cls(
        body->size(), body->data(), [](void* text) { delete static_cast<std::string*>(text); }, body.get()));
    if (response == nullptr)
        return MHD_NO;
    body.release();
    return queue(connection, answer, response.get(), close);
}

MHD_Result
queueStream(MHD_Connection* connection, HttpResponse&& head, std::shared_ptr<Exchange> exchange, bool close)
{
    const bool hasTrailers = takesTrailers(exchange->request);
    auto body = std::make_unique<Body>(Body{std::move(exchange), hasTrailers});
    const ResponsePtr response(MHD_create_response_from_callback(MHD_SIZE_UNKNOWN,
                                                                 kBlock,
                                                                 &readBody,
                                                                 body.get(),
                                                                 [](void* self)
                                                                 { delete static_cast<Body*>(self); }));
    if (response == nullptr)
        return MHD_NO;
    body->response = response.get();
    body.release();
    if (hasTrailers)
        head.headers.emplace_back(MHD_HTTP_HEADER_TRAILER, kFailureTrailers);
    return queue(connection, head, response.get(), close);
}

} // namespace cimd
