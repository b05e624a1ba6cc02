// Why a TLS connection did not come about.
#ifndef AGENT_HTTP_TLSHANDSHAKE_H
#define AGENT_HTTP_TLSHANDSHAKE_H

#include <atomic>
#include <gnutls/gnutls.h>
#include <string>

namespace cimd
{

// Watches one handshake, which libmicrohttpd does and whose outcome it keeps to itself. Everything here
// happens on the I/O thread of the connection, but for isDone().
class TlsHandshake
{
  public:
    // The session is not used after closed().
    explicit TlsHandshake(gnutls_session_t session);
    ~TlsHandshake();
    TlsHandshake(const TlsHandshake&) = delete;
    TlsHandshake& operator=(const TlsHandshake&) = delete;

    // Looks at the handshakes of this thread: the library says that something went wrong, but not where.
    static void noteAlerts();

    // Why it failed; empty if it succeeded. `hasReceived`: the client sent something.
    std::string fault(bool hasReceived) const;

    // Any thread: the client has sent all that the handshake needs.
    bool isDone() const { return _isDone; }

  private:
    static int onMessage(gnutls_session_t session,
                         unsigned type,
                         unsigned when,
                         unsigned incoming,
                         const gnutls_datum_t* message);

    gnutls_session_t _session;
    bool _isGreeted = false; // a ClientHello came
    bool _isAgreed = false;  // on version and cipher
    std::atomic<bool> _isDone{false};
    unsigned _version = 0; // of the ClientHello, 0x0303 for TLS 1.2 and up
    int _alert = 0;        // from the client; 0: none
};

} // namespace cimd

#endif
