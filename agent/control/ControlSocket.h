// The Unix socket at which an operator asks a running cimd.
#ifndef AGENT_CONTROL_CONTROLSOCKET_H
#define AGENT_CONTROL_CONTROLSOCKET_H

#include "agent/base/FileDescriptor.h"

#include <string>
#include <sys/types.h>

namespace cimd
{

// A listening, non-blocking socket that only the user of the process, and root, can connect to. Processes
// that are forked later may accept clients, too.
class ControlSocket
{
  public:
    // Takes the place of a socket that nobody listens at any more. Throws std::runtime_error when somebody
    // does, when something else is there, or when it cannot be made.
    explicit ControlSocket(std::string path);
    // Removes the socket, in the process that made it.
    ~ControlSocket();
    ControlSocket(const ControlSocket&) = delete;
    ControlSocket& operator=(const ControlSocket&) = delete;

    int get() const { return _listening.get(); }

  private:
    const std::string _path;
    const FileDescriptor _listening;
    const pid_t _maker;
};

// Sends a command and returns the answer's text, in lines. Throws std::runtime_error with the reason: nobody
// listens at the path, no answer in ten seconds, a command that cimd does not know.
std::string askControl(const std::string& path, const std::string& command);

} // namespace cimd

#endif
