// Clients that take connections and do nothing with them.
#ifndef TESTS_BENCH_AGENT_FLOOD_H
#define TESTS_BENCH_AGENT_FLOOD_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>

namespace bench
{

// From thirty loopback addresses, for as long as the object lives: 2,000 silent connections, 500 on which a
// head comes byte by byte, 500 on which a body does, and 500 that stop within the TLS handshake. One that the
// server closes is opened again at once.
class Flood
{
  public:
    Flood(std::uint16_t port, std::uint16_t tlsPort);
    ~Flood();
    Flood(const Flood&) = delete;
    Flood& operator=(const Flood&) = delete;

    std::size_t opened() const { return _opened; } // connections, so far

  private:
    void run(std::uint16_t port, std::uint16_t tlsPort);

    std::atomic<bool> _isOver{false};
    std::atomic<std::size_t> _opened{0};
    std::thread _thread; // last: it uses the others
};

} // namespace bench

#endif
