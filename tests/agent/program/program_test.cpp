// cimd as a process: starting, failing to start, stopping.
#include "tests/agent/http/RawClient.h"
#include "tests/agent/program/Process.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <vector>

namespace cimd
{
namespace
{

namespace fs = std::filesystem;

const char* const kRepository = "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><DECLARATION><DECLGROUP>"
                                "</DECLGROUP></DECLARATION></CIM>";

class ProgramTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        char name[] = "/tmp/cimd_test_XXXXXX";
        ASSERT_NE(nullptr, mkdtemp(name));
        directory = name;
        std::ofstream(directory + "/repository.xml") << kRepository;
        std::ofstream(directory + "/providers.reg") << "";
        std::ofstream(directory + "/broken.xml") << "<CIM>\n<DECLARATION>\n</CIM>";
        std::ofstream(directory + "/broken.reg") << "[Class]\n   provider\n";
    }

    void TearDown() override { fs::remove_all(directory); }

    // Options that start; `more` come later and win.
    std::vector<std::string> words(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> all = {"--port",
                                        "0",
                                        "--repository",
                                        directory + "/repository.xml",
                                        "--registration",
                                        directory + "/providers.reg",
                                        "--provider-dir",
                                        directory};
        all.insert(all.end(), more.begin(), more.end());
        return all;
    }

    std::string directory;
};

TEST_F(ProgramTest, AnswersAndStopsOnSignals)
{
    for (const int number : {SIGTERM, SIGINT})
    {
        Process cimd(words());
        const std::uint16_t port = portOf(cimd.readLine());
        RawClient client(port);
        const RawResponse response = client.ask(
            post("<CIM CIMVERSION='2.0' DTDVERSION='2.0'><MESSAGE ID='7' PROTOCOLVERSION='1.0'><SIMPLEREQ>"
                 "<IMETHODCALL NAME='EnumerateInstances'><LOCALNAMESPACEPATH><NAMESPACE NAME='none'/>"
                 "</LOCALNAMESPACEPATH><IPARAMVALUE NAME='ClassName'><CLASSNAME NAME='C'/></IPARAMVALUE>"
                 "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>",
                 "CIMOperation: MethodCall\r\nCIMMethod: EnumerateInstances\r\nCIMObject: none\r\n"));
        EXPECT_EQ(200, response.status);
        EXPECT_EQ("application/xml; charset=\"utf-8\"", response.header("Content-Type"));
        EXPECT_NE(std::string::npos, response.body.find("<ERROR CODE=\"3\" ")) << response.body;
        cimd.signal(number);
        EXPECT_EQ(0, cimd.wait());
    }
}

TEST_F(ProgramTest, SaysWhyItDoesNotStart)
{
    const ListenSocket taken("127.0.0.1", 0, 1);
    const std::string port = std::to_string(taken.port());
    const std::string file = directory + "/x.json";
    const std::string bad = directory + "/bad.json";
    const std::string simulated = std::string(PLATFORM_DIR) + "/with";
    const std::string real = std::string(PLATFORM_DIR) + "/without";
    const struct
    {
        std::vector<std::string> options;
        std::string fault; // start of the line
    } rows[] = {
        {{"--port", port},
         "cimd: --listen: cannot listen on http://127.0.0.1:" + port + ": bind: Address already"},
        {{"--listen", "switch"}, "cimd: --listen: cannot listen on \"switch\": not an IPv4 or IPv6 address"},
        {{"--port", "x"}, "cimd: --port: \"x\" is not a port number"},
        {{"--repository", directory + "/none.xml"}, "cimd: --repository: " + directory + "/none.xml"},
        {{"--repository", directory + "/broken.xml"}, "cimd: --repository: " + directory + "/broken.xml:"},
        {{"--registration", directory + "/none.reg"}, "cimd: --registration: " + directory + "/none.reg"},
        {{"--registration", directory + "/broken.reg"},
         "cimd: --registration: " + directory + "/broken.reg:2"},
        {{"--scenario", file},
         "cimd: --scenario " + file + ": cannot load " + directory + "/libvraxplatform.so: "},
        {{"--provider-dir", real, "--scenario", file},
         "cimd: --scenario " + file + ": " + real + "/libvraxplatform.so is not a simulated switch"},
        {{"--provider-dir", simulated, "--scenario", bad},
         "cimd: --scenario " + bad + ": " + bad + ":3: ports: a number was expected"},
    };
    for (const auto& row : rows)
    {
        Process cimd(words(row.options));
        const std::string line = cimd.readLine();
        EXPECT_EQ(0U, line.find(row.fault)) << line;
        EXPECT_EQ(2, cimd.wait()) << row.fault;
    }
}

TEST_F(ProgramTest, StartsOnAScenario)
{
    Process cimd(words({"--provider-dir", std::string(PLATFORM_DIR) + "/with", "--scenario", "good.json"}));
    portOf(cimd.readLine());
    cimd.signal(SIGTERM);
    EXPECT_EQ(0, cimd.wait());
}

// A connection is made as soon as the kernel has a place for it, accepted or not.
FileDescriptor connectWithin(std::chrono::microseconds time, std::uint16_t port)
{
    FileDescriptor fd(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const timeval limit{time.count() / 1'000'000, time.count() % 1'000'000};
    setsockopt(fd.get(), SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool isMade = connect(fd.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    return isMade ? std::move(fd) : FileDescriptor();
}

TEST_F(ProgramTest, LetsAsManyClientsWaitAsTheBacklogHolds)
{
    Process cimd(words({"--max-connections", "1", "--max-backlog", "3"}));
    const std::uint16_t port = portOf(cimd.readLine());
    auto served = std::make_unique<RawClient>(port);
    EXPECT_EQ(405, served->ask("GET /cimom HTTP/1.1\r\nHost: a\r\n\r\n").status);
    std::vector<FileDescriptor> waiting;
    for (int i = 0; i < 3; ++i)
        EXPECT_LE(0, waiting.emplace_back(connectWithin(std::chrono::minutes(1), port)).get()) << i;
    waiting.push_back(connectWithin(std::chrono::minutes(1), port)); // the kernel grants one more
    EXPECT_GT(0, connectWithin(std::chrono::milliseconds(300), port).get());
    waiting.clear();
    served.reset();
    EXPECT_EQ(405, RawClient(port).ask("GET /cimom HTTP/1.1\r\nHost: a\r\n\r\n").status);
}

TEST_F(ProgramTest, ExplainsItself)
{
    Process help({"--help"});
    EXPECT_EQ("NAME", help.readLine());
    EXPECT_EQ(0, help.wait());
    Process version({"--version"});
    EXPECT_EQ(0U, version.readLine().find("cimd "));
    EXPECT_EQ(0, version.wait());
}

} // namespace
} // namespace cimd
