// What the server proves itself with to TLS clients.
#ifndef AGENT_AUTH_TLSIDENTITY_H
#define AGENT_AUTH_TLSIDENTITY_H

#include <string>

namespace cimd
{

// PEM texts.
struct TlsIdentity
{
    std::string certificate; ///< The server's own, followed by those that vouch for it.
    std::string key;         ///< The private key of the first; not encrypted.
};

// Throws std::runtime_error, "path: reason", for a file that cannot be read or holds no certificate; an
// expired certificate is only worth a warning in the log, for no service at all is worse.
std::string readCertificate(const std::string& path);

// Throws std::runtime_error, "path: reason", for a file that cannot be read, that everybody can read, or that
// does not hold the key of the certificate, an unencrypted one.
std::string readPrivateKey(const std::string& path, const std::string& certificate);

} // namespace cimd

#endif
