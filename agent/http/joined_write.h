// Head and first chunk of a streaming answer in one write.
#ifndef AGENT_HTTP_JOINED_WRITE_H
#define AGENT_HTTP_JOINED_WRITE_H

namespace cimd
{

// For the I/O thread. Over TLS it is the records that leave together.

// What is sent next on the socket, the head of an answer, leaves together with what is sent after it.
void joinNextWrites(int fd);

// Forgets about a socket that is about to be closed.
void forgetWrites(int fd);

} // namespace cimd

#endif
