// Who a client is: Basic credentials checked against the password file, in a way that makes guessing slow.
#ifndef AGENT_AUTH_AUTHENTICATOR_H
#define AGENT_AUTH_AUTHENTICATOR_H

#include "agent/auth/Credentials.h"
#include "agent/auth/GuessDelay.h"
#include "agent/auth/PasswordStore.h"
#include "agent/auth/RecentMap.h"
#include "agent/limits/Limits.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace cimd
{

// What became of a log-in.
struct LogIn
{
    std::string user;                   ///< Empty: refused.
    bool isBusy = false;                ///< Refused without being looked at; worth another try at once.
    std::chrono::milliseconds delay{0}; ///< How long the client must wait for the refusal.
    const char* reason = nullptr;       ///< Of a refusal that comes so often that one line each is too much.
};

// Checking a password is slow by design. Credentials that were right are therefore remembered for a while, as
// keyed hashes whose key dies with the process; equal credentials that arrive together are checked once; and
// only so many different ones are checked at a time, so that a guesser cannot take every thread. An address
// that has guessed wrong lately waits for no check of another thread, and leaves the last free one to others.
// Wrong credentials are logged. All members may be called from any thread.
class Authenticator
{
  public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    // Throws std::runtime_error when the file cannot be used.
    Authenticator(const std::string& passwordFile,
                  const Limits& limits,
                  FirstRead firstRead,
                  Clock clock = std::chrono::steady_clock::now);
    Authenticator(const Authenticator&) = delete;
    Authenticator& operator=(const Authenticator&) = delete;

    // Whether the value of an Authorization header was right lately. Does not wait.
    bool isKnown(const std::string& authorization);

    // A request without credentials: no guess, but it waits as long as a wrong one before it did.
    LogIn withoutCredentials(const std::string& peer);

    // Checks the value of an Authorization header; may take as long as a password hash takes.
    LogIn check(const std::string& authorization, const std::string& peer);

    // Reads the password file if it has changed, without waiting for a log-in that needs it.
    void readUsers() { _store.current(); }

  private:
    struct Known
    {
        std::string user;
        unsigned long generation; // of the password file
    };
    struct Attempt
    {
        bool isDone = false;
        std::string fault; // empty: right
    };
    std::string digest(const std::string& authorization) const;
    // The outcome of a check that this thread made or another one makes right now; null if none is free for
    // a client, who may be a guesser.
    std::shared_ptr<const Attempt> attempt(const std::string& digest,
                                           const Credentials& credentials,
                                           const PasswordState& state,
                                           bool isGuesser);
    LogIn refused(const std::string& peer, const std::string& reason);

    const Limits _limits;
    const Clock _clock;
    const std::vector<unsigned char> _key;
    PasswordStore _store;
    GuessDelay _delay;
    std::mutex _mutex;
    std::condition_variable _changed;
    RecentMap<Known> _known;                                   // by digest
    std::map<std::string, std::shared_ptr<Attempt>> _attempts; // being checked, by digest
};

} // namespace cimd

#endif
