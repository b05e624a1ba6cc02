// Log-ins: who gets in, what is remembered, what becomes of a changed password file, what is logged.
#include "agent/auth/Authenticator.h"

#include "agent/log/log.h"
#include "agent/ops/LogInGate.h"
#include "tests/agent/auth/users.h"
#include "tests/agent/http/FunctionHandler.h"
#include "tests/agent/http/WholeAnswer.h"
#include "tests/agent/pull/TemporaryDirectory.h"

#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace cimd
{
namespace
{

using std::chrono::milliseconds;

const std::string kPeer = "192.0.2.7:40000";
const std::string kJoe = "Basic am9lOlUqVQ==";          // joe:U*U
const std::string kWrong = "Basic am9lOnNlY3JldA==";    // joe:secret
const std::string kStranger = "Basic bWFsbG9yeTpVKlU="; // mallory:U*U
const std::string kJoesLine = std::string("joe:") + kCheapHash + "\n";

class AuthenticatorTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        setLogLevel(LogLevel::Debug);
        setLogWriter([this](LogLevel, std::string_view line) { logged.append(line).append("\n"); });
        writeUsers(path, kJoesLine);
    }
    void TearDown() override
    {
        setLogWriter({});
        for (const char* secret : {kCheapPassword, kCheapHash, "am9lO", "bWFsb", "secret"})
            EXPECT_EQ(std::string::npos, logged.find(secret)) << logged;
    }

    Authenticator make(const Limits& limits = Limits())
    {
        return Authenticator(path, limits, FirstRead::MustSucceed, [this] { return now; });
    }

    const TemporaryDirectory directory;
    const std::string path = directory.path() + "/users";
    std::chrono::steady_clock::time_point now{};
    std::string logged;
};

TEST_F(AuthenticatorTest, ChecksCredentials)
{
    const struct
    {
        std::string authorization;
        const char* user;
        const char* logLine; // part
    } rows[] = {
        {kJoe, "joe", "info auth: 192.0.2.7:40000: log-in as \"joe\""},
        {"basic  am9lOlUqVQ==", "joe", "log-in as \"joe\""},
        {kWrong, "", "log-in refused: user \"joe\": wrong password (answered after 250 ms)"},
        {kStranger, "", "log-in refused: user \"mallory\": no such user (answered after 500 ms)"},
        {"Basic am9lOg==", "", "user \"joe\": wrong password"}, // no password
        {"Basic OlUqVQ==", "", "user \"\": no such user"},      // no name
        {"Basic am9l", "", "the Authorization header holds no Basic credentials"},
        {"Basic ???", "", "holds no Basic credentials"},
        {"Basic", "", "holds no Basic credentials"},
        {"Bearer am9lOlUqVQ==", "", "holds no Basic credentials"},
    };
    auto authenticator = make();
    for (const auto& row : rows)
    {
        logged.clear();
        EXPECT_FALSE(authenticator.isKnown(row.authorization));
        const LogIn logIn = authenticator.check(row.authorization, kPeer);
        EXPECT_EQ(row.user, logIn.user) << row.authorization;
        EXPECT_EQ(logIn.user.empty(), logIn.delay > milliseconds(0));
        EXPECT_FALSE(logIn.isBusy);
        EXPECT_NE(std::string::npos, logged.find(row.logLine)) << logged;
        EXPECT_EQ(!logIn.user.empty(), authenticator.isKnown(row.authorization));
    }
}

TEST_F(AuthenticatorTest, ASuccessEndsTheDelayAlsoOneThatIsRemembered)
{
    auto authenticator = make();
    for (int round = 0; round < 2; ++round)
    {
        EXPECT_EQ(milliseconds(250), authenticator.check(kWrong, kPeer).delay);
        EXPECT_EQ(milliseconds(500), authenticator.check(kWrong, kPeer).delay);
        EXPECT_EQ(milliseconds(500), authenticator.withoutCredentials(kPeer).delay) << "no guess";
        EXPECT_EQ(milliseconds(500), authenticator.withoutCredentials(kPeer).delay);
        EXPECT_EQ("joe", authenticator.check(kJoe, kPeer).user);
        EXPECT_EQ(milliseconds(0), authenticator.withoutCredentials(kPeer).delay);
    }
}

TEST_F(AuthenticatorTest, RemembersForAWhileAndOnlySoMany)
{
    writeUsers(path, kJoesLine + "ann:" + kCheapHash + "\n");
    const std::string ann = "Basic YW5uOlUqVQ==";
    Limits limits;
    limits.knownLogIns = 1;
    limits.knownLogInSeconds = std::chrono::seconds(10);
    auto authenticator = make(limits);
    authenticator.check(kJoe, kPeer);
    now += std::chrono::seconds(9);
    EXPECT_TRUE(authenticator.isKnown(kJoe));
    now += std::chrono::seconds(1);
    EXPECT_FALSE(authenticator.isKnown(kJoe));
    authenticator.check(kJoe, kPeer);
    EXPECT_EQ("ann", authenticator.check(ann, kPeer).user);
    EXPECT_TRUE(authenticator.isKnown(ann));
    EXPECT_FALSE(authenticator.isKnown(kJoe));
}

