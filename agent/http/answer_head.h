// The heads of answers.
#ifndef AGENT_HTTP_ANSWER_HEAD_H
#define AGENT_HTTP_ANSWER_HEAD_H

#include "agent/http/message.h"

#include <cstddef>
#include <optional>
#include <string>

namespace cimd
{

// What of a request decides the form of its answer.
struct AnswerForm
{
    bool isOld = false;         ///< to HTTP/1.0: no chunks, and a connection that is kept is worth a word
    bool closes = false;        ///< The connection ends after it.
    bool hasBody = true;        ///< The body follows; not to a request for the head alone.
    bool takesTrailers = false; ///< of chunks
};

// Status line and headers, with the empty line that ends them. Without a length the body comes in chunks, or
// up to the end of the connection if the form does not know those.
std::string answerHead(const HttpResponse& answer, std::optional<std::size_t> length, const AnswerForm& form);

} // namespace cimd

#endif
