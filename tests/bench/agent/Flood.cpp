// Many sockets, one after the other.
#include "tests/bench/agent/Flood.h"

#include <cerrno>
#include <chrono>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench
{

namespace
{

constexpr unsigned kAddresses = 30;
constexpr std::size_t kTurn = 100; // sockets between two rests

struct Kind
{
    std::size_t count;
    bool isTls;
    std::string first; // sent at once
    std::string more;  // sent again and again
};

const std::string kHead = "POST /cimom HTTP/1.1\r\nHost: s\r\n";

// The last is the start of a ClientHello.
const Kind kKinds[] = {{2000, false, "", ""},
                       {500, false, kHead, "X"},
                       {500, false, kHead + "Content-Length: 60000\r\n\r\n", "y"},
                       {500, true, std::string("\x16\x03\x01\x01\x00\x01", 6), ""}};

struct Slot
{
    const Kind* kind;
    in_addr from;
    int fd = -1;
    bool hasBegun = false;
};

sockaddr_in loopback(std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

bool open(Slot& slot, std::uint16_t port)
{
    slot.fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    slot.hasBegun = false;
    sockaddr_in from = loopback(0);
    from.sin_addr = slot.from;
    const sockaddr_in to = loopback(port);
    return slot.fd >= 0 && bind(slot.fd, reinterpret_cast<const sockaddr*>(&from), sizeof from) == 0 &&
           (connect(slot.fd, reinterpret_cast<const sockaddr*>(&to), sizeof to) == 0 || errno == EINPROGRESS);
}

// False when the connection has ended.
bool goOn(Slot& slot)
{
    const std::string& bytes = slot.hasBegun ? slot.kind->more : slot.kind->first;
    if (!bytes.empty())
        slot.hasBegun = send(slot.fd, bytes.data(), bytes.size(), MSG_NOSIGNAL) >= 0 || slot.hasBegun;
    char answer[256];
    const ssize_t got = recv(slot.fd, answer, sizeof answer, 0);
    return got > 0 || (got < 0 && (errno == EAGAIN || errno == ENOTCONN));
}

} // namespace

Flood::Flood(std::uint16_t port, std::uint16_t tlsPort) : _thread([=] { run(port, tlsPort); }) {}

Flood::~Flood()
{
    _isOver = true;
    _thread.join();
}

void Flood::run(std::uint16_t port, std::uint16_t tlsPort)
{
    std::vector<Slot> slots;
    for (const Kind& kind : kKinds)
        for (std::size_t i = 0; i < kind.count; ++i)
            slots.push_back(
                {&kind, {htonl(INADDR_LOOPBACK + 256 + 1 + static_cast<unsigned>(i) % kAddresses)}});
    for (std::size_t i = 0; !_isOver; i = (i + 1) % slots.size())
    {
        Slot& slot = slots[i];
        if (slot.fd < 0 && open(slot, slot.kind->isTls ? tlsPort : port))
            ++_opened;
        else if (slot.fd >= 0 && !goOn(slot))
        {
            close(slot.fd);
            slot.fd = -1;
        }
        if (i % kTurn == 0) // the clients that are measured need the processor, too
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    for (const Slot& slot : slots)
        if (slot.fd >= 0)
            close(slot.fd);
}

} // namespace bench
