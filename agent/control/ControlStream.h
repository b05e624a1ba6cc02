// What is said over the control socket, on both sides.
#ifndef AGENT_CONTROL_CONTROLSTREAM_H
#define AGENT_CONTROL_CONTROLSTREAM_H

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace cimd
{

// One command a connection: a line. The answer is a line that says "ok" or what is wrong, then, if it was ok,
// the text that was asked for, to the end of the connection.
constexpr std::string_view kControlDone = "ok";
constexpr std::size_t kMostCommandBytes = 256;

// A non-blocking socket on which everything together may take some time. All members return false when the
// time is over, the other side is gone, or there is something to read at `stop`.
class ControlStream
{
  public:
    // The socket outlives the object. A negative `stop`: none.
    ControlStream(int socket, std::chrono::milliseconds time, int stop = -1)
        : _socket(socket), _stop(stop), _deadline(std::chrono::steady_clock::now() + time)
    {
    }

    bool send(std::string_view bytes) const;
    // A line without its end; false, too, if it has more than kMostCommandBytes.
    bool readLine(std::string& line) const;
    // To the end of the connection.
    bool readAll(std::string& bytes) const;

  private:
    bool wait(short events) const;
    // Appends what has come; false, too, at the end of the connection, which sets `isOver`.
    bool readMore(std::string& bytes, bool& isOver) const;

    const int _socket;
    const int _stop;
    const std::chrono::steady_clock::time_point _deadline;
};

} // namespace cimd

#endif
