// Taking Basic credentials apart.
#include "agent/auth/Credentials.h"

#include "agent/cim/CimName.h"

#include <gnutls/gnutls.h>
#include <memory>
#include <string.h>

namespace cimd
{

Credentials::~Credentials()
{
    explicit_bzero(password.data(), password.size());
}

std::optional<Credentials> readBasicCredentials(std::string_view authorization)
{
    constexpr std::string_view kScheme = "Basic ";
    if (!equalNoCase(authorization.substr(0, kScheme.size()), kScheme))
        return std::nullopt;
    authorization.remove_prefix(kScheme.size());
    authorization.remove_prefix(std::min(authorization.find_first_not_of(' '), authorization.size()));

    std::string encoded(authorization);
    const gnutls_datum_t from{reinterpret_cast<unsigned char*>(encoded.data()),
                              static_cast<unsigned>(encoded.size())};
    gnutls_datum_t decoded{nullptr, 0};
    if (encoded.empty() || gnutls_base64_decode2(&from, &decoded) != GNUTLS_E_SUCCESS)
        return std::nullopt;
    const auto wipe = [&decoded](unsigned char* bytes)
    {
        explicit_bzero(bytes, decoded.size);
        gnutls_free(bytes);
    };
    const std::unique_ptr<unsigned char, decltype(wipe)> owner(decoded.data, wipe);

    const std::string_view text(reinterpret_cast<const char*>(decoded.data), decoded.size);
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos)
        return std::nullopt;
    Credentials credentials;
    credentials.user = text.substr(0, colon);
    credentials.password = text.substr(colon + 1);
    return credentials;
}

} // namespace cimd
