// Hashing through libcrypt.
#include "agent/auth/password_hash.h"

#include <charconv>
#include <crypt.h>
#include <cstdlib>
#include <gnutls/gnutls.h>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string.h>
#include <string_view>

namespace cimd
{

namespace
{

constexpr const char* kMethod = "$2b$";
constexpr unsigned long kCost = 10; // 2^10 rounds
constexpr std::size_t kLongestSetting = 128;

// 32 KiB of libcrypt's, so not for the stack; traces of the password are wiped at the end.
struct Workplace
{
    Workplace() : data(std::make_unique<crypt_data>()) {}
    ~Workplace() { explicit_bzero(data.get(), sizeof *data); }
    std::unique_ptr<crypt_data> data;
};

std::string computed(const std::string& password, const std::string& setting)
{
    const Workplace workplace;
    const char* hash = crypt_r(password.c_str(), setting.c_str(), workplace.data.get());
    return hash != nullptr && *hash != '*' ? hash : std::string(); // a star marks a failure
}

struct Method
{
    std::string_view prefix;
    std::size_t digest; // characters after the last "$"
    std::string_view beforeCost;
    unsigned longest;  // highest cost that a log-in may take
    unsigned standard; // when the hash does not say
};
constexpr Method kMethods[] = {{"$2b$", 53, "", 14, 0},
                               {"$2y$", 53, "", 14, 0},
                               {"$2a$", 53, "", 14, 0},
                               {"$6$", 86, "rounds=", 1'000'000, 5000},
                               {"$5$", 43, "rounds=", 1'000'000, 5000}};

bool startsWith(std::string_view text, std::string_view start)
{
    return text.substr(0, start.size()) == start;
}

// Highest number for a cost that is none.
unsigned costOf(std::string_view hash, const Method& method)
{
    hash.remove_prefix(method.prefix.size());
    if (!startsWith(hash, method.beforeCost))
        return method.standard;
    hash.remove_prefix(method.beforeCost.size());
    unsigned cost = std::numeric_limits<unsigned>::max();
    std::from_chars(hash.data(), hash.data() + hash.size(), cost);
    return cost;
}

} // namespace

std::string hashPassword(const std::string& password)
{
    if (password.empty())
        throw std::invalid_argument("a password must not be empty");
    if (password.size() > kLongestPassword)
        throw std::invalid_argument("a password may have " + std::to_string(kLongestPassword) +
                                    " bytes at most");
    if (password.find('\0') != std::string::npos)
        throw std::invalid_argument("a password must not have a zero byte");
    const std::unique_ptr<char, decltype(&std::free)> setting(crypt_gensalt_ra(kMethod, kCost, nullptr, 0),
                                                              &std::free);
    std::string hash = setting ? computed(password, setting.get()) : std::string();
    if (hash.empty())
        throw std::runtime_error("libcrypt cannot make a bcrypt hash");
    return hash;
}

bool passwordMatches(const std::string& password, const std::string& hash)
{
    const std::string found = computed(password, hash);
    const bool isWhole =
        !password.empty() && password.size() <= kLongestPassword && password.find('\0') == std::string::npos;
    return found.size() == hash.size() && !found.empty() &&
           gnutls_memcmp(found.data(), hash.data(), hash.size()) == 0 && isWhole;
}

std::string hashFault(const std::string& hash)
{
    if (hash.empty())
        return "the hash is missing";
    for (const Method& method : kMethods)
        if (startsWith(hash, method.prefix))
        {
            if (hash.size() - hash.rfind('$') - 1 != method.digest ||
                hash.size() > kLongestSetting + method.digest ||
                crypt_checksalt(hash.c_str()) != CRYPT_SALT_OK)
                return "the hash is not complete";
            return costOf(hash, method) > method.longest ? "the hash takes too long to check" : "";
        }
    return "the hash is of an unknown or unsuitable method; cimd-passwd makes one that can be used";
}

} // namespace cimd
