// Starting cimd and looking at its memory.
#include "tests/bench/agent/Agent.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench
{

namespace
{

// The port of the first URL of a scheme in a line; 0 if there is none.
std::uint16_t portOf(const std::string& line, const std::string& scheme)
{
    const std::size_t url = line.find(scheme + "127.0.0.1:");
    if (url == std::string::npos)
        return 0;
    return static_cast<std::uint16_t>(std::stoul(line.substr(line.find(':', url + scheme.size()) + 1)));
}

// The line that cimd prints when it is ready; empty when it ends before.
std::string firstLine(int output)
{
    std::string line;
    char c = 0;
    while (read(output, &c, 1) == 1 && c != '\n')
        line += c;
    return line;
}

} // namespace

Agent::Agent(const std::string& program, std::vector<std::string> arguments, bool supervised)
{
    arguments.insert(arguments.begin(), {program, "--port", "0"});
    if (!supervised)
        arguments.push_back("--no-supervisor");
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error(std::string("pipe: ") + std::strerror(errno));
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    const int failure = posix_spawn(&_pid, program.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    const std::string line = failure == 0 ? firstLine(ends[0]) : "";
    close(ends[0]);
    if (failure != 0)
        throw std::runtime_error(program + ": " + std::strerror(failure));
    _port = portOf(line, "http://");
    _tlsPort = portOf(line, "https://");
    _metricsPort = portOf(line, "metrics on http://");
    if (_port == 0)
        throw std::runtime_error(program + " did not start");
}

Agent::~Agent()
{
    kill(_pid, SIGTERM);
    waitpid(_pid, nullptr, 0);
}

Memory Agent::memory() const
{
    Memory memory;
    const std::pair<const char*, std::size_t*> rows[] = {{"VmRSS:", &memory.now},
                                                         {"VmHWM:", &memory.peak},
                                                         {"RssAnon:", &memory.own},
                                                         {"Pss:", &memory.share}};
    for (const char* file : {"status", "smaps_rollup"})
    {
        std::ifstream lines("/proc/" + std::to_string(_pid) + "/" + file);
        for (std::string word; lines >> word;)
            for (const auto& [name, kilobytes] : rows)
                if (word == name)
                    lines >> *kilobytes;
    }
    return memory;
}

double Agent::processorSeconds() const
{
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(_pid, &clock) != 0 || clock_gettime(clock, &time) != 0)
        throw std::runtime_error("the agent has ended");
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void Agent::forgetPeak() const
{
    std::ofstream("/proc/" + std::to_string(_pid) + "/clear_refs") << "5"; // see proc(5)
}

} // namespace bench
