// Starting cimd and reading what it says.
#include "tests/agent/program/Process.h"

#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace cimd
{
namespace
{

// Crashes are part of the tests: they leave no core behind, and a sanitizer must let them happen.
void prepareForCrashes()
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    for (const char* name : {"ASAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"})
    {
        const char* given = std::getenv(name);
        const std::string add = "handle_segv=0:handle_abort=0";
        const std::string now = given != nullptr ? given : "";
        if (now.find(add) == std::string::npos)
            setenv(name, (now.empty() ? add : now + ":" + add).c_str(), 1);
    }
}

} // namespace

Process::Process(std::vector<std::string> words)
{
    prepareForCrashes();
    words.insert(words.begin(), CIMD_PROGRAM);
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    int ends[2];
    if (pipe(ends) != 0)
        throw std::runtime_error("pipe");
    _output = FileDescriptor(ends[0]);
    const FileDescriptor writeEnd(ends[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDERR_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addclose(&actions, ends[1]);
    const int rc = posix_spawn(&_pid, CIMD_PROGRAM, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0)
        throw std::runtime_error("posix_spawn");
}

Process::~Process()
{
    if (_pid > 0)
    {
        kill(_pid, SIGKILL);
        waitpid(_pid, nullptr, 0);
    }
}

std::string Process::readLine()
{
    std::string line;
    char c = 0;
    while (read(_output.get(), &c, 1) == 1 && c != '\n')
        line += c;
    return line;
}

std::string Process::readUntil(const std::string& text)
{
    std::string all;
    for (std::string line = readLine(); !line.empty(); line = readLine())
    {
        if (line.find(text) != std::string::npos)
            return line;
        all += line + "\n";
    }
    throw std::runtime_error("cimd did not say \"" + text + "\" but:\n" + all);
}

std::string Process::readRest()
{
    std::string all;
    for (std::string line = readLine(); !line.empty(); line = readLine())
        all += line + "\n";
    return all;
}

void Process::signal(int number)
{
    kill(_pid, number);
}

int Process::wait()
{
    int status = 0;
    waitpid(_pid, &status, 0);
    _pid = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::uint16_t portOf(const std::string& line)
{
    EXPECT_EQ(0U, line.find("cimd: listening on http://127.0.0.1:")) << line;
    return static_cast<std::uint16_t>(std::stoul(line.substr(line.rfind(':') + 1)));
}

} // namespace cimd
