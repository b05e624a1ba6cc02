// simgen: writes a scenario of a given size.
#include "simulator/generator/generate.h"
#include "simulator/model/hex.h"
#include "simulator/scenario/scenario_json.h"

#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

namespace
{

using simulator::FabricSize;

struct Option
{
    const char* name;
    int FabricSize::*member;
    const char* help;
};

constexpr Option kOptions[] = {
    {"--domains", &FabricSize::domains, "switches of the fabric, 1 to 239 (3)"},
    {"--local-ports", &FabricSize::localPorts, "ports of the local switch, 1 to 1536 (24)"},
    {"--nodes", &FabricSize::nodes, "attached nodes, 0 to 20000 (20)"},
    {"--seed", &FabricSize::seed, "seed of everything made up (1)"},
};

void printHelp(std::FILE* out)
{
    std::fprintf(out,
                 "usage: simgen [options] [FILE]\nWrites a scenario to FILE, or to the standard output.\n");
    for (const Option& option : kOptions)
        std::fprintf(out, "  %-14s N  %s\n", option.name, option.help);
}

// The member that the argument names; null when it is no option.
int FabricSize::*memberOf(const char* argument)
{
    for (const Option& option : kOptions)
        if (std::strcmp(option.name, argument) == 0)
            return option.member;
    return nullptr;
}

int run(int argc, char** argv)
{
    FabricSize size;
    std::string path;
    for (int i = 1; i < argc; ++i)
    {
        const std::string argument = argv[i];
        if (argument == "--help")
        {
            printHelp(stdout);
            return 0;
        }
        if (const auto member = memberOf(argv[i]))
        {
            if (i + 1 >= argc || !simulator::parseDecimal(argv[i + 1], size.*member))
            {
                std::fprintf(stderr, "simgen: %s: expected a whole number\n", argv[i]);
                return 2;
            }
            ++i;
        }
        else if (argument.rfind("--", 0) == 0 || !path.empty())
        {
            std::fprintf(stderr, "simgen: unexpected argument %s\n", argv[i]);
            printHelp(stderr);
            return 2;
        }
        else
        {
            path = argument;
        }
    }
    const simulator::Scenario scenario = simulator::generateFabric(size);
    if (!path.empty())
    {
        simulator::writeScenario(scenario, path);
        return 0;
    }
    const std::string text = simulator::formatScenario(scenario);
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (!written || std::fflush(stdout) != 0)
    {
        std::perror("simgen: cannot write");
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    try
    {
        return run(argc, argv);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "simgen: %s\n", error.what());
        return 1;
    }
}
