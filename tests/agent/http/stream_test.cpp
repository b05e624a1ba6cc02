// Answers that leave while they are made: chunks, slow clients, and ends before the end.
#include "tests/agent/http/ServerFixture.h"

#include <atomic>

namespace cimd
{
namespace
{

constexpr std::size_t kPiece = 1000;

std::string pieces(std::size_t count)
{
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += std::string(kPiece, static_cast<char>('a' + i % 26));
    return all;
}

// Answers with as many pieces as the body says.
HttpResponse countedPieces(HttpRequest& request, AnswerStream& stream)
{
    HttpResponse response{200, {{"X-Kind", "pieces"}}, {}};
    const std::size_t count = std::stoul(request.body);
    for (std::size_t i = 0; i < count; ++i)
    {
        response.body += std::string(kPiece, static_cast<char>('a' + i % 26));
        stream.flush(response);
    }
    return response;
}

class StreamTest : public ServerFixture
{
  protected:
    StreamTest()
    {
        limits.chunkBytes = 4 * kPiece;
        limits.unsentBytes = 10 * kPiece;
    }

    // Makes an answer without end, and says why it stopped.
    void startEndless()
    {
        start(
            [this](HttpRequest&, AnswerStream& stream)
            {
                try
                {
                    for (HttpResponse response;; taken = stream.taken())
                    {
                        response.body += std::string(10 * kPiece, 'x');
                        stream.flush(response);
                    }
                }
                catch (const AnswerClosed& closed)
                {
                    reason.set_value(closed.what());
                }
                return HttpResponse();
            });
    }

