// A TCP client for tests that sends exactly the bytes it is given and reads HTTP responses.
#ifndef TESTS_AGENT_HTTP_RAWCLIENT_H
#define TESTS_AGENT_HTTP_RAWCLIENT_H

#include "agent/http/ListenSocket.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace cimd
{

struct RawResponse
{
    int status = 0;   // 0: the server closed the connection without an answer
    std::string head; // status line and headers
    std::string body;
    std::string trailers;    // header lines after a chunked body
    bool isComplete = false; // as long as announced, or ended by a last chunk

    // Value of a header, empty if there is none.
    std::string header(std::string_view name) const;
};

// Connects to the loopback address; one connection, as long as the object lives. Reads fail after a generous
// time instead of hanging for ever. Faults are thrown as std::runtime_error.
class RawClient
{
  public:
    explicit RawClient(std::uint16_t port, bool ipv6 = false);

    void send(std::string_view bytes);
    // Half of a close: answers can still come.
    void endSending();
    RawResponse receive();
    RawResponse ask(std::string_view bytes)
    {
        send(bytes);
        return receive();
    }
    // Whether there is something to read, or the end, within the time.
    bool hears(std::chrono::milliseconds within);
    // What a single read gets; empty at the end of the connection.
    std::string receiveOnce();
    // Reads until the server closes the connection; throws if it does not.
    void awaitClose();

  private:
    bool fill();
    void receiveChunks(RawResponse& response);
    bool take(std::size_t bytes, std::string& to);
    bool takeLine(std::string& to);

    FileDescriptor _fd;
    std::string _buffer;
};

// False when nobody listens on the port.
bool canConnect(std::uint16_t port);

// A POST to /cimom with a body and extra header lines, each ending in CRLF.
std::string post(std::string_view body, std::string_view headers = {});

} // namespace cimd

#endif
