// Log-ins: what is remembered, what is checked, what is refused.
#include "agent/auth/Authenticator.h"

#include "agent/auth/gnutls_handles.h"
#include "agent/auth/password_hash.h"
#include "agent/cim/value_text.h"
#include "agent/log/log.h"

#include <algorithm>
#include <gnutls/crypto.h>
#include <utility>

namespace cimd
{

namespace
{

constexpr std::size_t kKeyBytes = 32;
constexpr std::size_t kDigestBytes = 32; // of HMAC-SHA256

std::vector<unsigned char> randomKey()
{
    std::vector<unsigned char> key(kKeyBytes);
    checkTls(gnutls_rnd(GNUTLS_RND_KEY, key.data(), key.size()), "cannot make a random key");
    return key;
}

// Why the credentials are wrong, empty if they are right. Takes the same time for every user.
std::string faultOf(const Credentials& credentials, const PasswordTable& table)
{
    const std::string* hash = table.hashOf(credentials.user);
    const bool isRight = passwordMatches(credentials.password, hash != nullptr ? *hash : table.decoy());
    if (hash == nullptr)
        return "no such user";
    return isRight ? "" : "wrong password";
}

} // namespace

Authenticator::Authenticator(const std::string& passwordFile,
                             const Limits& limits,
                             FirstRead firstRead,
                             Clock clock)
    : _limits(limits), _clock(std::move(clock)), _key(randomKey()), _store(passwordFile, firstRead),
      _delay(limits.guessAddresses, limits.guessDelay), _known(limits.knownLogIns, limits.knownLogInSeconds)
{
}

bool Authenticator::isKnown(const std::string& authorization)
{
    const std::optional<unsigned long> generation = _store.settledGeneration();
    if (!generation)
        return false;
    const std::string key = digest(authorization);
    const std::lock_guard lock(_mutex);
    const Known* known = _known.find(key, _clock());
    return known != nullptr && known->generation == *generation;
}

LogIn Authenticator::withoutCredentials(const std::string& peer)
{
    const std::chrono::milliseconds delay = _delay.present(peer, _clock());
    return {{}, false, delay, "request refused: it has no credentials"};
}

LogIn Authenticator::check(const std::string& authorization, const std::string& peer)
{
    const std::string key = digest(authorization);
    const std::shared_ptr<const PasswordState> state = _store.current();
    LogIn result;
    {
        const std::lock_guard lock(_mutex);
        const Known* known = _known.find(key, _clock());
        if (known != nullptr && known->generation == state->generation)
            result.user = known->user;
    }
    if (result.user.empty())
    {
        const std::optional<Credentials> credentials = readBasicCredentials(authorization);
        if (!credentials)
            return refused(peer, "the Authorization header holds no Basic credentials");
        const bool isGuesser = _delay.hasFailed(peer, _clock());
        const std::shared_ptr<const Attempt> checked = attempt(key, *credentials, *state, isGuesser);
        if (!checked)
            return {{}, true, {}, "log-in put off: too many are being checked"};
        if (!checked->fault.empty())
            return refused(peer, "user " + quoted(credentials->user) + ": " + checked->fault);
        log(LogLevel::Info, "auth", peer + ": log-in as " + quoted(credentials->user));
        result.user = credentials->user;
    }
    _delay.succeeded(peer);
    return result;
}

std::shared_ptr<const Authenticator::Attempt> Authenticator::attempt(const std::string& digest,
                                                                     const Credentials& credentials,
                                                                     const PasswordState& state,
                                                                     bool isGuesser)
{
    std::unique_lock lock(_mutex);
    const auto running = _attempts.find(digest);
    if (running != _attempts.end())
    {
        if (isGuesser)
            return nullptr;
        std::shared_ptr<const Attempt> other = running->second;
        _changed.wait(lock, [&] { return other->isDone; });
        return other;
    }
    const std::size_t most = std::min<std::size_t>(_limits.passwordChecks, std::max(1U, _limits.workers / 2));
    if (_attempts.size() >= (isGuesser && most > 1 ? most - 1 : most))
        return nullptr;
    const auto mine = std::make_shared<Attempt>();
    _attempts.emplace(digest, mine);
    lock.unlock();
    std::string fault = "the check failed for lack of memory";
    try
    {
        fault = faultOf(credentials, state.table);
    }
    catch (const std::bad_alloc&)
    {
    }
    lock.lock();
    _attempts.erase(digest);
    mine->fault = std::move(fault);
    mine->isDone = true;
    _changed.notify_all();
    if (mine->fault.empty())
        _known.put(digest, {credentials.user, state.generation}, _clock());
    return mine;
}

LogIn Authenticator::refused(const std::string& peer, const std::string& reason)
{
    const std::chrono::milliseconds delay = _delay.failed(peer, _clock());
    log(LogLevel::Warning,
        "auth",
        peer + ": log-in refused: " + reason + " (answered after " + std::to_string(delay.count()) + " ms)");
    return {{}, false, delay};
}

std::string Authenticator::digest(const std::string& authorization) const
{
    std::string digest(kDigestBytes, '\0');
    checkTls(gnutls_hmac_fast(GNUTLS_MAC_SHA256,
                              _key.data(),
                              _key.size(),
                              authorization.data(),
                              authorization.size(),
                              digest.data()),
             "HMAC-SHA256");
    return digest;
}

} // namespace cimd
