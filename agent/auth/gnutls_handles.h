// What every user of GnuTLS needs: owners of its handles, texts for it, and complaints.
#ifndef AGENT_AUTH_GNUTLS_HANDLES_H
#define AGENT_AUTH_GNUTLS_HANDLES_H

#include <gnutls/gnutls.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace cimd
{

template <class Handle, void (*Free)(Handle)>
struct TlsFree
{
    void operator()(Handle handle) const { Free(handle); }
};
template <class Handle, void (*Free)(Handle)>
using TlsHandle = std::unique_ptr<std::remove_pointer_t<Handle>, TlsFree<Handle, Free>>;

// Throws std::runtime_error, "complaint: reason", for a code that tells of a failure.
inline void checkTls(int code, const std::string& complaint)
{
    if (code < 0)
        throw std::runtime_error(complaint + ": " + gnutls_strerror(code));
}

// Refers to the text, which the library only reads.
inline gnutls_datum_t tlsText(const std::string& text)
{
    auto* bytes = reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
    return {bytes, static_cast<unsigned>(text.size())};
}

} // namespace cimd

#endif
