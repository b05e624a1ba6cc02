// The HTTP server over real sockets: connections, limits, overload and stopping.
#include "agent/http/HttpServer.h"

#include "tests/agent/http/RawClient.h"

#include <atomic>
#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <unistd.h>
#include <vector>

namespace cimd
{
namespace
{

constexpr std::chrono::minutes kLong{2};

// Answers with the body it got; some bodies and targets mean more.
class EchoHandler : public HttpHandler
{
  public:
    Verdict refuse(const HttpRequest& head) override
    {
        if (head.target == "/refused")
            return {HttpResponse{403, {}, "no"}};
        return {};
    }

    HttpResponse answer(HttpRequest& request, AnswerStream&) override
    {
        if (request.body == "wait")
            wait();
        if (request.body == "throw")
            throw std::runtime_error("broken");
        if (request.body == "large")
            return {200, {}, std::string(kLargeBytes, 'x')};
        if (request.body == "peer")
            return {200, {}, request.peer};
        return {200, {{"X-Body", "echo"}}, request.body};
    }

    // Returns once as many handlers as given wait in here at the same time.
    void awaitWaiting(unsigned count)
    {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait(lock, [&] { return _waiting >= count; });
    }

    void release()
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _released = true;
        _changed.notify_all();
    }

    static constexpr std::size_t kLargeBytes = 5'000'000;

  private:
    void wait()
    {
        std::unique_lock<std::mutex> lock(_mutex);
        ++_waiting;
        _changed.notify_all();
        _changed.wait(lock, [this] { return _released; });
    }

    std::mutex _mutex;
    std::condition_variable _changed;
    unsigned _waiting = 0;
    bool _released = false;
};

class HttpServerTest : public ::testing::Test
{
  protected:
    void start(const Limits& limits = Limits(), const std::string& address = "127.0.0.1")
    {
        std::vector<ListenSocket> sockets;
        port = sockets.emplace_back(address, 0, limits.backlog).port();
        server = std::make_unique<HttpServer>(handler, limits, std::move(sockets));
    }

    void TearDown() override { handler.release(); }

