// Requests over kept connections.
#include "tests/bench/agent/http_load.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace bench
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr std::size_t kStartKept = 1024; // of a body, enough to see an error
constexpr std::size_t kReadBytes = 256 * 1024;

[[noreturn]] void fail(const std::string& what)
{
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

class HungUp : public std::runtime_error
{
  public:
    HungUp() : std::runtime_error("the agent hung up before the end of an answer") {}
};

class Connection
{
  public:
    explicit Connection(std::uint16_t port, bool keepBody = false)
        : _fd(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)), _keepBody(keepBody), _reader(keepBody)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const int on = 1;
        if (_fd < 0 || connect(_fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
            setsockopt(_fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on)) != 0)
            fail("connect");
    }
    ~Connection() { close(_fd); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    int fd() const { return _fd; }
    Clock::time_point sentAt() const { return _sentAt; }

    void send(const std::string& request)
    {
        _reader = AnswerReader(_keepBody);
        _sentAt = Clock::now();
        for (std::size_t sent = 0; sent < request.size();)
        {
            const ssize_t n = ::send(_fd, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
            if (n < 0 && (errno == EPIPE || errno == ECONNRESET))
                throw HungUp();
            if (n < 0)
                fail("send");
            sent += static_cast<std::size_t>(n);
        }
    }

    // Reads what is there, or waits for it; true when the answer is complete.
    bool receive(std::vector<char>& buffer)
    {
        const ssize_t n = recv(_fd, buffer.data(), buffer.size(), 0);
        if (n == 0 || (n < 0 && errno == ECONNRESET))
            throw HungUp();
        if (n < 0)
            fail("recv");
        return _reader.take(buffer.data(), static_cast<std::size_t>(n));
    }

    const AnswerReader& answer() const { return _reader; }

  private:
    int _fd;
    bool _keepBody;
    AnswerReader _reader;
    Clock::time_point _sentAt;
};

} // namespace

std::string classParameter(const std::string& name)
{
    return "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"" + name + "\"/></IPARAMVALUE>";
}

std::string cimRequest(const std::string& operation, const std::string& parameters)
{
    const std::string body =
        "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
        "<MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ><IMETHODCALL NAME=\"" +
        operation +
        "\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE "
        "NAME=\"interop\"/></LOCALNAMESPACEPATH>" +
        parameters + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
    return "POST /cimom HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/xml; charset=\"utf-8\"\r\n"
           "CIMOperation: MethodCall\r\nCIMObject: root/interop\r\nCIMMethod: " +
           operation + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

bool AnswerReader::take(const char* data, std::size_t size)
{
    for (std::size_t i = 0; i < size;)
    {
        if (_part == Part::Done)
            throw std::runtime_error("bytes after the answer");
        if (_part == Part::Plain || _part == Part::Chunk)
            i += takeBody(data + i, size - i);
        else
            takeLine(data[i++]);
    }
    if (_part == Part::Done && _body.find("<ERROR") < kStartKept)
        throw std::runtime_error("the agent answers " + _body);
    return _part == Part::Done;
}

std::size_t AnswerReader::takeBody(const char* data, std::size_t size)
{
    const std::size_t n = std::min(size, _left);
    if (_keepBody || _body.size() < kStartKept)
        _body.append(data, n);
    _bodyBytes += n;
    _left -= n;
    if (_left == 0)
        _part = _part == Part::Plain ? Part::Done : Part::ChunkEnd;
    return n;
}

void AnswerReader::takeLine(char c)
{
    _line += c;
    if (c == '\n')
        endLine();
}

void AnswerReader::endLine()
{
    const bool isEmpty = _line == "\r\n";
    switch (_part)
    {
    case Part::Head:
        if (_line.size() < 4 || _line.compare(_line.size() - 4, 4, "\r\n\r\n") != 0)
            return;
        readHead();
        break;
    case Part::ChunkSize:
        _left = std::stoul(_line, nullptr, 16);
        _part = _left > 0 ? Part::Chunk : Part::Trailer;
        break;
    case Part::ChunkEnd:
        _part = Part::ChunkSize;
        break;
    default: // Part::Trailer
        if (isEmpty)
            _part = Part::Done;
        break;
    }
    _line.clear();
}

void AnswerReader::readHead()
{
    static const std::string kLength = "\r\nContent-Length: ";
    if (_line.compare(0, 15, "HTTP/1.1 200 OK") != 0)
        throw std::runtime_error("the agent answers " + _line);
    const std::size_t length = _line.find(kLength);
    if (length == std::string::npos)
    {
        _part = Part::ChunkSize;
        return;
    }
    _left = std::stoul(_line.substr(length + kLength.size()));
    _part = _left > 0 ? Part::Plain : Part::Done;
}

double LoadResult::quantile(double share) const
{
    const auto place = static_cast<std::size_t>(share * static_cast<double>(answerSeconds.size()));
    return answerSeconds.at(std::min(place, answerSeconds.size() - 1));
}

std::size_t countOf(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

std::string ask(std::uint16_t port, const std::string& request)
{
    std::vector<char> buffer(kReadBytes);
    Connection connection(port, true);
    connection.send(request);
    while (!connection.receive(buffer))
    {
    }
    return connection.answer().body();
}

LoadResult newClients(std::uint16_t port, const std::string& request, double seconds)
{
    LoadResult result;
    const Clock::time_point start = Clock::now();
    while (result.seconds < seconds)
    {
        const double before = result.seconds;
        for (bool isAnswered = false; !isAnswered;)
            try
            {
                result.bytes += ask(port, request).size();
                isAnswered = true;
            }
            catch (const HungUp&)
            {
                ++result.hungUp;
            }
        result.seconds = std::chrono::duration<double>(Clock::now() - start).count();
        result.answerSeconds.push_back(result.seconds - before);
    }
    std::sort(result.answerSeconds.begin(), result.answerSeconds.end());
    return result;
}

LoadResult load(std::uint16_t port, unsigned connections, const std::string& request, double seconds)
{
    std::vector<char> buffer(kReadBytes);
    std::vector<std::unique_ptr<Connection>> all;
    std::vector<pollfd> waiting;
    for (unsigned i = 0; i < connections; ++i)
    {
        all.push_back(std::make_unique<Connection>(port));
        waiting.push_back({all.back()->fd(), POLLIN, 0});
    }

    LoadResult result;
    const Clock::time_point start = Clock::now();
    const auto since = [](Clock::time_point then)
    { return std::chrono::duration<double>(Clock::now() - then).count(); };
    for (const auto& connection : all)
        connection->send(request);
    for (unsigned open = connections; open > 0;)
    {
        if (poll(waiting.data(), waiting.size(), -1) < 0)
            fail("poll");
        for (unsigned i = 0; i < connections; ++i)
        {
            if (waiting[i].revents == 0 || !all[i]->receive(buffer))
                continue;
            result.answerSeconds.push_back(since(all[i]->sentAt()));
            result.bytes += all[i]->answer().bodyBytes();
            if (since(start) < seconds)
            {
                all[i]->send(request);
                continue;
            }
            waiting[i].fd = -1;
            --open;
        }
    }
    result.seconds = since(start);
    std::sort(result.answerSeconds.begin(), result.answerSeconds.end());
    return result;
}

} // namespace bench
