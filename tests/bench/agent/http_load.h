// Requests over kept connections, as fast as the agent answers them.
#ifndef TESTS_BENCH_AGENT_HTTP_LOAD_H
#define TESTS_BENCH_AGENT_HTTP_LOAD_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace bench
{

// A CIM-XML request for the namespace root/interop, head and body.
std::string cimRequest(const std::string& operation, const std::string& parameters);
// The parameter that names a class.
std::string classParameter(const std::string& name);

// Finds the end of an answer as its bytes come, and keeps no more of it than it is told to.
class AnswerReader
{
  public:
    explicit AnswerReader(bool keepBody) : _keepBody(keepBody) {}

    // Takes bytes of the answer; true when it is complete. Throws when it is no success, or no HTTP.
    bool take(const char* data, std::size_t size);
    std::size_t bodyBytes() const { return _bodyBytes; }
    const std::string& body() const { return _body; }

  private:
    enum class Part
    {
        Head,
        Plain,
        ChunkSize,
        Chunk,
        ChunkEnd,
        Trailer,
        Done
    };

    void takeLine(char c);
    void endLine();
    void readHead();
    std::size_t takeBody(const char* data, std::size_t size);

    bool _keepBody;
    Part _part = Part::Head;
    std::string _line; // of the chunk head or trailer; in Part::Head the head so far
    std::size_t _left = 0;
    std::size_t _bodyBytes = 0;
    std::string _body; // its start, or all of it
};

struct LoadResult
{
    double seconds = 0;
    std::size_t bytes = 0;             // of all bodies
    std::vector<double> answerSeconds; // in ascending order
    std::size_t hungUp = 0;            // clients that had to ask again

    double rate() const { return static_cast<double>(answerSeconds.size()) / seconds; }
    // The time within which this share of the answers came.
    double quantile(double share) const;
};

// One connection, one request; the body of the answer.
std::string ask(std::uint16_t port, const std::string& request);
// How often a part occurs in an answer.
std::size_t countOf(const std::string& text, const std::string& part);

// Sends the request over a connection of its own, again and again for that long; the times include
// connecting.
LoadResult newClients(std::uint16_t port, const std::string& request, double seconds);

// Sends the request over so many connections at once, each time anew when the answer is there, until at
// least `seconds` have passed and every connection has had an answer.
LoadResult load(std::uint16_t port, unsigned connections, const std::string& request, double seconds);

} // namespace bench

#endif
