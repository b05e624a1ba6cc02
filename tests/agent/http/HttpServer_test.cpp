// The HTTP server over real sockets: connections, limits, overload and stopping.
#include "tests/agent/http/ServerFixture.h"

#include <atomic>
#include <stdexcept>
#include <thread>

namespace cimd
{
namespace
{

constexpr std::size_t kBodyLimit = 1000;
constexpr std::size_t kLargeBytes = 5'000'000;

const std::string kHead = "POST /cimom HTTP/1.1\r\nHost: s\r\n";
const std::string kChunked = kHead + "Transfer-Encoding: chunked\r\n\r\n";
const std::string kChunk = "7d0\r\n" + std::string(2000, 'x') + "\r\n";

class HttpServerTest : public ServerFixture
{
  protected:
    // Answers with the body it got; some bodies mean more.
    void startEcho(const std::string& address = "127.0.0.1")
    {
        start(
            [this](HttpRequest& request, AnswerStream&) -> HttpResponse
            {
                if (request.body == "wait")
                    gate.wait();
                if (request.body == "throw")
                    throw std::runtime_error("broken");
                if (request.body == "large")
                    return {200, {}, std::string(kLargeBytes, 'x')};
                if (request.body == "peer")
                    return {200, {}, request.peer};
                return {200, {{"X-Body", "echo"}}, request.body};
            },
            {},
            address);
    }

