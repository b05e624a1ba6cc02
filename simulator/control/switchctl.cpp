// Does things to a running simulated switch from a terminal, and shows what it has: the program switchctl.
#include "simulator/control/Verb.h"
#include "simulator/control/protocol.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <sys/socket.h>

namespace
{

using namespace simulator;

constexpr int kUsage = 2;
constexpr int kUnreachable = 3;

constexpr const char* kHelp = R"(usage: switchctl [--socket PATH] COMMAND...
       switchctl [COMMAND...] --help

Talks to a simulated switch that runs in cimd --switch-socket PATH. Words in capitals stand for values.
Without --socket the environment variable VRAX_SWITCH_SOCKET names the socket.

Exit status: 0 done, 1 the switch refuses, 2 no such command, 3 no switch at the socket.

Commands:
)";

[[noreturn]] void printHelp(const Words& beginning)
{
    const std::string commands = helpOn(beginning);
    std::printf("%s%s", beginning.empty() ? kHelp : "", commands.c_str());
    std::exit(EXIT_SUCCESS);
}

struct CommandLine
{
    std::string socket;
    Words words;
};

CommandLine readCommandLine(int argc, char** argv)
{
    CommandLine line;
    if (const char* path = std::getenv("VRAX_SWITCH_SOCKET"))
        line.socket = path;
    for (int i = 1; i < argc; ++i)
    {
        const std::string word = argv[i];
        if (word == "--help")
            printHelp(line.words);
        else if (word == "--complete") // for the shell: what can stand after these words, one a line
        {
            for (const std::string& next : nextWords(Words(argv + i + 1, argv + argc)))
                std::puts(next.c_str());
            std::exit(EXIT_SUCCESS);
        }
        else if (word != "--socket")
            line.words.push_back(word);
        else if (++i < argc)
            line.socket = argv[i];
        else
            throw UsageError("--socket: a path is missing");
    }
    if (line.words.empty())
        throw UsageError("no command; see switchctl --help");
    if (line.socket.empty())
        throw UsageError("no socket; say --socket PATH or set VRAX_SWITCH_SOCKET");
    return line;
}

// Prints the answer as it comes and returns the exit status.
int printAnswer(int socket)
{
    int status = -1;
    char chunk[4096];
    for (;;)
    {
        const ssize_t got = ::recv(socket, chunk, sizeof chunk, 0);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        const bool isFirst = status < 0;
        if (isFirst)
            status = chunk[0] - '0';
        const std::size_t skipped = isFirst ? 1 : 0;
        std::FILE* out = status == 0 ? stdout : stderr;
        if (isFirst && status != 0)
            std::fputs("switchctl: ", out);
        std::fwrite(chunk + skipped, 1, static_cast<std::size_t>(got) - skipped, out);
        std::fflush(out);
    }
    if (status < 0)
        throw std::runtime_error("the switch closed the connection without an answer");
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    std::string place;
    try
    {
        const CommandLine line = readCommandLine(argc, argv);
        place = line.socket + ": ";
        const FileDescriptor socket = connectTo(line.socket);
        sendCommand(socket.get(), line.words);
        return printAnswer(socket.get());
    }
    catch (const UsageError& error)
    {
        std::fprintf(stderr, "switchctl: %s\n", error.what());
        return kUsage;
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "switchctl: %s%s\n", place.c_str(), error.what());
        return kUnreachable;
    }
}
