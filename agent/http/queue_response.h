// Answers as libmicrohttpd takes them.
#ifndef AGENT_HTTP_QUEUE_RESPONSE_H
#define AGENT_HTTP_QUEUE_RESPONSE_H

#include "agent/http/Connection.h"
#include "agent/http/message.h"

#include <memory>
#include <microhttpd.h>

namespace cimd
{

// Both are for the I/O thread. With `close` the connection ends after the answer.

// An answer with a Content-Length. Its body is moved, not copied.
MHD_Result queueWhole(MHD_Connection* connection, HttpResponse&& answer, bool close);

// An answer whose body is read from the reply as it comes: in chunks or, for a client that does not know
// them, up to the end of the connection. When it breaks off, a client that wants trailers gets those of the
// reply; any other finds the connection closed without a last chunk.
MHD_Result
queueStream(MHD_Connection* connection, HttpResponse&& head, std::shared_ptr<Exchange> exchange, bool close);

} // namespace cimd

#endif
