// What the agent costs a client and its switch.
//
// Times are of the wall clock and include this program, which shares the machine with the agent.
#include "tests/bench/agent/Agent.h"
#include "tests/bench/agent/Flood.h"
#include "tests/bench/agent/against.h"
#include "tests/bench/agent/http_load.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <thread>

namespace
{

using namespace bench;
using Clock = std::chrono::steady_clock;

constexpr int kStarts = 9;
constexpr double kRoundSeconds = 1.0;
constexpr int kRounds = 3;
constexpr unsigned kConnections[] = {1, 8, 64};
constexpr std::chrono::seconds kTidied{11}; // the agent tidies up every ten
constexpr double kMilli = 1e3;
constexpr double kMega = 1e6;

// Together their instances are all that there are.
constexpr const char* kRoots[] = {
    "CIM_ManagedElement", "CIM_Dependency", "CIM_Component", "CIM_MemberOfCollection"};

struct Places
{
    std::string program;
    std::vector<std::string> scenario;
    std::vector<std::string> tls;  // serves HTTPS, too
    std::vector<std::string> rows; // the classes of rows_provider.cpp in place of the switch's
};

std::string enumerate(const std::string& className)
{
    return cimRequest("EnumerateInstances", classParameter(className));
}

// The INSTANCENAME of the first instance of a class.
std::string firstName(const Agent& agent, const std::string& className)
{
    const std::string names =
        ask(agent.port(), cimRequest("EnumerateInstanceNames", classParameter(className)));
    const std::string closing = "</INSTANCENAME>";
    const std::size_t from = names.find("<INSTANCENAME ");
    const std::size_t to = names.find(closing);
    if (to == std::string::npos)
        throw std::runtime_error(className + " has no instance");
    return names.substr(from, to + closing.size() - from);
}

std::string getInstance(const std::string& instanceName)
{
    return cimRequest("GetInstance", "<IPARAMVALUE NAME=\"InstanceName\">" + instanceName + "</IPARAMVALUE>");
}

void printMemoryHead(const char* of)
{
    std::printf("\nMemory of the agent, MiB, %s\n  %-46s  %10s  %10s  %10s  %10s\n",
                of,
                "",
                "RSS",
                "its share",
                "no file's",
                "peak RSS");
}

void printMemory(const char* when, const Memory& memory)
{
    std::printf("  %-46s  %10.1f  %10.1f  %10.1f  %10.1f\n",
                when,
                static_cast<double>(memory.now) / 1024,
                static_cast<double>(memory.share) / 1024,
                static_cast<double>(memory.own) / 1024,
                static_cast<double>(memory.peak) / 1024);
    std::fflush(stdout);
}

void benchStart(const Places& places)
{
    double best = 0;
    for (int i = 0; i < kStarts; ++i)
    {
        const Clock::time_point start = Clock::now();
        const Agent agent(places.program, places.scenario, true);
        ask(agent.port(), enumerate("CIM_ObjectManager"));
        const double each = std::chrono::duration<double>(Clock::now() - start).count();
        best = i == 0 ? each : std::min(best, each);
    }
    std::printf(
        "\nStart of the process to the first answer, the best of %d: %.1f ms\n", kStarts, best * kMilli);
}

void benchRequests(const Agent& agent, const char* title, const std::string& request)
{
    std::printf("\n%s\n  %11s  %12s  %10s  %10s  %10s\n",
                title,
                "connections",
                "per second",
                "p50 ms",
                "p99 ms",
                "MB/s");
    for (const unsigned connections : kConnections)
    {
        LoadResult best;
        for (int round = 0; round < kRounds; ++round)
        {
            LoadResult one = load(agent.port(), connections, request, kRoundSeconds);
            if (round == 0 || one.rate() > best.rate())
                best = std::move(one);
        }
        std::printf("  %11u  %12.0f  %10.3f  %10.3f  %10.1f\n",
                    connections,
                    best.rate(),
                    best.quantile(0.5) * kMilli,
                    best.quantile(0.99) * kMilli,
                    static_cast<double>(best.bytes) / best.seconds / kMega);
        std::fflush(stdout);
    }
}

// The default scenario: few instances, many requests.
void benchSwitch(const Places& places)
{
    const Agent agent(places.program, places.scenario);
    const Memory started = agent.memory();
    const std::string get = getInstance(firstName(agent, "VRAX_FCPortStatistics"));
    for (const char* root : kRoots)
        ask(agent.port(), enumerate(root));
    const Memory walked = agent.memory();
    benchRequests(agent, "GetInstance over HTTP: VRAX_FCPortStatistics", get);
    const std::string all = enumerate("VRAX_FCPortStatistics");
    char title[96];
    std::snprintf(title,
                  sizeof(title),
                  "EnumerateInstances over HTTP: VRAX_FCPortStatistics, %zu instances",
                  countOf(ask(agent.port(), all), "<VALUE.NAMEDINSTANCE>"));
    benchRequests(agent, title, all);
    printMemoryHead("default scenario");
    printMemory("started", started);
    printMemory("every class read once, at rest", walked);
    printMemory("just after 64 connections under load", agent.memory());
    std::this_thread::sleep_for(kTidied);
    printMemory("at rest again", agent.memory());
}

// What the agent holds while one client reads all there is of a fabric, as fast as it comes. The simulated
// switch is part of the process.
void benchStreaming(const Places& places, const std::vector<std::string>& fabric)
{
    const Agent agent(places.program, fabric);
    printMemoryHead("5,000 nodes in the fabric");
    printMemory("started", agent.memory());
    for (const char* when : {"every class streamed once", "every class streamed again"})
    {
        agent.forgetPeak();
        for (const char* root : kRoots)
            load(agent.port(), 1, enumerate(root), 0);
        printMemory(when, agent.memory());
    }
}

// An image of the switch's configuration, which is an array of bytes: uploaded, and read as it was uploaded.
void benchImage(const Places& places)
{
    constexpr std::size_t kBytes = 1024 * 1024;
    const Agent agent(places.program, places.scenario);
    const std::string about = "VRAX_ConfigurationData";
    std::string name = firstName(agent, about);
    ask(agent.port(), getInstance(name)); // what the agent keeps anyway is there now
    const std::string present = "DEFAULT";
    name.replace(name.find(present), present.size(), "NEW");
    const std::size_t idAt = name.find("VRAX:");
    const std::string id = name.substr(idAt, name.find('<', idAt) - idAt);

    std::string values;
    for (std::size_t i = 0; i < kBytes; ++i)
        values += "<VALUE>" + std::to_string(100 + i % 156) + "</VALUE>";
    const std::string upload =
        cimRequest("CreateInstance",
                   "<IPARAMVALUE NAME=\"NewInstance\"><INSTANCE CLASSNAME=\"" + about +
                       "\"><PROPERTY NAME=\"InstanceID\" TYPE=\"string\"><VALUE>" + id +
                       "</VALUE></PROPERTY><PROPERTY.ARRAY NAME=\"ConfigurationInformation\" "
                       "TYPE=\"uint8\"><VALUE.ARRAY>" +
                       values + "</VALUE.ARRAY></PROPERTY.ARRAY></INSTANCE></IPARAMVALUE>");
    std::printf("\nA configuration image of 1 MiB\n  %-10s  %12s  %8s  %24s\n",
                "",
                "bytes of XML",
                "ms",
                "peak memory per byte");
    const auto row = [&](const char* title, const std::string& request, std::size_t sent)
    {
        agent.forgetPeak();
        const std::size_t before = agent.memory().now;
        const LoadResult result = load(agent.port(), 1, request, 0);
        std::printf("  %-10s  %12zu  %8.0f  %24.1f\n",
                    title,
                    std::max(sent, result.bytes),
                    result.seconds * kMilli,
                    static_cast<double>(agent.memory().peak - before) * 1024 / kBytes);
        std::fflush(stdout);
    };
    row("uploaded", upload, upload.size());
    row("read", getInstance(name), 0);
}

// What clients notice of others that take all connections: one with a connection of its own, and ones that
// come.
void benchFlood(const Places& places)
{
    constexpr double kSeconds = 5.0;
    std::vector<std::string> arguments = places.scenario;
    arguments.insert(arguments.end(), places.tls.begin(), places.tls.end());
    const Agent agent(places.program, arguments);
    const std::string request = getInstance(firstName(agent, "VRAX_FCPortStatistics"));
    std::printf("\n3,500 connections that are taken and not used, from 30 addresses\n"
                "  %-12s  %10s  %11s  %10s  %10s  %10s\n",
                "clients",
                "answers",
                "asked again",
                "p50 ms",
                "p99 ms",
                "max ms");
    const auto row = [](const char* title, const LoadResult& result)
    {
        std::printf("  %-12s  %10zu  %11zu  %10.3f  %10.3f  %10.3f\n",
                    title,
                    result.answerSeconds.size(),
                    result.hungUp,
                    result.quantile(0.5) * kMilli,
                    result.quantile(0.99) * kMilli,
                    result.quantile(1) * kMilli);
        std::fflush(stdout);
    };
    ask(agent.port(), request);
    const Flood flood(agent.port(), agent.tlsPort());
    std::this_thread::sleep_for(std::chrono::seconds(1));
    row("new", newClients(agent.port(), request, kSeconds));
    row("kept", load(agent.port(), 1, request, kSeconds));
    std::printf("  %zu connections were opened meanwhile\n", flood.opened());
}

struct Enumeration
{
    const std::vector<std::string>& arguments;
    const char* className;
    const char* readBefore; // what the agent keeps anyway is there once this class has been read
};

// Long answers: what an instance costs, and whether the agent's memory grows with them.
void benchLongAnswers(const Places& places, const std::vector<std::string>& fabric)
{
    const Enumeration enumerations[] = {
        {places.rows, "Bench_Rows10000", "Bench_Rows1"},
        {places.rows, "Bench_Rows100000", "Bench_Rows1"},
        {fabric, "VRAX_FCPort", "VRAX_FCPort"},
    };
    std::printf("\nOne client enumerates: the classes of a test provider, and one of the switch's\n"
                "  %-17s  %10s  %10s  %12s  %10s  %8s  %14s\n",
                "class",
                "instances",
                "bytes each",
                "instances/s",
                "us each",
                "MB/s",
                "growth KiB");
    for (const Enumeration& one : enumerations)
    {
        const Agent agent(places.program, one.arguments);
        ask(agent.port(), enumerate(one.readBefore));
        agent.forgetPeak();
        const std::size_t before = agent.memory().now;
        const std::string request = enumerate(one.className);
        LoadResult best = load(agent.port(), 1, request, 0);
        const std::size_t growth = agent.memory().peak - before;
        for (int round = 1; round < kRounds; ++round)
        {
            LoadResult next = load(agent.port(), 1, request, 0);
            if (next.seconds < best.seconds)
                best = std::move(next);
        }
        const auto instances =
            static_cast<double>(countOf(ask(agent.port(), request), "<VALUE.NAMEDINSTANCE>"));
        std::printf("  %-17s  %10.0f  %10.0f  %12.0f  %10.2f  %8.1f  %14zu\n",
                    one.className,
                    instances,
                    static_cast<double>(best.bytes) / instances,
                    instances / best.seconds,
                    best.seconds / instances * kMega,
                    static_cast<double>(best.bytes) / best.seconds / kMega,
                    growth);
        std::fflush(stdout);
    }
}

// A large fabric scraped: maps that are empty, which then hold all of it, and maps that are fresh.
void benchScrape(const Places& places, std::vector<std::string> fabric)
{
    fabric.insert(fabric.end(), {"--metrics-port", "0"});
    const Agent agent(places.program, fabric);
    const std::string request = "GET /metrics HTTP/1.1\r\nHost: localhost\r\n\r\n";
    std::printf("\nA scrape of the metrics of a large fabric\n  %-6s  %12s  %8s  %14s\n",
                "maps",
                "bytes",
                "ms",
                "growth KiB");
    for (const char* maps : {"empty", "fresh"})
    {
        agent.forgetPeak();
        const std::size_t before = agent.memory().now;
        const LoadResult result = load(agent.metricsPort(), 1, request, 0);
        std::printf("  %-6s  %12zu  %8.0f  %14zu\n",
                    maps,
                    result.bytes,
                    result.seconds * kMilli,
                    agent.memory().peak - before);
        std::fflush(stdout);
    }
    std::printf("  %zu instances of VRAX_FCPort\n",
                countOf(ask(agent.port(), enumerate("VRAX_FCPort")), "<VALUE.NAMEDINSTANCE>"));
}

} // namespace

