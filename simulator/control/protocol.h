// What a command and its answer look like on the control socket, for both sides.
#ifndef SIMULATOR_CONTROL_PROTOCOL_H
#define SIMULATOR_CONTROL_PROTOCOL_H

#include "simulator/FileDescriptor.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/un.h>
#include <vector>

namespace simulator
{

// The first byte of an answer, and the status with which switchctl ends.
enum class Answer : char
{
    done = '0',
    refused = '1', // by the switch
    usage = '2',   // no such command
};

constexpr std::size_t kMostCommandBytes = 65536;

// Throws std::runtime_error when the path is too long for a socket.
sockaddr_un addressOf(const std::string& path);

// Sends all of it; false when the other side is gone.
bool sendAll(int socket, std::string_view bytes);

// Both throw std::runtime_error with the reason.
FileDescriptor connectTo(const std::string& path);
void sendCommand(int socket, const std::vector<std::string>& words);

} // namespace simulator

#endif