    std::atomic<std::size_t> taken{0}; // of the endless answer
    std::promise<std::string> reason;
};

TEST_F(StreamTest, LeavesShortAnswersWholeAndLongOnesInChunks)
{
    start(countedPieces);
    RawClient client(port);
    for (const std::size_t count : {0U, 3U, 4U, 5U, 100U, 3000U, 1U})
    {
        const RawResponse response = client.ask(post(std::to_string(count)));
        EXPECT_EQ(200, response.status);
        EXPECT_EQ("pieces", response.header("X-Kind"));
        EXPECT_TRUE(response.isComplete) << count;
        EXPECT_EQ(pieces(count), response.body) << count;
        const bool isShort = count < 4;
        EXPECT_EQ(isShort ? std::to_string(count * kPiece) : "", response.header("Content-Length"));
        EXPECT_EQ(isShort ? "" : "chunked", response.header("Transfer-Encoding"));
        EXPECT_EQ("", response.header("Trailer"));
    }
}

TEST_F(StreamTest, SendsHeadAndFirstChunkInOneWrite)
{
    start(
        [this](HttpRequest& request, AnswerStream& stream)
        {
            request.body = "4";
            HttpResponse response = countedPieces(request, stream);
            gate.wait();
            return response;
        });
    RawClient client(port);
    client.send(post(""));
    const std::string first = client.receiveOnce();
    EXPECT_NE(std::string::npos, first.find("\r\n\r\nfa0\r\n" + pieces(4) + "\r\n")) << first.substr(0, 300);
}

TEST_F(StreamTest, EndsTheConnectionAfterAnAnswerToAnOldClient)
{
    start(countedPieces);
    RawClient client(port);
    client.send("POST /cimom HTTP/1.0\r\nContent-Length: 3\r\n\r\n100");
    std::string all;
    for (std::string part; !(part = client.receiveOnce()).empty();)
        all += part;
    EXPECT_EQ(std::string::npos, all.find("chunked"));
    EXPECT_EQ(pieces(100), all.substr(all.find("\r\n\r\n") + 4));
}

TEST_F(StreamTest, DoesNotMakeAnOperationWaitForItsClient)
{
    constexpr std::size_t kCount = 20'000; // more than the kernel takes
    std::promise<void> made;
    start(
        [&](HttpRequest& request, AnswerStream& stream)
        {
            HttpResponse response = countedPieces(request, stream);
            made.set_value();
            return response;
        });
    RawClient client(port);
    client.send(post(std::to_string(kCount)));
    made.get_future().wait();
    const RawResponse response = client.receive();
    EXPECT_TRUE(response.isComplete);
    EXPECT_TRUE(pieces(kCount) == response.body);
    server.reset(); // before what its handler uses
}

TEST_F(StreamTest, WaitsForItsClientWhereThereIsNoRoomForFiles)
{
    spoolDirectory = "/nowhere/to/be";
    start(countedPieces);
    EXPECT_TRUE(pieces(20'000) == ask(post("20000")).body);
}

TEST_F(StreamTest, WaitsForASlowClientAndStopsForOneThatLeaves)
{
    limits.answerFileBytes = 100 * kPiece;
    startEndless();
    {
        RawClient client(port);
        client.send(post(""));
        client.receiveOnce();
    }
    EXPECT_EQ("the client has gone", reason.get_future().get());
    EXPECT_LT(taken, 64U * 1024 * 1024) << "what buffers hold, not what an endless handler makes";
}

TEST_F(StreamTest, StopsWithinAChunkForAClientThatHasLeft)
{
    start(
        [this](HttpRequest&, AnswerStream& stream)
        {
            HttpResponse response{200, {}, pieces(4)};
            const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
            try
            {
                for (stream.flush(response); std::chrono::steady_clock::now() < end;)
                    stream.flush(response);
                reason.set_value("it went on");
            }
            catch (const AnswerClosed& closed)
            {
                reason.set_value(closed.what());
            }
            return response;
        });
    {
        RawClient client(port);
        client.send(post(""));
        client.hears(std::chrono::seconds(10)); // and does not read
    }
    EXPECT_EQ("the client has gone", reason.get_future().get());
}

TEST_F(StreamTest, BearsWithAClientThatTakesLittleAtATime)
{
    limits.answerFileBytes = 64 * 1024 * 1024;          // never read to its end
    limits.slowClientSeconds = std::chrono::seconds(6); // in all more than that, at once much less
    limits.requestSeconds = std::chrono::seconds(1);
    std::future<std::string> ended = reason.get_future();
    startEndless();
    {
        RawClient client(port);
        client.send(post(""));
        for (int round = 0; round < 6; ++round)
        {
            for (std::size_t got = 0, piece = 1; piece != 0 && got < 6'000'000; got += piece)
                piece = client.receiveOnce().size();
            // A second passes until the server has enough of half a request.
            EXPECT_EQ(408, ask("POST").status);
        }
        EXPECT_EQ(std::future_status::timeout, ended.wait_for(std::chrono::seconds(0)));
    }
    EXPECT_EQ("the client has gone", ended.get());
}

TEST_F(StreamTest, GivesThePlaceOfAClientThatIsLongBehindToANewOne)
{
    limits.connections = 1;
    limits.answerFileBytes = 64 * 1024 * 1024;
    limits.slowClientSeconds = std::chrono::seconds(1);
    startEndless();
    RawClient behind(port);
    behind.send(post(""));
    RawClient fresh(port);
    fresh.send("no request\r\n");
    for (std::size_t piece = 1; piece != 0 && !fresh.hears(std::chrono::milliseconds(100));)
        for (std::size_t got = 0; piece != 0 && got < 6'000'000; got += piece)
            piece = behind.receiveOnce().size();
    EXPECT_EQ(400, fresh.receive().status);
    EXPECT_EQ("the client has gone", reason.get_future().get());
}

TEST_F(StreamTest, HangsUpOnAClientThatTakesNothing)
{
    limits.slowClientSeconds = std::chrono::seconds(0);
    limits.answerFileBytes = 0;
    startEndless();
    RawClient client(port);
    client.send(post(""));
    EXPECT_EQ("the client took nothing for 0 s", reason.get_future().get());
    EXPECT_FALSE(client.receive().isComplete);
}

TEST_F(StreamTest, TellsTheClientAsItCanWhatFailedMidway)
{
    const struct
    {
        const char* name;
        const char* request;  // headers
        bool throws;          // instead of saying why
        std::string trailers; // none: the answer breaks off
    } rows[] = {
        {"said",
         "TE: chunked, Trailers;q=0.5\r\n",
         false,
         "CIMStatusCode: 1\nCIMStatusCodeDescription: switch%3A gone\n"},
        {"said to one that takes no trailers", "TE: chunked\r\n", false, ""},
        {"thrown",
         "TE: trailers\r\n",
         true,
         "CIMStatusCode: 1\nCIMStatusCodeDescription: the server failed to answer\n"},
        {"thrown at one that takes no trailers", "", true, ""},
    };
    start(
        [](HttpRequest& request, AnswerStream& stream)
        {
            const bool throws = request.body == "throw";
            request.body = "20";
            HttpResponse response = countedPieces(request, stream);
            response.body = "an error that the client must not take for an answer";
            response.trailers = {{"CIMStatusCode", "1"}, {"CIMStatusCodeDescription", "switch%3A gone"}};
            if (throws)
                throw std::runtime_error("broken");
            return response;
        });
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.name);
        const bool isTold = !row.trailers.empty();
        const std::string request = post(row.throws ? "throw" : "", row.request);
        RawClient client(port);
        const RawResponse response = client.ask(request);
        EXPECT_EQ(200, response.status);
        EXPECT_EQ(pieces(20), response.body);
        EXPECT_EQ(isTold, response.isComplete);
        EXPECT_EQ(row.trailers, response.trailers);
        EXPECT_EQ(isTold ? "CIMStatusCode, CIMStatusCodeDescription" : "", response.header("Trailer"));
        if (isTold)
            EXPECT_TRUE(client.ask(request).isComplete) << "the connection is usable";
        else
            EXPECT_NO_THROW(client.awaitClose());
    }
}

} // namespace
} // namespace cimd