    void startSmall()
    {
        limits.bodyBytes = kBodyLimit;
        limits.discardBytes = 100 * kBodyLimit;
        startEcho();
    }
};

TEST_F(HttpServerTest, KeepsTheConnectionForFurtherRequests)
{
    startEcho();
    RawClient client(port);
    for (const char* body : {"one", "", "three"})
    {
        const RawResponse response = client.ask(post(body));
        EXPECT_EQ(200, response.status);
        EXPECT_EQ(body, response.body);
        EXPECT_EQ("echo", response.header("X-Body"));
        EXPECT_EQ("", response.header("Connection"));
    }
    EXPECT_EQ(kLargeBytes, client.ask(post("large")).body.size());
    client.send(post("first") + post("second") + post("third"));
    for (const char* body : {"first", "second", "third"})
        EXPECT_EQ(body, client.receive().body);
    for (const char byte : post("slow"))
        client.send(std::string_view(&byte, 1));
    EXPECT_EQ("slow", client.receive().body);
    EXPECT_EQ("abcde", client.ask(kChunked + "3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n").body);
    EXPECT_EQ(500, client.ask(post("throw")).status);
    EXPECT_EQ(0U, client.ask(post("peer")).body.find("127.0.0.1:"));
}

TEST_F(HttpServerTest, TakesABodyThatItWouldNotReadInVain)
{
    limits.discardBytes = kBodyLimit;
    startEcho();
    RawClient client(port);
    EXPECT_EQ(3 * kBodyLimit, client.ask(post(std::string(3 * kBodyLimit, 'x'))).body.size());
}

TEST_F(HttpServerTest, ListensOnIpv6)
{
    try
    {
        startEcho("[::1]");
    }
    catch (const std::runtime_error& error)
    {
        GTEST_SKIP() << "this machine has no IPv6 loopback: " << error.what();
    }
    EXPECT_EQ(0U, RawClient(port, true).ask(post("peer")).body.find("[::1]:"));
}

TEST_F(HttpServerTest, RefusesWhatItWillNotRead)
{
    const struct
    {
        std::string bytes;
        int status;
        bool usableAfterwards;
    } rows[] = {
        {post(std::string(kBodyLimit + 1, 'x')), 413, true},
        {post(std::string(kBodyLimit * 90, 'x')), 413, true},
        {kChunked + kChunk + "0\r\n\r\n", 413, true},
        {kHead + "Content-Length: 100001\r\n\r\n", 413, false},
        {kHead + "Expect: 100-continue\r\nContent-Length: 1001\r\n\r\n", 413, false},
        {kHead + "Content-Length: 99999999999999999999999\r\n\r\n", 413, false},
        // The end of the body could not be told.
        {kHead + "Transfer-Encoding: gzip\r\n\r\n5\r\nhello", 501, false},
        {kHead + "Transfer-Encoding: gzip, chunked\r\n\r\n5\r\nhello", 501, false},
        {kHead + "Transfer-Encoding: identity\r\n\r\n5\r\nhello", 501, false},
        {kHead + "Content-Length: 4\r\nContent-Length: 400\r\n\r\nbody", 400, false},
        {kHead + "Content-Length: 4\r\nTransfer-Encoding: chunked\r\n\r\nbody", 400, false},
        {kHead + "Transfer-Encoding: chunked\r\nContent-Length: 4\r\n\r\nbody", 400, false},
        {kHead + "Content-Length: +4\r\n\r\nbody", 400, false},
        {kHead + "Content-Length: 4, 4\r\n\r\nbody", 400, false},
        {"POST / HTTP/1.0\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n", 400, false},
        {kChunked + "x\r\n", 400, false},
        {kChunked + "3\nabc\r\n0\r\n\r\n", 400, false},
        {kChunked + "3\r\nabcd\r\n0\r\n\r\n", 400, false},
        {kChunked + "11111111111111111\r\n", 400, false},
        {kChunked + "3;" + std::string(100'000, 'x') + "\r\nabc\r\n0\r\n\r\n", 400, false},
        // Somebody on the way could read these in another way.
        {kHead + "CIMMethod : a\r\nContent-Length: 4\r\n\r\nbody", 400, false},
        {kHead + "X: a\rb\r\nContent-Length: 4\r\n\r\nbody", 400, false},
        {kHead + "X: a\r\r\nContent-Length: 4\r\n\r\nbody", 400, false},
        {kHead + "X: a" + '\0' + "b\r\nContent-Length: 4\r\n\r\nbody", 400, false},
        {kHead + "X: a\r\n b\r\nContent-Length: 4\r\n\r\nbody", 400, false},
        {kHead + "host: t\r\nContent-Length: 4\r\n\r\nbody", 400, false},
        {kHead + "CIMMethod: a\r\nCIMMETHOD: a\r\nContent-Length: 4\r\n\r\nbody", 400, false},
        {kHead + "CIMOperation: a\r\nX: y\r\nCIMOperation: a\r\n\r\n", 400, false},
        {kHead + ": a\r\n\r\n", 400, false},
        {kHead + "no colon\r\n\r\n", 400, false},
        {"POST /cimom HTTP/1.1\r\nContent-Length: 4\r\n\r\nbody", 400, false},
        {"POST  /cimom HTTP/1.1\r\nHost: s\r\n\r\n", 400, false},
        {"POST /cimom\r\nHost: s\r\n\r\n", 400, false},
        {std::string("\x16\x03\x01\n", 4), 400, false},
        {"POST /cimom HTTP/2.0\r\nHost: s\r\n\r\n", 505, false},
        {"POST /" + std::string(2 * Limits().headBytes, 'x'), 414, false},
        {kHead + "X-Filler: " + std::string(2 * Limits().headBytes, 'x') + "\r\n\r\n", 431, false},
    };
    startSmall();
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.bytes.substr(0, 120));
        RawClient client(port);
        EXPECT_EQ(row.status, client.ask(row.bytes).status);
        if (row.usableAfterwards)
            EXPECT_EQ("next", client.ask(post("next")).body);
        else
            EXPECT_EQ(0, client.receive().status) << "what follows is no request";
    }
    const std::string body(kBodyLimit, 'x');
    EXPECT_EQ(body, ask(post(body)).body) << "exactly the limit";
}

TEST_F(HttpServerTest, TakesWhatIsUnusualButClear)
{
    handler.verdict = [](const HttpRequest& head)
    {
        Verdict verdict;
        if (const std::string* value = head.header("X-Value"))
            verdict.response = HttpResponse{403, {}, '<' + *value + '>' + head.target};
        return verdict;
    };
    startEcho();
    const struct
    {
        std::string bytes;
        std::string body;
    } rows[] = {
        {kHead + "X-Value: \t a b \t \r\n\r\n", "<a b>/cimom"},
        {kHead + "X-Value:\r\n\r\n", "<>/cimom"},
        {"GET /%63imom?query HTTP/1.1\r\nHost: s\r\nX-Value: a\r\n\r\n", "<a>/cimom"},
        {"\r\n\r\n" + post("after empty lines"), "after empty lines"},
        {"POST / HTTP/1.1\nHost: s\nContent-Length: 4\n\nbody", "body"},
        {kChunked + "3;name=value\r\nabc\r\n02 ; x\r\nde\r\n0\r\nTrailer: x\r\n\r\n", "abcde"},
        {kHead + "X-Value: " + std::string(Limits().headBytes / 2, 'x') + "\r\n\r\n",
         '<' + std::string(Limits().headBytes / 2, 'x') + ">/cimom"},
    };
    RawClient client(port);
    for (const auto& row : rows)
        EXPECT_EQ(row.body, client.ask(row.bytes).body) << row.bytes.substr(0, 100);
    RawClient old(port);
    const std::string oldPost = "POST / HTTP/1.0\r\nConnection: Keep-Alive\r\nContent-Length: 3\r\n\r\nold";
    EXPECT_EQ("old", old.ask(oldPost).body);
    EXPECT_EQ("Keep-Alive", old.ask(oldPost).header("Connection"));
    const RawResponse last = client.ask(post("last", "Connection: x, Close\r\n"));
    EXPECT_EQ("close", last.header("Connection"));
    EXPECT_NO_THROW(client.awaitClose());
}

TEST_F(HttpServerTest, AnswersAClientThatHasClosedItsSendingHalf)
{
    startEcho();
    for (const std::string& body : {std::string("small"), std::string("large")})
    {
        RawClient client(port);
        client.send(post("first") + post(body));
        client.endSending();
        EXPECT_EQ("first", client.receive().body);
        EXPECT_EQ(body == "large" ? kLargeBytes : body.size(), client.receive().body.size());
        EXPECT_NO_THROW(client.awaitClose());
    }
}

TEST_F(HttpServerTest, AsksWhoAClientIsBeforeItTakesALargeBody)
{
    handler.verdict = [](const HttpRequest&) { return Verdict{std::nullopt, kBodyLimit}; };
    handler.voucher = [](const HttpRequest& head) -> std::optional<HttpResponse>
    {
        if (head.header("X-Right") != nullptr)
            return std::nullopt;
        return HttpResponse{401, {}, "who?"};
    };
    startEcho();
    const std::string large(1'000'000, 'x');
    RawClient client(port);
    EXPECT_EQ(kBodyLimit, client.ask(post(std::string(kBodyLimit, 'x'))).body.size()) << "nobody is asked";
    EXPECT_EQ("who?", client.ask(post(large)).body);
    EXPECT_EQ(large, client.ask(post(large, "X-Right: yes\r\n") + post("next")).body);
    EXPECT_EQ("next", client.receive().body);
    EXPECT_EQ(401, client.ask(kChunked + kChunk + "0\r\n\r\n").status);
}

// A place for each of three clients, and what becomes of them when more come.
TEST_F(HttpServerTest, GivesThePlaceOfTheFirstStrangerToANewClient)
{
    limits.connections = 3;
    startEcho();
    RawClient kept(port);
    EXPECT_EQ("kept", kept.ask(post("kept")).body);
    RawClient silent(port);
    RawClient slow(port);
    slow.send("POST /");
    while (connectionLines(server->state().clients, limits.connections).back() !=
           "127.0.0.1: 3: 1 head, 2 idle")
        std::this_thread::yield();

    RawClient busy(port);
    EXPECT_NO_THROW(silent.awaitClose());
    busy.send(post("wait"));
    gate.awaitWaiting();
    EXPECT_FALSE(slow.hears(std::chrono::milliseconds(0)));
    RawClient second(port);
    EXPECT_NO_THROW(slow.awaitClose());
    EXPECT_EQ("second", second.ask(post("second")).body);
    EXPECT_EQ("kept", kept.ask(post("kept")).body);
    RawClient third(port); // there are no strangers left
    EXPECT_NO_THROW(second.awaitClose());
    EXPECT_EQ("kept", kept.ask(post("kept")).body);
    gate.open();
    EXPECT_EQ("wait", busy.receive().body);
    EXPECT_EQ("third", third.ask(post("third")).body);
}

TEST_F(HttpServerTest, HangsUpOnAnEndlessBody)
{
    startSmall();
    RawClient client(port);
    client.send(kChunked);
    const auto sendOn = [&]
    {
        // The kernel's buffers take some of it after the server has stopped reading.
        for (int i = 0; i < 100'000; ++i)
            client.send(kChunk);
    };
    EXPECT_THROW(sendOn(), std::runtime_error);
}

TEST_F(HttpServerTest, FreesTheConnectionOfAClientThatLeavesInTheMiddle)
{
    limits.connections = 1;
    startEcho();
    const std::string whole = post("body");
    for (std::size_t sent = 1; sent < whole.size(); sent += 10)
        RawClient(port).send(whole.substr(0, sent));
    EXPECT_EQ("body", ask(whole).body);
}

TEST_F(HttpServerTest, HearsRefusedClientsOutAndInvitesThoseThatAsk)
{
    handler.verdict = [](const HttpRequest& head)
    {
        Verdict verdict;
        if (head.target == "/refused")
            verdict.response = HttpResponse{403, {}, "no"};
        return verdict;
    };
    startEcho();
    RawClient client(port);
    EXPECT_EQ("no", client.ask("POST /refused HTTP/1.1\r\nHost: s\r\nContent-Length: 4\r\n\r\nbody").body);
    client.send(kHead + "Expect: 100-continue\r\nContent-Length: 4\r\n\r\n");
    EXPECT_EQ(100, client.receive().status);
    EXPECT_EQ("body", client.ask("body").body);
}

TEST_F(HttpServerTest, RefusesWhatDoesNotFitTheQueue)
{
    limits.workers = 1;
    limits.queuedRequests = 0;
    startEcho();
    RawClient running(port);
    running.send(post("wait"));
    gate.awaitWaiting();

    RawClient refused(port);
    EXPECT_EQ(503, refused.ask(post("too much")).status);
    gate.open();
    EXPECT_EQ("wait", running.receive().body);
    EXPECT_EQ(200, refused.ask(post("again")).status);
}

TEST_F(HttpServerTest, RefusesWhatDoesNotFitTheMemoryForBodies)
{
    limits.bodyBytes = 10'000;
    limits.allBodiesBytes = 15'000;
    limits.unauthenticatedBodyBytes = 1000; // has room in any case
    startEcho();
    const std::string large(10'000, 'x');
    // Asking until that fails could itself be what keeps a body out.
    const auto awaitBodies = [this](std::size_t count)
    {
        while (server->state().connections.at("body") != count)
            std::this_thread::yield();
    };
    RawClient arriving(port);
    arriving.send(kHead + "Content-Length: 10000\r\n\r\n" + large.substr(1));
    awaitBodies(1);
    RawClient running(port);
    running.send(post("wait"));
    gate.awaitWaiting();
    RawClient other(port);
    EXPECT_EQ(503, other.ask(post(large)).status);
    EXPECT_EQ(200, other.ask(post(large.substr(6000))).status);
    RawClient filling(port);
    filling.send(kHead + "Content-Length: 7000\r\n\r\n" + large.substr(3001));
    awaitBodies(2);
    EXPECT_EQ(503, other.ask(post(large.substr(8900))).status);
    EXPECT_EQ(200, other.ask(post(large.substr(9000))).status);
    EXPECT_EQ(200, filling.ask("x").status);
    EXPECT_EQ(large, arriving.ask("x").body);
    EXPECT_EQ(200, other.ask(post(large)).status) << "memory is given back with the answer";
}

TEST_F(HttpServerTest, SurvivesAClientThatLeavesBeforeItsAnswer)
{
    startEcho();
    {
        RawClient client(port);
        client.send(post("wait"));
        gate.awaitWaiting();
    }
    gate.open();
    EXPECT_EQ("next", ask(post("next")).body);
}

TEST_F(HttpServerTest, FinishesRequestsInFlightWhenStopped)
{
    startEcho();
    RawClient busy(port);
    busy.send(post("wait"));
    gate.awaitWaiting();
    RawClient kept(port);
    EXPECT_EQ("before", kept.ask(post("before")).body);

    EXPECT_FALSE(server->stop(std::chrono::milliseconds(0))) << "a handler is running";
    EXPECT_FALSE(canConnect(port));
    const RawResponse late = kept.ask(post("late"));
    EXPECT_EQ(503, late.status);
    EXPECT_EQ("close", late.header("Connection"));

    gate.open();
    const RawResponse answer = busy.receive();
    EXPECT_EQ("wait", answer.body);
    EXPECT_EQ("close", answer.header("Connection"));
    EXPECT_TRUE(server->stop(kLong));
}

TEST_F(HttpServerTest, EndsWellWhenItsSecondPortCannotBeServed)
{
    std::vector<ListenSocket> sockets;
    port = sockets.emplace_back("127.0.0.1", 0, limits.backlog).port();
    sockets.emplace_back("127.0.0.1", 0, limits.backlog, true);
    RawClient client(port);
    client.send(post("body"));
    EXPECT_THROW(HttpServer(handler, limits, std::move(sockets)), std::runtime_error) << "no certificate";
    client.awaitClose();
}

TEST_F(HttpServerTest, ServesManyClientsAtOnceAndEndsAtAnyMoment)
{
    for (unsigned round = 0; round < 20; ++round)
    {
        startEcho();
        std::atomic<unsigned> answered{0};
        const auto client = [&answered, to = port](const std::string& body)
        {
            try
            {
                for (;;)
                    for (RawClient one(to);;)
                    {
                        const RawResponse response = one.ask(post(body));
                        if (response.status == 0)
                            break;
                        EXPECT_TRUE(response.status == 503 || response.body == body) << response.body;
                        ++answered;
                    }
            }
            catch (const std::runtime_error&)
            {
                // Nobody listens any more.
            }
        };
        std::vector<std::thread> clients;
        clients.reserve(4);
        for (int i = 0; i < 4; ++i)
            clients.emplace_back(client, std::to_string(i));
        while (answered < 10 * round)
            std::this_thread::yield();
        server.reset();
        for (std::thread& one : clients)
            one.join();
    }
}

} // namespace
} // namespace cimd
