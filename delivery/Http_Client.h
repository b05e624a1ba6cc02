// Posts export messages to listeners, many at a time on one thread.
#ifndef DELIVERY_HTTP_CLIENT_H
#define DELIVERY_HTTP_CLIENT_H

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace cimple
{

// The body of a request, shared by all that it goes to.
typedef std::shared_ptr<const std::string> Http_Body;

struct Http_Settings
{
    std::chrono::milliseconds connectTime{5000}; // to a connection, the name's look-up and TLS included
    std::chrono::milliseconds answerTime{15000}; // to the end of the answer, from the start
    std::string caFile;                          // empty: what the system trusts
    bool acceptsAnyCertificate = false;
};

enum class Http_Result
{
    Answered, // with whatever status
    Unheard,  // no answer: the try may succeed later
    Unusable  // no URL that a request could be sent to
};

// Keeps connections for the next request. All functions are for one thread, but wake(). They throw
// std::bad_alloc; start() throws std::runtime_error, too, where libcurl cannot be loaded.
class Http_Client
{
  public:
    // What the caller knows a listener by. One request at a time.
    typedef void* Peer;

    struct Outcome
    {
        Peer peer = nullptr;
        Http_Result result = Http_Result::Unheard;
        bool wasKept = false;              // the connection was one of earlier requests
        long status = 0;                   // of HTTP
        std::chrono::seconds retryAfter{}; // that the listener asks for, a day at most; 0: it does not
        std::string answer;                // its first part, if it is long
        std::string reason;                // why there is no answer, or no use of it; without credentials
    };

    // False in a build without libcurl, where there are no objects of the class.
    static bool isAvailable();

    explicit Http_Client(const Http_Settings& settings);
    ~Http_Client();
    Http_Client(const Http_Client&) = delete;
    Http_Client& operator=(const Http_Client&) = delete;

    // `fresh`: on a connection of its own, not on one that was kept.
    void start(Peer peer, const std::string& url, Http_Body body, bool fresh);

    // The requests that ended. Returns when one does, after wake(), or when the time is up.
    std::vector<Outcome> wait(std::chrono::milliseconds atMost);

    // Ends the present wait, or else the next one. From any thread.
    void wake() noexcept;

    // The peer has no request and will have none soon.
    void forget(Peer peer) noexcept;

  private:
    class Engine;

    const Http_Settings _settings;
    std::mutex _lock; // of what follows; the thread itself reads without it what only it changes
    std::condition_variable _woken;
    bool _isWoken = false;           // before there was an engine
    std::unique_ptr<Engine> _engine; // made by the first start()
};

} // namespace cimple

#endif
