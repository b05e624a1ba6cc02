// Answers an operator at the control socket.
#ifndef AGENT_CONTROL_CONTROLSERVER_H
#define AGENT_CONTROL_CONTROLSERVER_H

#include "agent/control/ControlSocket.h"

#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace cimd
{

struct ControlCommand
{
    std::string_view name;
    std::function<std::string()> answer; ///< Lines; called on the server's thread.
};

// One thread serves one client after another, each for two seconds at most; others wait at the socket.
class ControlServer
{
  public:
    // The socket outlives the object. Throws std::system_error if there are no resources for it.
    ControlServer(const ControlSocket& socket, std::vector<ControlCommand> commands);
    // Ends what is being said.
    ~ControlServer();
    ControlServer(const ControlServer&) = delete;
    ControlServer& operator=(const ControlServer&) = delete;

  private:
    void run() const;
    void serve(int client) const;
    std::string answerTo(const std::string& line) const;

    const ControlSocket& _socket;
    const std::vector<ControlCommand> _commands;
    const FileDescriptor _stop; // an event: readable when the end has come
    std::thread _thread;
};

} // namespace cimd

#endif
