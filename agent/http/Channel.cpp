// Sockets and GnuTLS.
#include "agent/http/Channel.h"

#include <algorithm>
#include <cerrno>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <new>
#include <sys/socket.h>

namespace cimd
{

namespace
{

// Older versions are broken; key exchange without forward secrecy would open recorded traffic to whoever gets
// the key later.
constexpr const char* kPriorities = "NORMAL:-VERS-ALL:+VERS-TLS1.3:+VERS-TLS1.2:-RSA:%SERVER_PRECEDENCE";
constexpr unsigned kTls12 = 0x0303;
constexpr std::size_t kMostAtOnce = 256 * 1024;

std::string versionName(unsigned version)
{
    switch (version)
    {
    case 0x0301:
        return "TLS 1.0";
    case 0x0302:
        return "TLS 1.1";
    default:
        return "SSL 3.0";
    }
}

Channel::Result resultOf(ssize_t bytes)
{
    if (bytes >= 0)
        return {Channel::State::Done, static_cast<std::size_t>(bytes)};
    return {errno == EAGAIN ? Channel::State::Again : Channel::State::Broken};
}

Channel::Result tlsResult(ssize_t code)
{
    if (code >= 0)
        return {Channel::State::Done, static_cast<std::size_t>(code)};
    if (code == GNUTLS_E_PREMATURE_TERMINATION) // many a client says no goodbye
        return {Channel::State::End};
    return {code == GNUTLS_E_AGAIN ? Channel::State::Again : Channel::State::Broken};
}

// Repeats a call that the library interrupts for nothing that matters here.
template <class Call>
ssize_t called(Call call)
{
    for (;;)
    {
        const ssize_t code = call();
        if (code >= 0 || code == GNUTLS_E_AGAIN || gnutls_error_is_fatal(static_cast<int>(code)) != 0)
            return code;
    }
}

} // namespace

TlsContext::TlsContext(const TlsIdentity& identity)
{
    gnutls_certificate_credentials_t credentials = nullptr;
    checkTls(gnutls_certificate_allocate_credentials(&credentials), "TLS: credentials");
    _credentials.reset(credentials);
    const gnutls_datum_t certificate = tlsText(identity.certificate);
    const gnutls_datum_t key = tlsText(identity.key);
    checkTls(gnutls_certificate_set_x509_key_mem(credentials, &certificate, &key, GNUTLS_X509_FMT_PEM),
             "TLS: certificate and key");
    gnutls_priority_t priorities = nullptr;
    checkTls(gnutls_priority_init(&priorities, kPriorities, nullptr), "TLS: priorities");
    _priorities.reset(priorities);
    _ticketKey.reset(new gnutls_datum_t{});
    checkTls(gnutls_session_ticket_key_generate(_ticketKey.get()), "TLS: key of tickets");
}

void TlsContext::WipeKey::operator()(gnutls_datum_t* key) const
{
    gnutls_memset(key->data, 0, key->size);
    gnutls_free(key->data);
    delete key;
}

Channel::Channel(FileDescriptor socket, std::shared_ptr<const TlsContext> tls)
    : _socket(std::move(socket)), _tls(std::move(tls))
{
    if (!_tls)
        return;
    gnutls_session_t session = nullptr;
    if (gnutls_init(&session, GNUTLS_SERVER | GNUTLS_NONBLOCK | GNUTLS_NO_SIGNAL) < 0)
        throw std::bad_alloc();
    _session.reset(session);
    if (gnutls_priority_set(session, _tls->priorities()) < 0 ||
        gnutls_credentials_set(session, GNUTLS_CRD_CERTIFICATE, _tls->credentials()) < 0 ||
        gnutls_session_ticket_enable_server(session, &_tls->ticketKey()) < 0)
        throw std::bad_alloc();
    gnutls_session_set_ptr(session, this);
    gnutls_handshake_set_timeout(session, 0); // the server has a clock of its own
    gnutls_handshake_set_hook_function(session, GNUTLS_HANDSHAKE_ANY, GNUTLS_HOOK_BOTH, &onMessage);
    gnutls_transport_set_pull_function(session, &pull);
    gnutls_transport_set_int2(session, _socket.get(), _socket.get());
    gnutls_transport_set_ptr2(
        session, this, reinterpret_cast<gnutls_transport_ptr_t>(std::intptr_t{_socket.get()}));
}

ssize_t Channel::pull(gnutls_transport_ptr_t self, void* to, size_t size)
{
    Channel& channel = *static_cast<Channel*>(self);
    const ssize_t got = recv(channel._socket.get(), to, size, 0);
    channel._hasReceived = channel._hasReceived || got > 0;
    return got;
}

int Channel::onMessage(
    gnutls_session_t session, unsigned type, unsigned, unsigned incoming, const gnutls_datum_t* message)
{
    Channel& channel = *static_cast<Channel*>(gnutls_session_get_ptr(session));
    if (incoming == 0)
        channel._isAgreed = channel._isAgreed || type == GNUTLS_HANDSHAKE_SERVER_HELLO;
    else if (type == GNUTLS_HANDSHAKE_CLIENT_HELLO && message != nullptr && message->size >= 2)
        channel._version = message->data[0] * 256U + message->data[1];
    return GNUTLS_E_SUCCESS;
}

Channel::State Channel::shakeHands()
{
    if (!_session)
        return State::Done;
    const int code = static_cast<int>(called([this] { return gnutls_handshake(_session.get()); }));
    if (code == GNUTLS_E_SUCCESS)
    {
        // The client's last message gets no answer, and many a client keeps its request back until that is
        // acknowledged, which the system would put off for 40 ms.
        const int on = 1;
        setsockopt(_socket.get(), IPPROTO_TCP, TCP_QUICKACK, &on, sizeof on);
        return State::Done;
    }
    if (code == GNUTLS_E_AGAIN)
        return State::Again;
    if (code == GNUTLS_E_FATAL_ALERT_RECEIVED || code == GNUTLS_E_WARNING_ALERT_RECEIVED)
        _alert = gnutls_alert_get(_session.get());
    else if (_hasReceived)
        gnutls_alert_send_appropriate(_session.get(), code);
    _session.reset();
    return State::Broken;
}

std::string Channel::handshakeFault() const
{
    if (!_hasReceived)
        return "the client sent nothing";
    if (_version == 0)
        return "what the client sent is not TLS";
    if (_alert != 0)
    {
        const char* name = gnutls_alert_get_name(static_cast<gnutls_alert_description_t>(_alert));
        return std::string("the client refused: ") + (name != nullptr ? name : "unknown alert");
    }
    if (_version < kTls12)
        return "the client knows nothing newer than " + versionName(_version) + ", TLS 1.2 is needed";
    // Some clients say why in a way that GnuTLS does not read.
    return _isAgreed ? "the client left, perhaps because it does not trust the certificate"
                     : "there is no cipher that suits both sides";
}

Channel::Result Channel::read(char* to, std::size_t size)
{
    const Result result =
        _session ? tlsResult(called([&] { return gnutls_record_recv(_session.get(), to, size); }))
                 : resultOf(recv(_socket.get(), to, size, 0));
    return result.state == State::Done && result.bytes == 0 ? Result{State::End} : result;
}

Channel::Result Channel::write(std::string_view bytes, bool isMoreToCome)
{
    bytes = bytes.substr(0, kMostAtOnce);
    if (_session)
        return tlsResult(
            called([&] { return gnutls_record_send(_session.get(), bytes.data(), bytes.size()); }));
    return resultOf(
        send(_socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL | (isMoreToCome ? MSG_MORE : 0)));
}

void Channel::endWriting()
{
    if (_session)
        gnutls_bye(_session.get(), GNUTLS_SHUT_WR);
    shutdown(_socket.get(), SHUT_WR);
}

} // namespace cimd
