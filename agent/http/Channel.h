// A connected socket, and what is said through it: bytes as they are, or TLS.
#ifndef AGENT_HTTP_CHANNEL_H
#define AGENT_HTTP_CHANNEL_H

#include "agent/auth/TlsIdentity.h"
#include "agent/auth/gnutls_handles.h"
#include "agent/base/FileDescriptor.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace cimd
{

// What all TLS connections of a server share.
class TlsContext
{
  public:
    // Throws std::runtime_error for an identity that cannot be used.
    explicit TlsContext(const TlsIdentity& identity);

    gnutls_certificate_credentials_t credentials() const { return _credentials.get(); }
    gnutls_priority_t priorities() const { return _priorities.get(); }
    // Of the tickets with which clients come back without a whole handshake. The library draws keys that
    // change with time from it.
    const gnutls_datum_t& ticketKey() const { return *_ticketKey; }

  private:
    struct WipeKey
    {
        void operator()(gnutls_datum_t* key) const;
    };

    TlsHandle<gnutls_certificate_credentials_t, gnutls_certificate_free_credentials> _credentials;
    TlsHandle<gnutls_priority_t, gnutls_priority_deinit> _priorities;
    std::unique_ptr<gnutls_datum_t, WipeKey> _ticketKey;
};

// Nothing here waits. Used on one thread.
class Channel
{
  public:
    enum class State
    {
        Done,  ///< `bytes` were read or written, or the handshake is over.
        Again, ///< There is nothing to read, or no room, at present.
        End,   ///< The other side sends no more.
        Broken ///< The connection is of no more use.
    };
    struct Result
    {
        State state;
        std::size_t bytes = 0;
    };

    // A null context means no TLS. Throws std::bad_alloc.
    Channel(FileDescriptor socket, std::shared_ptr<const TlsContext> tls);
    Channel(const Channel&) = delete; // GnuTLS knows its address
    Channel& operator=(const Channel&) = delete;

    bool isTls() const { return _session != nullptr; }

    // To be called until it is Done or Broken; without TLS it is Done at once. After Broken the bytes of the
    // socket are read as they are.
    State shakeHands();
    // Why the handshake failed, or what it waits for.
    std::string handshakeFault() const;
    // Whether the client has sent anything at all; for TLS alone.
    bool hasReceived() const { return _hasReceived; }

    Result read(char* to, std::size_t size);
    // After Again the same bytes have to be given again, and may be followed by more.
    // @param isMoreToCome  Others follow at once, so that these need not leave alone.
    Result write(std::string_view bytes, bool isMoreToCome = false);
    // Says that nothing more will be written.
    void endWriting();

  private:
    static ssize_t pull(gnutls_transport_ptr_t self, void* to, size_t size);
    static int onMessage(
        gnutls_session_t session, unsigned type, unsigned, unsigned incoming, const gnutls_datum_t* message);

    FileDescriptor _socket;
    const std::shared_ptr<const TlsContext> _tls; // the session's
    TlsHandle<gnutls_session_t, gnutls_deinit> _session;
    bool _hasReceived = false;
    bool _isAgreed = false; // on version and cipher
    unsigned _version = 0;  // of the ClientHello, 0x0303 for TLS 1.2 and up
    int _alert = 0;         // from the client; 0: none
};

} // namespace cimd

#endif
