// Requests as they come out of the bytes of a connection.
#ifndef AGENT_HTTP_REQUESTREADER_H
#define AGENT_HTTP_REQUESTREADER_H

#include "agent/http/answer_head.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace cimd
{

// Reads HTTP/1.x (RFC 9112), one request after the other. What a proxy could take for something else than we
// do is refused: a second Host or length, blanks before a colon, a lone CR, continued headers, ends of chunk
// lines that are not CRLF. Lines of a head may end in LF alone. Nothing read depends on how the bytes were
// divided.
class RequestReader
{
  public:
    enum class Event
    {
        More, ///< All bytes were taken, and more are needed.
        Head, ///< head() is there.
        Body, ///< piece() is there.
        End,  ///< The request is complete; another one may follow.
        Bad   ///< fault() says why. There is no way on.
    };

    struct Head
    {
        HttpRequest request;         ///< without peer, user and body
        std::uint64_t announced = 0; ///< bytes of body; 0 if it does not say
        bool asks = false;           ///< The client waits for a word before it sends the body.
        AnswerForm form;
    };

    struct Fault
    {
        unsigned status = 0; ///< of HTTP
        std::string reason;  ///< Holds nothing that the client sent.
    };

    // A head of more bytes, a header's bookkeeping included, is bad.
    explicit RequestReader(std::size_t headBytes) : _headBytes(headBytes), _room(headBytes) {}

    // Takes bytes from the front up to the next event.
    Event next(std::string_view& bytes);

    // Whether part of a request has come that is not complete.
    bool hasBegun() const { return _state != State::Start || !_line.empty(); }
    Head& head() { return _head; }
    // Lies within the bytes that were given to next().
    std::string_view piece() const { return _piece; }
    const Fault& fault() const { return _fault; }

  private:
    enum class State
    {
        Start,
        Headers,
        Body,
        ChunkSize,
        Chunk,
        ChunkEnd,
        Trailers,
        Complete,
        Failed
    };

    bool isInBody() const { return _state == State::Body || _state == State::Chunk; }
    bool isInChunkLine() const { return _state == State::ChunkSize || _state == State::ChunkEnd; }
    void begin(State state, std::size_t room);
    void fail(unsigned status, const char* reason);
    bool takeLine(std::string_view& bytes);
    void overflow();
    void readLine();
    void readStart();
    void readHeader();
    void readChunkSize();
    void endHead();
    bool readLengths();

    const std::size_t _headBytes;
    std::size_t _room; // bytes that lines may still take
    State _state = State::Start;
    std::string _line; // the part of one that has come
    Head _head;
    std::uint64_t _left = 0; // of the body or chunk
    std::string_view _piece;
    Fault _fault;
};

} // namespace cimd

#endif