int main(int argc, char** argv)
{
    const bool isComparison = argc == 5 && std::string(argv[1]) == "--against";
    if (!isComparison && argc != 6)
    {
        std::fprintf(
            stderr,
            "usage: %s <build directory> <scenario of a large fabric> <one of 5,000 nodes> <certificate> "
            "<key>\n"
            "       %s --against <other build directory> <build directory> <scenario of a large fabric>\n",
            argv[0],
            argv[0]);
        return 2;
    }
    const std::string build = argv[1];
    const Places places{build + "/bin/cimd",
                        {"--scenario", BENCH_DEFAULT_SCENARIO},
                        {"--certificate", argv[argc - 2], "--private-key", argv[argc - 1], "--tls-port", "0"},
                        {"--repository",
                         BENCH_FILES "/repository.xml",
                         "--registration",
                         BENCH_FILES "/providers.reg",
                         "--provider-dir",
                         BENCH_PROVIDERS}};
    try
    {
        if (isComparison)
        {
            const std::string other = argv[2];
            benchAgainst(argv[3] + std::string("/bin/cimd"), other + "/bin/cimd", {"--scenario", argv[4]});
            return 0;
        }
        benchStart(places);
        benchSwitch(places);
        benchStreaming(places, {"--scenario", argv[3]});
        benchFlood(places);
        benchImage(places);
        benchLongAnswers(places, {"--scenario", argv[2]});
        benchScrape(places, {"--scenario", argv[2]});
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
        return 1;
    }
}
