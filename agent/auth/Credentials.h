// User name and password as a client sends them.
#ifndef AGENT_AUTH_CREDENTIALS_H
#define AGENT_AUTH_CREDENTIALS_H

#include <optional>
#include <string>
#include <string_view>

namespace cimd
{

// The password is wiped from memory at the end.
struct Credentials
{
    Credentials() = default;
    ~Credentials();
    Credentials(Credentials&&) = default;
    Credentials& operator=(Credentials&&) = default;

    std::string user;
    std::string password;
};

// Reads the value of an Authorization header, "Basic " and base64 of "user:password" (RFC 7617). Nothing if
// it is anything else.
std::optional<Credentials> readBasicCredentials(std::string_view authorization);

} // namespace cimd

#endif
