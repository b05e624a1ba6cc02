// The listening TCP socket, opened before anything else so that a taken port is reported at once.
#ifndef AGENT_HTTP_LISTENSOCKET_H
#define AGENT_HTTP_LISTENSOCKET_H

#include "agent/base/FileDescriptor.h"

#include <cstdint>
#include <string>

namespace cimd
{

// Owns a listening, non-blocking TCP socket bound to one address.
class ListenSocket
{
  public:
    // @param address  Numeric IPv4 or IPv6 address; an IPv6 address may stand in brackets.
    // @param port     0 takes any free port.
    // @param isTls    What clients should speak; nothing to the socket itself.
    // Throws std::runtime_error naming address, port and reason; std::system_error where the system has one.
    ListenSocket(const std::string& address, std::uint16_t port, unsigned backlog, bool isTls = false);

    std::uint16_t port() const { return _port; }
    bool isTls() const { return _isTls; }
    // As it was given, without brackets.
    const std::string& address() const { return _address; }
    // Whether a numeric address is for this machine alone.
    static bool isLoopbackAddress(const std::string& address);
    // Whether only this machine can connect.
    bool isLoopback() const { return isLoopbackAddress(_address); }
    // "http://127.0.0.1:5988" or "https://...", with brackets around an IPv6 address.
    std::string url() const;
    // The next client, and its address, "192.0.2.7:49152". Does not wait: the descriptor is negative, and
    // errno says why, if there is none.
    FileDescriptor accept(std::string& peer) const;
    // Whether a client is waiting. Needs no descriptor, for lack of which accept() fails before it looks.
    bool hasClient() const;
    int get() const { return _fd.get(); }

  private:
    FileDescriptor _fd;
    std::uint16_t _port = 0;
    bool _isTls = false;
    std::string _address;
};

} // namespace cimd

#endif
