// A running cimd for tests.
#ifndef TESTS_AGENT_PROGRAM_PROCESS_H
#define TESTS_AGENT_PROGRAM_PROCESS_H

#include "agent/http/ListenSocket.h"

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace cimd
{

// Its standard output and error are read through one pipe. Killed at the end of the scope.
class Process
{
  public:
    explicit Process(std::vector<std::string> words);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // The next line; empty at the end.
    std::string readLine();
    // Reads on until a line contains the text, and gives that line; throws if the output ends before.
    std::string readUntil(const std::string& text);
    // Everything up to the end of the last process that cimd started.
    std::string readRest();

    pid_t pid() const { return _pid; }
    void signal(int number);

    // Exit status, or minus the signal that ended it.
    int wait();

  private:
    pid_t _pid = -1;
    FileDescriptor _output;
};

// The port in the line that cimd prints when it is ready, which is checked.
std::uint16_t portOf(const std::string& line);

} // namespace cimd

#endif
