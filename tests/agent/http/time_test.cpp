// What the server does when something takes too long: operations, requests, clients, and its own end.
#include "tests/agent/http/ServerFixture.h"

#include "agent/log/log.h"

#include <map>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace cimd
{
namespace
{

constexpr std::chrono::seconds kSecond{1};

// The process can open that many files more, as long as the object lives or until it is ended.
class FewDescriptors
{
  public:
    explicit FewDescriptors(rlim_t more)
    {
        EXPECT_EQ(0, getrlimit(RLIMIT_NOFILE, &_usual));
        const FileDescriptor next(dup(0));
        const rlimit few{static_cast<rlim_t>(next.get()) + more, _usual.rlim_max};
        EXPECT_EQ(0, setrlimit(RLIMIT_NOFILE, &few));
    }
    ~FewDescriptors() { end(); }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

    void end() const { EXPECT_EQ(0, setrlimit(RLIMIT_NOFILE, &_usual)); }

  private:
    rlimit _usual{};
};

class TimeTest : public ServerFixture
{
  protected:
    // A handler that hangs for the body "hang"; for "midway", after its answer has begun; and for "endless",
    // when nobody takes more of it.
    FunctionHandler::Answer hanging()
    {
        return [this](HttpRequest& request, AnswerStream& stream) -> HttpResponse
        {
            stream.whenLate(
                []
                {
                    HttpResponse late{200, {}, "late"};
                    late.trailers = {{"CIMStatusCode", "1"}, {"CIMStatusCodeDescription", "late"}};
                    return late;
                });
            HttpResponse response{200, {}, request.body};
            if (request.body == "midway")
            {
                response.body = std::string(limits.chunkBytes, 'x');
                stream.flush(response);
            }
            if (request.body == "endless")
                pourInto(stream);
            if (request.body == "hang" || request.body == "midway" || request.body == "endless")
                gate.wait();
            return response;
        };
    }

    // Before descriptors become short: a sanitizer needs some to look at an object of a type for the first
    // time.
    void showEveryType(RawClient& client)
    {
        EXPECT_EQ("served", client.ask(post("served")).body);
        server->state();
        std::promise<void> kept;
        kept.set_value();
        kept.get_future().wait();
    }

  private:
    static void pourInto(AnswerStream& stream)
    {
        try
        {
            for (HttpResponse response;; stream.flush(response))
                response.body.append(100'000, 'x');
        }
        catch (const AnswerClosed&)
        {
        }
    }
};

TEST_F(TimeTest, AnswersForAHandlerThatHangsAndGoesOnWithoutIt)
{
    limits.operationSeconds = kSecond;
    limits.workers = 1;
    limits.queuedRequests = 0;
    start(hanging());
    RawClient client(port);
    EXPECT_EQ("late", client.ask(post("hang")).body);
    EXPECT_EQ("next", client.ask(post("next")).body) << "the only worker was replaced";
    EXPECT_FALSE(server->stop(std::chrono::milliseconds(0))) << "the handler is still running";
    gate.open();
    EXPECT_TRUE(server->stop(kLong)) << "what it returns late is nobody's";
}

TEST_F(TimeTest, BreaksOffTheAnswerOfAHandlerThatHangsMidway)
{
    limits.operationSeconds = kSecond;
    start(hanging());
    RawClient withTrailers(port);
    RawClient without(port);
    withTrailers.send(post("midway", "TE: trailers\r\n"));
    without.send(post("midway"));
    const RawResponse told = withTrailers.receive();
    EXPECT_EQ(limits.chunkBytes, told.body.size());
    EXPECT_EQ("CIMStatusCode: 1\nCIMStatusCodeDescription: late\n", told.trailers);
    EXPECT_FALSE(without.receive().isComplete);
}

TEST_F(TimeTest, GoesOnWithoutHandlersThatHangWhenTheirClientsAreGone)
{
    limits.operationSeconds = kSecond;
    limits.slowClientSeconds = kSecond;
    limits.answerFileBytes = 0;
    limits.workers = 2;
    limits.queuedRequests = 0;
    limits.hungWorkers = 1;
    std::promise<void> bothAreLost;
    start(hanging(), [&] { bothAreLost.set_value(); });
    RawClient takesNothing(port);
    takesNothing.send(post("endless"));
    {
        RawClient leaves(port);
        leaves.send(post("endless"));
        leaves.receiveOnce();
    }
    bothAreLost.get_future().wait();
    while (ask(post("next")).body != "next") // until the replacement is there
        std::this_thread::yield();
    gate.open();
    server.reset(); // before what it tells
}

TEST_F(TimeTest, KeepsAnAnswerBackWithoutAWorker)
{
    limits.workers = 1;
    limits.queuedRequests = 0;
    start(
        [](HttpRequest& request, AnswerStream&)
        {
            HttpResponse response{200, {}, request.body};
            if (request.body == "held")
                response.holdFor = kLong;
            return response;
        });
    handler.verdict = [](const HttpRequest& head)
    {
        Verdict verdict;
        if (head.header("X-Refuse") != nullptr)
            verdict.response = HttpResponse{401, {}, "who?", {}, kLong, "no name"};
        return verdict;
    };
    RawClient keeper(port);
    RawClient refused(port);
    RawClient asking(port);
    RawClient other(port);
    keeper.send(post("held"));
    refused.send(post("body", "X-Refuse: yes\r\n"));
    asking.send(post("", "X-Refuse: yes\r\nExpect: 100-continue\r\n"));
    while (other.ask(post("other")).status == 503) // until the worker has let go of the first
        std::this_thread::yield();
    server->stop(std::chrono::milliseconds(0)); // lets go at once of what is kept back
    EXPECT_EQ("held", keeper.receive().body);
    EXPECT_EQ(401, refused.receive().status);
    EXPECT_EQ(401, asking.receive().status);
    EXPECT_EQ(2U, server->state().refusals["no name"]) << "told once each, though kept back";
    EXPECT_TRUE(server->stop(kLong));
}

TEST_F(TimeTest, GivesThePlaceOfAnAnswerThatIsKeptBackToANewClient)
{
    limits.connections = 1;
    start(
        [](HttpRequest& request, AnswerStream&)
        {
            HttpResponse response{200, {}, request.body};
            if (request.body == "guess")
                response.holdFor = kLong;
            return response;
        });
    RawClient guesser(port);
    guesser.send(post("guess"));
    EXPECT_EQ("other", ask(post("other")).body);
    EXPECT_NO_THROW(guesser.awaitClose());
}

// Nothing of the network tells the server when another part of the process has closed a file.
TEST_F(TimeTest, TakesAClientOnceThereIsADescriptorForIt)
{
    std::promise<void> hasFailed;
    setLogWriter(
        [&](LogLevel, std::string_view line)
        {
            if (line.find("cannot take connections: Too many open files") != std::string_view::npos)
                hasFailed.set_value();
        });
    start(hanging());
    RawClient before(port);
    showEveryType(before);
    const FewDescriptors few(1);
    RawClient client(port); // has the last one
    hasFailed.get_future().wait();
    few.end();
    EXPECT_EQ("served", client.ask(post("served")).body);
    setLogWriter({});
}

TEST_F(TimeTest, KeepsTheClientThatHasTheLastDescriptor)
{
    start(hanging());
    RawClient before(port);
    showEveryType(before);
    const FewDescriptors few(2); // for both ends
    RawClient client(port);
    for (int i = 0; i < 2; ++i) // until the server has looked for more clients
        server->state();
    EXPECT_EQ("served", client.ask(post("served")).body);
    EXPECT_EQ("served", before.ask(post("served")).body);
}

TEST_F(TimeTest, ReleasesAnAnswerThatWasKeptBackAndKeepsNoneAfterTheStop)
{
    start(
        [this](HttpRequest& request, AnswerStream&)
        {
            const bool isBrief = request.body == "brief";
            if (!isBrief)
                gate.wait();
            return HttpResponse{401, {}, "who?", {}, isBrief ? std::chrono::milliseconds(10) : kLong};
        });
    RawClient client(port);
    EXPECT_EQ(401, client.ask(post("brief")).status);
    client.send(post("long"));
    gate.awaitWaiting();
    EXPECT_FALSE(server->stop(std::chrono::milliseconds(0)));
    gate.open();
    EXPECT_EQ(401, client.receive().status);
    EXPECT_TRUE(server->stop(kLong));
}

TEST_F(TimeTest, WatchesTheRequestThatFollowsALateAnswer)
{
    limits.operationSeconds = kSecond;
    limits.requestSeconds = kSecond;
    start(hanging());
    RawClient client(port);
    EXPECT_EQ("late", client.ask(post("hang")).body);
    client.send("POST /");
    for (int i = 0; i < 1000 && !client.hears(std::chrono::milliseconds(60)); ++i)
        client.send("x"); // it is seen to have begun, however soon the first bytes came
    EXPECT_EQ(408, client.receive().status);
}

TEST_F(TimeTest, RefusesRequestsThatArriveTooSlowly)
{
    limits.requestSeconds = kSecond;
    start(hanging());
    const std::string whole = post("body");
    RawClient idle(port); // it has not begun a request, so its time does not run
    EXPECT_EQ("kept", idle.ask(post("kept")).body);
    std::map<std::size_t, RawClient> clients;
    for (const std::size_t part : {std::size_t{1}, whole.find("Host"), whole.size() - 1})
        clients.try_emplace(part, port).first->second.send(whole.substr(0, part));
    for (auto& [part, client] : clients)
    {
        EXPECT_EQ(408, client.receive().status) << part;
        EXPECT_NO_THROW(client.awaitClose());
    }
    EXPECT_EQ("more", idle.ask(post("more")).body);
}

TEST_F(TimeTest, ClosesIdleConnections)
{
    limits.idleSeconds = 1;
    start(hanging());
    RawClient fresh(port);
    auto used = std::make_unique<RawClient>(port);
    while (used->ask(post("once")).body != "once") // a second may pass before it asks
        used = std::make_unique<RawClient>(port);
    EXPECT_NO_THROW(fresh.awaitClose());
    EXPECT_NO_THROW(used->awaitClose());
}

TEST_F(TimeTest, ClosesNewConnectionsOnWhichNothingComes)
{
    limits.firstByteSeconds = kSecond;
    start(hanging());
    RawClient silent(port);
    RawClient used(port);
    EXPECT_EQ("once", used.ask(post("once")).body);
    EXPECT_NO_THROW(silent.awaitClose());
    EXPECT_EQ("twice", used.ask(post("twice")).body);
}

TEST_F(TimeTest, LetsFurtherConnectionsWaitAndThoseOfOneAddressGo)
{
    limits.connections = 3;
    limits.connectionsPerAddress = 2;
    start(hanging());
    auto first = std::make_unique<RawClient>(port);
    RawClient second(port);
    EXPECT_EQ("1", first->ask(post("1")).body);
    EXPECT_EQ("2", second.ask(post("2")).body);
    RawClient third(port);
    EXPECT_NO_THROW(third.awaitClose());
    first.reset();
    for (std::string body; body != "4";) // until the server has seen the first go
        try
        {
            body = ask(post("4")).body;
        }
        catch (const std::runtime_error&)
        {
        }
}

TEST_F(TimeTest, StopsInSpiteOfRequestsThatNeverArrive)
{
    start(hanging());
    RawClient halfHead(port);
    RawClient noBody(port);
    halfHead.send("POST /cimom HTTP");
    const std::string whole = post("body", "Expect: 100-continue\r\n");
    EXPECT_EQ(100, noBody.ask(whole.substr(0, whole.find("body"))).status); // it is being waited for
    EXPECT_TRUE(server->stop(kLong));
    EXPECT_EQ(503, noBody.receive().status);
}

} // namespace
} // namespace cimd
