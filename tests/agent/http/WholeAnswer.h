// An answer stream for tests without a server: nothing leaves before the answer is whole.
#ifndef TESTS_AGENT_HTTP_WHOLEANSWER_H
#define TESTS_AGENT_HTTP_WHOLEANSWER_H

#include "agent/http/HttpHandler.h"

namespace cimd
{

class WholeAnswer : public AnswerStream
{
  public:
    void flush(HttpResponse&) override {}
    std::size_t taken() const override { return 0; }
    void whenLate(std::function<HttpResponse()>) override {}
};

} // namespace cimd

#endif
