// Reading certificate and key, with complaints that an operator can act on.
#include "agent/auth/TlsIdentity.h"

#include "agent/auth/gnutls_handles.h"
#include "agent/auth/private_file.h"
#include "agent/log/log.h"

#include <ctime>
#include <gnutls/x509.h>
#include <stdexcept>
#include <vector>

namespace cimd
{

namespace
{

using Bytes = std::vector<unsigned char>;

using Certificate = TlsHandle<gnutls_x509_crt_t, gnutls_x509_crt_deinit>;
using Key = TlsHandle<gnutls_x509_privkey_t, gnutls_x509_privkey_deinit>;

// The first certificate of a PEM text.
Certificate firstCertificate(const std::string& pem, const std::string& complaint)
{
    gnutls_x509_crt_t handle = nullptr;
    checkTls(gnutls_x509_crt_init(&handle), complaint);
    Certificate certificate(handle);
    const gnutls_datum_t text = tlsText(pem);
    checkTls(gnutls_x509_crt_import(handle, &text, GNUTLS_X509_FMT_PEM), complaint);
    return certificate;
}

// A hash of the public key that belongs to a certificate or to a private key.
template <class Handle>
Bytes keyId(int (*get)(Handle, unsigned, unsigned char*, size_t*),
            Handle handle,
            const std::string& complaint)
{
    Bytes id(64);
    size_t size = id.size();
    checkTls(get(handle, GNUTLS_KEYID_USE_SHA256, id.data(), &size), complaint);
    id.resize(size);
    return id;
}

std::string dayText(std::time_t time)
{
    std::tm parts{};
    gmtime_r(&time, &parts);
    char text[32] = "";
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S UTC", &parts);
    return text;
}

} // namespace

std::string readCertificate(const std::string& path)
{
    std::string pem = readSmallFile(path, Secrecy::Public).text;
    const Certificate certificate = firstCertificate(pem, path + ": holds no certificate in PEM form");
    const std::time_t now = std::time(nullptr);
    const std::time_t end = gnutls_x509_crt_get_expiration_time(certificate.get());
    const std::time_t begin = gnutls_x509_crt_get_activation_time(certificate.get());
    if (end < now)
        log(LogLevel::Warning, "tls", path + ": the certificate expired on " + dayText(end));
    if (begin > now)
        log(LogLevel::Warning, "tls", path + ": the certificate is not valid before " + dayText(begin));
    return pem;
}

std::string readPrivateKey(const std::string& path, const std::string& certificate)
{
    std::string pem = readSmallFile(path, Secrecy::Secret).text;
    const std::string complaint = path + ": holds no unencrypted private key in PEM form";
    gnutls_x509_privkey_t handle = nullptr;
    checkTls(gnutls_x509_privkey_init(&handle), complaint);
    const Key key(handle);
    const gnutls_datum_t text = tlsText(pem);
    checkTls(gnutls_x509_privkey_import2(handle, &text, GNUTLS_X509_FMT_PEM, nullptr, GNUTLS_PKCS_PLAIN),
             complaint);
    const Certificate own = firstCertificate(certificate, "the certificate");
    if (keyId(gnutls_x509_privkey_get_key_id, handle, path) !=
        keyId(gnutls_x509_crt_get_key_id, own.get(), "the certificate"))
        throw std::runtime_error(path + ": is not the key of the certificate");
    return pem;
}

} // namespace cimd