    EchoHandler handler;
    std::unique_ptr<HttpServer> server;
    std::uint16_t port = 0;
};

TEST_F(HttpServerTest, KeepsTheConnectionForFurtherRequests)
{
    start();
    RawClient client(port);
    for (const char* body : {"one", "", "three"})
    {
        const RawResponse response = client.ask(post(body));
        EXPECT_EQ(200, response.status);
        EXPECT_EQ(body, response.body);
        EXPECT_EQ("echo", response.header("X-Body"));
        EXPECT_EQ("", response.header("Connection"));
    }
}

TEST_F(HttpServerTest, AnswersPipelinedRequestsInOrder)
{
    start();
    RawClient client(port);
    client.send(post("first") + post("second") + post("third"));
    for (const char* body : {"first", "second", "third"})
        EXPECT_EQ(body, client.receive().body);
}

TEST_F(HttpServerTest, ReadsARequestThatArrivesByteByByte)
{
    start();
    RawClient client(port);
    for (const char byte : post("slow"))
        client.send(std::string_view(&byte, 1));
    EXPECT_EQ("slow", client.receive().body);
}

TEST_F(HttpServerTest, ReadsChunkedBodies)
{
    start();
    RawClient client(port);
    const RawResponse response =
        client.ask("POST /cimom HTTP/1.1\r\nHost: s\r\nTE: chunked, trailers\r\n"
                   "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n");
    EXPECT_EQ("abcde", response.body);
}

TEST_F(HttpServerTest, DeliversLargeAnswersWhole)
{
    start();
    RawClient client(port);
    EXPECT_EQ(EchoHandler::kLargeBytes, client.ask(post("large")).body.size());
    EXPECT_EQ("next", client.ask(post("next")).body);
}

TEST_F(HttpServerTest, TellsTheHandlerWhoAsks)
{
    start();
    const std::string peer = RawClient(port).ask(post("peer")).body;
    EXPECT_EQ(0U, peer.find("127.0.0.1:")) << peer;
}

TEST_F(HttpServerTest, ListensOnIpv6)
{
    try
    {
        start(Limits(), "[::1]");
    }
    catch (const std::runtime_error& error)
    {
        GTEST_SKIP() << "this machine has no IPv6 loopback: " << error.what();
    }
    const std::string peer = RawClient(port, true).ask(post("peer")).body;
    EXPECT_EQ(0U, peer.find("[::1]:")) << peer;
}

struct TooLarge
{
    const char* name;
    std::string bytes;
    bool usableAfterwards;
};

void PrintTo(const TooLarge& row, std::ostream* out)
{
    *out << row.name;
}

class HttpServerLimit : public HttpServerTest, public ::testing::WithParamInterface<TooLarge>
{
};

constexpr std::size_t kBodyLimit = 1000;

TEST_P(HttpServerLimit, IsAnsweredAsTooLarge)
{
    Limits limits;
    limits.bodyBytes = kBodyLimit;
    limits.discardBytes = 100 * kBodyLimit;
    start(limits);
    RawClient client(port);
    const RawResponse response = client.ask(GetParam().bytes);
    EXPECT_EQ(413, response.status);
    EXPECT_EQ(std::string::npos, response.body.find("HTTP/1.1")) << "a second head";
    if (GetParam().usableAfterwards)
        EXPECT_EQ("next", client.ask(post("next")).body);
    else
        EXPECT_NO_THROW(client.awaitClose());
}

const TooLarge kTooLarge[] = {
    {"OneByteMore", post(std::string(kBodyLimit + 1, 'x')), true},
    {"MuchMore", post(std::string(kBodyLimit * 90, 'x')), true},
    {"Chunked",
     "POST /cimom HTTP/1.1\r\nHost: s\r\nTransfer-Encoding: chunked\r\n\r\n7d0\r\n" + std::string(2000, 'x') +
         "\r\n0\r\n\r\n",
     true},
    {"OnlyAnnounced", "POST /cimom HTTP/1.1\r\nHost: s\r\nContent-Length: 100001\r\n\r\n", false},
    {"AskedFirst",
     "POST /cimom HTTP/1.1\r\nHost: s\r\nExpect: 100-continue\r\nContent-Length: 1001\r\n\r\n",
     false},
    {"AbsurdLength",
     "POST /cimom HTTP/1.1\r\nHost: s\r\nContent-Length: 99999999999999999999999\r\n\r\n",
     false},
};

INSTANTIATE_TEST_SUITE_P(Bodies,
                         HttpServerLimit,
                         ::testing::ValuesIn(kTooLarge),
                         [](const auto& row) { return row.param.name; });

TEST_F(HttpServerTest, RefusesATransferCodingWhoseEndItCannotTell)
{
    start();
    for (const char* coding : {"gzip", "gzip, chunked", "identity"})
    {
        RawClient client(port);
        EXPECT_EQ(501,
                  client
                      .ask("POST /cimom HTTP/1.1\r\nHost: s\r\nTransfer-Encoding: " + std::string(coding) +
                           "\r\n\r\n5\r\nhello")
                      .status)
            << coding;
        EXPECT_NO_THROW(client.awaitClose());
    }
}

TEST_F(HttpServerTest, TakesABodyOfExactlyTheLimit)
{
    Limits limits;
    limits.bodyBytes = kBodyLimit;
    start(limits);
    const std::string body(kBodyLimit, 'x');
    EXPECT_EQ(body, RawClient(port).ask(post(body)).body);
}

TEST_F(HttpServerTest, HangsUpOnAnEndlessBody)
{
    Limits limits;
    limits.bodyBytes = kBodyLimit;
    limits.discardBytes = 100 * kBodyLimit;
    start(limits);
    RawClient client(port);
    client.send("POST /cimom HTTP/1.1\r\nHost: s\r\nTransfer-Encoding: chunked\r\n\r\n");
    const std::string chunk = "7d0\r\n" + std::string(2000, 'x') + "\r\n";
    // The kernel's buffers take some of it after the server has stopped reading.
    EXPECT_THROW(
        {
            for (int i = 0; i < 100'000; ++i)
                client.send(chunk);
        },
        std::runtime_error);
}

TEST_F(HttpServerTest, RefusesHeadsThatAreTooLarge)
{
    start();
    const std::string header = "X-Filler: " + std::string(2 * Limits().headBytes, 'x') + "\r\n";
    EXPECT_EQ(431, RawClient(port).ask(post("body", header)).status);
}

TEST_F(HttpServerTest, RefusesABodyWhoseLengthIsGivenTwice)
{
    start();
    for (const char* headers : {"Content-Length: 4\r\nContent-Length: 400\r\n",
                                "Content-Length: 4\r\nTransfer-Encoding: chunked\r\n",
                                "Transfer-Encoding: chunked\r\nContent-Length: 4\r\n"})
    {
        RawClient client(port);
        const std::string head = std::string("POST /cimom HTTP/1.1\r\nHost: s\r\n") + headers + "\r\n";
        EXPECT_EQ(400, client.ask(head + "body").status) << headers;
        EXPECT_NO_THROW(client.awaitClose()) << headers;
    }
}

TEST_F(HttpServerTest, FreesTheConnectionOfAClientThatLeavesInTheMiddle)
{
    Limits limits;
    limits.connections = 1;
    limits.idleSeconds = 0; // for ever
    start(limits);
    const std::string whole = post("body");
    for (std::size_t sent = 1; sent < whole.size(); sent += 10)
        RawClient(port).send(whole.substr(0, sent));
    EXPECT_EQ("body", RawClient(port).ask(whole).body);
}

TEST_F(HttpServerTest, ReadsTheBodyOfARefusedRequestAndGoesOn)
{
    start();
    RawClient client(port);
    const RawResponse refused =
        client.ask("POST /refused HTTP/1.1\r\nHost: s\r\nContent-Length: 4\r\n\r\nbody");
    EXPECT_EQ(403, refused.status);
    EXPECT_EQ("no", refused.body);
    EXPECT_EQ("next", client.ask(post("next")).body);
}

TEST_F(HttpServerTest, InvitesTheBodyOfAClientThatAsksFirst)
{
    start();
    RawClient client(port);
    client.send("POST /cimom HTTP/1.1\r\nHost: s\r\nExpect: 100-continue\r\nContent-Length: 4\r\n\r\n");
    EXPECT_EQ(100, client.receive().status);
    EXPECT_EQ("body", client.ask("body").body);
}

TEST_F(HttpServerTest, SaysSoWhenTheHandlerBreaks)
{
    start();
    RawClient client(port);
    EXPECT_EQ(500, client.ask(post("throw")).status);
    EXPECT_EQ("next", client.ask(post("next")).body);
}

TEST_F(HttpServerTest, RefusesWhatDoesNotFitTheQueue)
{
    Limits limits;
    limits.workers = 1;
    limits.queuedRequests = 0;
    start(limits);
    RawClient running(port);
    running.send(post("wait"));
    handler.awaitWaiting(1);

    RawClient refused(port);
    EXPECT_EQ(503, refused.ask(post("too much")).status);
    handler.release();
    EXPECT_EQ("wait", running.receive().body);
    EXPECT_EQ(200, refused.ask(post("again")).status);
}

TEST_F(HttpServerTest, SurvivesAClientThatLeavesBeforeItsAnswer)
{
    start();
    {
        RawClient client(port);
        client.send(post("wait"));
        handler.awaitWaiting(1);
    }
    handler.release();
    EXPECT_EQ("next", RawClient(port).ask(post("next")).body);
}

TEST_F(HttpServerTest, FinishesRequestsInFlightWhenStopped)
{
    start();
    RawClient busy(port);
    busy.send(post("wait"));
    handler.awaitWaiting(1);
    RawClient kept(port);
    EXPECT_EQ("before", kept.ask(post("before")).body);

    EXPECT_FALSE(server->stop(std::chrono::milliseconds(0))) << "a handler is running";
    // The socket closes for good when the I/O thread leaves its accept call.
    while (canConnect(port))
        std::this_thread::yield();
    const RawResponse late = kept.ask(post("late"));
    EXPECT_EQ(503, late.status);
    EXPECT_EQ("close", late.header("Connection"));

    handler.release();
    const RawResponse answer = busy.receive();
    EXPECT_EQ("wait", answer.body);
    EXPECT_EQ("close", answer.header("Connection"));
    EXPECT_TRUE(server->stop(kLong));
}

int nextDescriptor()
{
    return FileDescriptor(dup(STDERR_FILENO)).get();
}

// libmicrohttpd's thread may be about to accept from the number.
TEST_F(HttpServerTest, LeavesTheNumberOfItsSocketToNobodyBeforeItsEnd)
{
    const int listening = nextDescriptor();
    start();
    EXPECT_TRUE(server->stop(std::chrono::milliseconds(0)));
    while (canConnect(port))
        std::this_thread::yield();
    EXPECT_NE(listening, nextDescriptor());
    server.reset();
    EXPECT_EQ(listening, nextDescriptor());
}

TEST_F(HttpServerTest, EndsWellWhenItsSecondPortCannotBeServed)
{
    const unsigned backlog = Limits().backlog;
    std::vector<ListenSocket> sockets;
    port = sockets.emplace_back("127.0.0.1", 0, backlog).port();
    sockets.emplace_back("127.0.0.1", 0, backlog, true);
    RawClient client(port);
    client.send(post("body"));
    EXPECT_THROW(HttpServer(handler, Limits(), std::move(sockets)), std::runtime_error) << "no certificate";
    client.awaitClose();
}

TEST_F(HttpServerTest, ServesManyClientsAtOnce)
{
    start();
    std::vector<std::thread> clients;
    std::vector<int> right(8, 0);
    for (std::size_t i = 0; i < right.size(); ++i)
        clients.emplace_back(
            [this, i, &right]
            {
                RawClient client(port);
                for (int n = 0; n < 50; ++n)
                {
                    const std::string body = std::to_string(i) + ":" + std::to_string(n);
                    right[i] += client.ask(post(body)).body == body ? 1 : 0;
                }
            });
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(std::vector<int>(8, 50), right);
    EXPECT_TRUE(server->stop(kLong));
}

TEST_F(HttpServerTest, EndsAtAnyMoment)
{
    for (unsigned round = 0; round < 20; ++round)
    {
        start();
        std::atomic<unsigned> answered{0};
        const auto ask = [&answered, to = port]
        {
            try
            {
                for (;;)
                    for (RawClient client(to); client.ask(post("body")).status != 0;)
                        ++answered;
            }
            catch (const std::runtime_error&)
            {
                // Nobody listens any more.
            }
        };
        std::vector<std::thread> clients;
        for (int i = 0; i < 4; ++i)
            clients.emplace_back(ask);
        while (answered < 10 * round)
            std::this_thread::yield();
        server.reset();
        for (std::thread& client : clients)
            client.join();
    }
}

TEST(ListenSocketTest, SaysWhichAddressFailsAndWhy)
{
    const ListenSocket taken("127.0.0.1", 0, 1);
    const auto reason = [](const std::string& address, std::uint16_t port)
    {
        try
        {
            ListenSocket socket(address, port, 1);
        }
        catch (const std::runtime_error& error)
        {
            return std::string(error.what());
        }
        return std::string("no error");
    };
    EXPECT_EQ("cannot listen on http://127.0.0.1:" + std::to_string(taken.port()) +
                  ": bind: Address already in use",
              reason("127.0.0.1", taken.port()));
    EXPECT_EQ(0U, reason("localhost", 0).find("cannot listen on \"localhost\": not an IPv4 or IPv6 address"));
}

} // namespace
} // namespace cimd