TEST_F(AuthenticatorTest, FollowsThePasswordFile)
{
    auto authenticator = make();
    EXPECT_EQ("joe", authenticator.check(kJoe, kPeer).user);
    EXPECT_TRUE(authenticator.isKnown(kJoe));

    writeUsers(path, std::string("mallory:") + kCheapHash);
    EXPECT_FALSE(authenticator.isKnown(kJoe)) << "at once";
    EXPECT_EQ("mallory", authenticator.check(kStranger, kPeer).user);
    EXPECT_EQ("", authenticator.check(kJoe, kPeer).user);
    EXPECT_TRUE(authenticator.isKnown(kStranger));

    const std::pair<const char*, std::function<void()>> faults[] = {
        {"broken", [&] { writeUsers(path, kJoesLine + "nonsense"); }},
        {"unsafe", [&] { writeUsers(path, kJoesLine, 0644); }},
        {"gone", [&] { std::filesystem::remove(path); }},
    };
    for (const auto& [fault, happen] : faults)
    {
        logged.clear();
        happen();
        EXPECT_EQ("mallory", authenticator.check(kStranger, kPeer).user) << fault;
        EXPECT_EQ("", authenticator.check(kJoe, kPeer).user) << fault;
        EXPECT_TRUE(authenticator.isKnown(kStranger)) << fault << ": the users stay as they were";
        const std::size_t complaint = logged.find("error auth: " + path);
        EXPECT_NE(std::string::npos, complaint) << logged;
        EXPECT_EQ(std::string::npos, logged.find("error auth: ", complaint + 1)) << "said once: " << logged;
    }

    writeUsers(path, kJoesLine);
    EXPECT_EQ("joe", authenticator.check(kJoe, kPeer).user);
    EXPECT_FALSE(authenticator.isKnown(kStranger));
}

TEST_F(AuthenticatorTest, RefusesAFaultyFileAtStart)
{
    writeUsers(path, kJoesLine + "nonsense\n");
    EXPECT_THROW(make(), std::runtime_error);
    writeUsers(path, "");
    EXPECT_NO_THROW(make());
    EXPECT_NE(std::string::npos, logged.find("nobody can log in")) << logged;
    EXPECT_EQ("", make().check(kJoe, kPeer).user);
}

TEST_F(AuthenticatorTest, PutsOffWhatWouldTakeTooManyThreads)
{
    Limits limits;
    limits.passwordChecks = 0;
    const LogIn logIn = make(limits).check(kJoe, kPeer);
    EXPECT_TRUE(logIn.isBusy);
    EXPECT_EQ("", logIn.user);
    EXPECT_EQ(milliseconds(0), logIn.delay);

    // Many connections of one client are one check.
    limits.passwordChecks = 1;
    auto authenticator = make(limits);
    std::vector<std::thread> clients;
    std::vector<int> isIn(8, 0);
    clients.reserve(isIn.size());
    for (int& in : isIn)
        clients.emplace_back([&] { in = authenticator.check(kJoe, kPeer).user == "joe" ? 1 : 0; });
    for (std::thread& client : clients)
        client.join();
    EXPECT_EQ(std::vector<int>(8, 1), isIn);
}

// The same guess again and again, or different ones.
TEST_F(AuthenticatorTest, GuessersWaitForNoThreadAndLeaveOneToOthers)
{
    constexpr std::size_t kGuessers = 4;
    constexpr int kMostRounds = 300;
    setLogLevel(LogLevel::Error);
    Limits limits;
    limits.passwordChecks = 3;
    const std::string guesses[kGuessers] = {kWrong, kStranger, "Basic am9lOmI=", "Basic am9lOmM="};
    for (const std::size_t different : {std::size_t{1}, kGuessers})
    {
        auto authenticator = make(limits);
        const std::string guesser = "192.0.2.66:40000";
        authenticator.check(kWrong, guesser);
        std::atomic<bool> isOver{false};
        std::atomic<bool> isPutOff{false};
        std::vector<std::thread> guessers;
        for (std::size_t i = 0; i < kGuessers; ++i)
            guessers.emplace_back(
                [&, authorization = guesses[i % different]]
                {
                    while (!isOver)
                        if (authenticator.check(authorization, guesser).isBusy)
                            isPutOff = true;
                });
        for (int i = 0; i < 50 || (!isPutOff && i < kMostRounds); ++i)
            EXPECT_FALSE(authenticator.check("Basic am9lOmEK", std::to_string(i) + ":40000").isBusy);
        isOver = true;
        for (std::thread& thread : guessers)
            thread.join();
        EXPECT_TRUE(isPutOff);
    }
}

// Shows what comes through the gate.
HttpResponse inside(HttpRequest& request, AnswerStream&)
{
    return {200, {}, request.user + (request.header("Authorization") != nullptr ? " and a secret" : "")};
}

TEST_F(AuthenticatorTest, TheGateHoldsRefusalsBackAndLetsNoSecretThrough)
{
    const Limits limits;
    auto authenticator = make(limits);
    FunctionHandler handler;
    handler.onRequest = inside;
    LogInGate gate(handler, authenticator, limits);
    HttpRequest request{"POST", "/cimom", kPeer, {}, {}, "body"};
    WholeAnswer stream;
    const HttpResponse unnamed = gate.refuse(request).response.value();
    EXPECT_EQ(milliseconds(0), unnamed.holdFor) << "no guess";
    EXPECT_STREQ("request refused: it has no credentials", unnamed.logInRefusal);

    request.headers = {{"authorization", kWrong}};
    for (const int delay : {250, 500})
    {
        EXPECT_EQ(limits.unauthenticatedBodyBytes, gate.refuse(request).bodyLimit);
        const HttpResponse refused = gate.answer(request, stream);
        EXPECT_EQ(401U, refused.status);
        EXPECT_EQ(milliseconds(delay), refused.holdFor);
    }

    HttpRequest good = request;
    good.headers = {{"authorization", kJoe}, {"Authorization", kWrong}};
    EXPECT_EQ("joe", gate.answer(good, stream).body);
    good.headers = {{"Authorization", kJoe}};
    EXPECT_LT(limits.unauthenticatedBodyBytes, gate.refuse(good).bodyLimit) << "known by now";
    EXPECT_EQ("joe", gate.answer(good, stream).body);
}

} // namespace
} // namespace cimd
