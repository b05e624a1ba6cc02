// The Unix socket at which the running simulated switch takes commands.
#ifndef SIMULATOR_CONTROL_CONTROLSOCKET_H
#define SIMULATOR_CONTROL_CONTROLSOCKET_H

#include "simulator/FileDescriptor.h"

#include <memory>
#include <string>
#include <thread>

namespace simulator
{

// Only the user of the process (and root) can connect. One command a connection, on a thread of its own:
// words that end with a zero byte each, then the end of the sending side. The answer is an exit status as a
// digit, then text, to the end of the connection. See exchange() for the other side.
class ControlSocket
{
  public:
    // Takes the place of a socket that nobody listens at any more. Throws std::runtime_error when somebody
    // does, when something else is there, or when it cannot be made.
    explicit ControlSocket(const std::string& path);
    // Ends the commands that run and removes the socket.
    ~ControlSocket();
    ControlSocket(const ControlSocket&) = delete;
    ControlSocket& operator=(const ControlSocket&) = delete;

  private:
    class Clients;

    void serve();

    std::string _path;
    FileDescriptor _listening;
    FileDescriptor _stopped; // an event: readable when the end has come
    std::unique_ptr<Clients> _clients;
    std::thread _thread;
};

} // namespace simulator

#endif
