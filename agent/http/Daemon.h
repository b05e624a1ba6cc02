// A port of the server: libmicrohttpd's listener with its I/O thread.
#ifndef AGENT_HTTP_DAEMON_H
#define AGENT_HTTP_DAEMON_H

#include "agent/Limits.h"
#include "agent/auth/TlsIdentity.h"
#include "agent/http/ListenSocket.h"

#include <microhttpd.h>

namespace cimd
{

// What libmicrohttpd calls, always on the daemon's thread.
struct DaemonCallbacks
{
    MHD_AccessHandlerCallback onRequest;
    MHD_NotifyConnectionCallback onConnection;
    MHD_RequestCompletedCallback onCompleted;
    void* self; ///< their first argument
};

// Runs from construction to destruction.
class Daemon
{
  public:
    // `tls` outlives the object and counts for a TLS socket only. Throws std::runtime_error.
    Daemon(ListenSocket socket,
           const TlsIdentity& tls,
           const Limits& limits,
           const DaemonCallbacks& callbacks);
    // No connection may be suspended.
    ~Daemon();
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;

    // Takes no more connections.
    void quiesce();

  private:
    FileDescriptor _retired; // what was the listening socket; outlives the daemon's thread
    MHD_Daemon* _daemon;
};

} // namespace cimd

#endif
