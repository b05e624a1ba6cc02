// Following handshakes through the hooks of GnuTLS.
#include "agent/http/TlsHandshake.h"

#include <map>

namespace cimd
{

namespace
{

constexpr unsigned kTls12 = 0x0303;

// Handshakes in progress. The hook gets no other way back from a session to its watcher.
thread_local std::map<gnutls_session_t, TlsHandshake*> inProgress;

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

} // namespace

TlsHandshake::TlsHandshake(gnutls_session_t session) : _session(session)
{
    inProgress[session] = this;
    gnutls_handshake_set_hook_function(session, GNUTLS_HANDSHAKE_ANY, GNUTLS_HOOK_BOTH, &onMessage);
}

TlsHandshake::~TlsHandshake()
{
    const auto entry = inProgress.find(_session);
    if (entry != inProgress.end() && entry->second == this)
        inProgress.erase(entry);
}

int TlsHandshake::onMessage(
    gnutls_session_t session, unsigned type, unsigned, unsigned incoming, const gnutls_datum_t* message)
{
    const auto entry = inProgress.find(session);
    if (entry == inProgress.end())
        return GNUTLS_E_SUCCESS;
    TlsHandshake& handshake = *entry->second;
    if (incoming == 0)
    {
        handshake._isAgreed = handshake._isAgreed || type == GNUTLS_HANDSHAKE_SERVER_HELLO;
        return GNUTLS_E_SUCCESS;
    }
    if (type == GNUTLS_HANDSHAKE_CLIENT_HELLO)
    {
        handshake._isGreeted = true;
        if (message != nullptr && message->size >= 2)
            handshake._version = message->data[0] * 256U + message->data[1];
    }
    if (type == GNUTLS_HANDSHAKE_FINISHED)
    {
        handshake._isDone = true;
        inProgress.erase(entry);
    }
    return GNUTLS_E_SUCCESS;
}

void TlsHandshake::noteAlerts()
{
    for (const auto& [session, handshake] : inProgress)
        if (handshake->_alert == 0)
            handshake->_alert = gnutls_alert_get(session);
}

std::string TlsHandshake::fault(bool hasReceived) const
{
    if (_isDone)
        return {};
    if (!hasReceived)
        return "the client sent nothing";
    if (!_isGreeted)
        return "what the client sent is not TLS";
    if (_alert != 0)
    {
        const char* name = gnutls_alert_get_name(static_cast<gnutls_alert_description_t>(_alert));
        return std::string("the client refused: ") + (name != nullptr ? name : "unknown alert");
    }
    if (_version != 0 && _version < kTls12)
        return "the client knows nothing newer than " + versionName(_version) + ", TLS 1.2 is needed";
    // Some clients say why in a way that GnuTLS does not read.
    return _isAgreed ? "the client left, perhaps because it does not trust the certificate"
                     : "there is no cipher that suits both sides";
}

} // namespace cimd
