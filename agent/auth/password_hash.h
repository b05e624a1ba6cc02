// Salted hashes of passwords.
#ifndef AGENT_AUTH_PASSWORD_HASH_H
#define AGENT_AUTH_PASSWORD_HASH_H

#include <cstddef>
#include <string>

namespace cimd
{

// bcrypt looks no further into a password; longer ones would seem to be checked and are not.
inline constexpr std::size_t kLongestPassword = 72; // bytes

// A new "$2b$" (bcrypt) hash with a random salt. bcrypt makes each guess cost tens of milliseconds and needs
// four KiB, where the more modern yescrypt takes 16 MiB for each log-in: more than the whole agent has on a
// switch. Throws std::invalid_argument for an empty password and one with more bytes than kLongestPassword or
// with a zero byte; std::runtime_error if the system has no random numbers.
std::string hashPassword(const std::string& password);

// Takes as long as the hash demands, whatever the password; no password matches a hash that is not usable.
bool passwordMatches(const std::string& password, const std::string& hash);

// Why a hash cannot be used, for a message: it is no whole hash, or of a method that is too weak or takes too
// much memory. Empty if it can be: bcrypt ("$2a$", "$2b$", "$2y$"), SHA-256 ("$5$") or SHA-512 ("$6$").
std::string hashFault(const std::string& hash);

} // namespace cimd

#endif
