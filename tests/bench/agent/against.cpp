// Alternating rounds of the same requests.
#include "tests/bench/agent/against.h"

#include "tests/bench/agent/Agent.h"
#include "tests/bench/agent/http_load.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace bench
{

namespace
{

constexpr int kRounds = 15;
constexpr double kMicro = 1e6;

// One of the two, and the least time that the request took it.
struct Side
{
    Side(const std::string& program, const std::vector<std::string>& arguments) : agent(program, arguments) {}

    void round(const std::string& request)
    {
        const double before = agent.processorSeconds();
        load(agent.port(), 1, request, 0);
        best = std::min(best, agent.processorSeconds() - before);
    }

    const Agent agent;
    double best = 0;
};

} // namespace

void benchAgainst(const std::string& program,
                  const std::string& otherProgram,
                  const std::vector<std::string>& arguments)
{
    const struct
    {
        const char* operation;
        const char* item;
    } operations[] = {{"EnumerateInstances", "<VALUE.NAMEDINSTANCE>"},
                      {"EnumerateInstanceNames", "<INSTANCENAME "}};
    std::printf("\nProcessor time of the agent per instance, us, the best of %d rounds in turn\n"
                "  %-22s  %-21s  %9s  %9s  %9s  %6s\n",
                kRounds,
                "operation",
                "class",
                "instances",
                "this",
                "other",
                "ratio");
    Side sides[] = {{program, arguments}, {otherProgram, arguments}};
    for (const char* const name : {"VRAX_FCPort", "VRAX_ProtocolEndPoint", "VRAX_FCPortStatistics"})
        for (const auto& [operation, item] : operations)
        {
            const std::string request = cimRequest(operation, classParameter(name));
            const auto instances = static_cast<double>(countOf(ask(sides[0].agent.port(), request), item));
            ask(sides[1].agent.port(), request);
            for (Side& side : sides)
                side.best = std::numeric_limits<double>::max();
            for (int i = 0; i < kRounds; ++i)
                for (Side& side : sides)
                    side.round(request);
            std::printf("  %-22s  %-21s  %9.0f  %9.2f  %9.2f  %6.2f\n",
                        operation,
                        name,
                        instances,
                        sides[0].best / instances * kMicro,
                        sides[1].best / instances * kMicro,
                        sides[0].best / sides[1].best);
            std::fflush(stdout);
        }
}

} // namespace bench
