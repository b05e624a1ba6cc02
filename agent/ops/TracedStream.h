// Writes to the trace what leaves through an answer's stream.
#ifndef AGENT_OPS_TRACEDSTREAM_H
#define AGENT_OPS_TRACEDSTREAM_H

#include "agent/http/HttpHandler.h"
#include "agent/log/XmlTrace.h"

#include <atomic>
#include <string>
#include <utility>

namespace cimd
{

// Stands before the stream of one answer; all that it refers to outlives it.
class TracedStream : public AnswerStream
{
  public:
    TracedStream(AnswerStream& stream, XmlTrace& trace, const std::string& peer)
        : _stream(stream), _trace(trace), _peer(peer)
    {
    }

    void flush(HttpResponse& response) override
    {
        // The stream says how much it took, not what: an error may still replace what waits.
        _waiting.append(response.body, _waiting.size());
        const std::size_t before = _stream.taken();
        _stream.flush(response);
        if (_stream.taken() == before)
            return;
        _trace.write("part of the answer to", _peer, _waiting);
        _waiting.clear();
    }

    std::size_t taken() const override { return _stream.taken(); }
    void whenLate(std::function<HttpResponse()> late) override
    {
        if (!late)
            return _stream.whenLate({});
        _stream.whenLate(
            [this, late = std::move(late)]
            {
                HttpResponse response = late();
                _wasLate = true;
                _trace.write("late answer to", _peer, response.body);
                return response;
            });
    }

    // What is left of the answer when the handler has returned it.
    void finish(const HttpResponse& response)
    {
        const char* const about = _wasLate       ? "dropped answer to"
                                  : taken() == 0 ? "answer to"
                                                 : "rest of the answer to";
        _trace.write(about, _peer, response.body);
    }

  private:
    AnswerStream& _stream;
    XmlTrace& _trace;
    const std::string& _peer;
    std::string _waiting;
    std::atomic<bool> _wasLate{false};
};

} // namespace cimd

#endif
