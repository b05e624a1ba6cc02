// Requests over HTTP and HTTPS with libcurl.
#include "delivery/Http_Client.h"

#include "delivery/Curl_Library.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <new>
#include <utility>

namespace cimple
{

namespace
{

// What an answer says is in its beginning; one that is longer comes from no CIM listener.
constexpr std::size_t kAnswerBytes = 64 * 1024;

constexpr long kMaxKeptConnections = 16;

// A listener may ask for any time, also one that no other unit can express.
constexpr curl_off_t kLongestRetrySeconds = 24 * 3600;

template <class T, auto FREE>
struct Freed
{
    void operator()(T* resource) const { (curl().*FREE)(resource); }
};
template <class T, auto FREE>
using Handle = std::unique_ptr<T, Freed<T, FREE>>;

using Easy = Handle<CURL, &Curl_Library::easy_cleanup>;
using Multi = Handle<CURLM, &Curl_Library::multi_cleanup>;
using Headers = Handle<curl_slist, &Curl_Library::slist_free_all>;

template <class HANDLE>
HANDLE required(HANDLE handle)
{
    if (!handle)
        throw std::bad_alloc();
    return handle;
}

Headers exportHeaders()
{
    Headers headers;
    for (const char* line : {"Content-Type: application/xml; charset=\"utf-8\"",
                             "CIMExport: MethodRequest",
                             "CIMExportMethod: ExportIndication",
                             "Expect:"}) // listeners that do not know it would cost a second each time
    {
        curl_slist* const longer = curl().slist_append(headers.get(), line);
        if (longer == nullptr)
            throw std::bad_alloc();
        if (!headers)
            headers.reset(longer);
    }
    return headers;
}

// The request to one peer.
struct Request
{
    Easy easy;
    Http_Body body;
    std::string answer;
    char complaint[CURL_ERROR_SIZE] = "";
    bool hidesComplaint = false; // it might quote credentials
    bool isUnderWay = false;
};

std::size_t receive(char* data, std::size_t, std::size_t size, void* request)
{
    std::string& answer = static_cast<Request*>(request)->answer;
    if (answer.size() + size > kAnswerBytes)
        return 0; // ends the request
    try
    {
        answer.append(data, size);
    }
    catch (const std::bad_alloc&)
    {
        return 0;
    }
    return size;
}

template <class VALUE>
VALUE infoOf(CURL* easy, CURLINFO what)
{
    VALUE value{};
    curl().easy_getinfo(easy, what, &value);
    return value;
}

Http_Result resultOf(CURLcode code, long status)
{
    constexpr long kFinal = 200; // statuses below announce another one
    switch (code)
    {
    case CURLE_OK:
    case CURLE_WRITE_ERROR: // the answer is too long
        return Http_Result::Answered;
    case CURLE_RECV_ERROR: // what came until a connection was torn down says enough
    case CURLE_PARTIAL_FILE:
        return status >= kFinal ? Http_Result::Answered : Http_Result::Unheard;
    case CURLE_URL_MALFORMAT:
    case CURLE_UNSUPPORTED_PROTOCOL:
        return Http_Result::Unusable;
    default:
        return Http_Result::Unheard;
    }
}

} // namespace

class Http_Client::Engine
{
  public:
    explicit Engine(const Http_Settings& settings) : _settings(settings)
    {
        curl().multi_setopt(_multi.get(), CURLMOPT_MAXCONNECTS, kMaxKeptConnections);
    }
    ~Engine()
    {
        for (auto& [peer, request] : _requests)
            end(request);
    }
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    void start(Peer peer, const std::string& url, Http_Body body, bool fresh)
    {
        Request& request = requestOf(peer);
        CURL* const easy = request.easy.get();
        request.body = std::move(body);
        request.answer.clear();
        request.complaint[0] = '\0';
        request.hidesComplaint = url.find('@') != url.npos;
        curl().easy_setopt(easy, CURLOPT_URL, url.c_str());
        curl().easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body->size()));
        curl().easy_setopt(easy, CURLOPT_POSTFIELDS, request.body->data());
        curl().easy_setopt(easy, CURLOPT_FRESH_CONNECT, fresh ? 1L : 0L);
        if (curl().multi_add_handle(_multi.get(), easy) != CURLM_OK)
            throw std::bad_alloc();
        request.isUnderWay = true;
    }

    std::vector<Outcome> wait(std::chrono::milliseconds atMost)
    {
        int running = 0;
        curl().multi_perform(_multi.get(), &running);
        std::vector<Outcome> ended = collect();
        if (!ended.empty())
            return ended;
        curl().multi_poll(_multi.get(), nullptr, 0, static_cast<int>(atMost.count()), nullptr);
        curl().multi_perform(_multi.get(), &running);
        return collect();
    }

    void wake() noexcept { curl().multi_wakeup(_multi.get()); }

    void forget(Peer peer) noexcept
    {
        const auto place = _requests.find(peer);
        if (place == _requests.end())
            return;
        end(place->second);
        _requests.erase(place);
    }

  private:
    Request& requestOf(Peer peer)
    {
        const auto [place, isNew] = _requests.try_emplace(peer);
        if (!isNew)
            return place->second;
        try
        {
            prepare(place->second);
        }
        catch (...)
        {
            _requests.erase(place);
            throw;
        }
        return place->second;
    }

    void prepare(Request& request)
    {
        request.easy = required(Easy(curl().easy_init()));
        CURL* const easy = request.easy.get();
        const auto milliseconds = [](std::chrono::milliseconds time)
        { return static_cast<long>(time.count()); };
        curl().easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
        // A name that does not resolve must not hold up the thread when its time is over.
        curl().easy_setopt(easy, CURLOPT_QUICK_EXIT, 1L);
        curl().easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
        curl().easy_setopt(easy, CURLOPT_DEFAULT_PROTOCOL, "ftp"); // a URL without a scheme is none
        curl().easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
        curl().easy_setopt(
            easy, CURLOPT_PROXY, ""); // listeners are reached directly, whatever the environment says
        curl().easy_setopt(easy, CURLOPT_POST, 1L);
        curl().easy_setopt(easy, CURLOPT_HTTPHEADER, _headers.get());
        curl().easy_setopt(easy, CURLOPT_TCP_KEEPALIVE, 1L);
        curl().easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, milliseconds(_settings.connectTime));
        curl().easy_setopt(easy, CURLOPT_TIMEOUT_MS, milliseconds(_settings.answerTime));
        curl().easy_setopt(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
        if (!_settings.caFile.empty())
            curl().easy_setopt(easy, CURLOPT_CAINFO, _settings.caFile.c_str());
        curl().easy_setopt(easy, CURLOPT_SSL_VERIFYPEER, _settings.acceptsAnyCertificate ? 0L : 1L);
        curl().easy_setopt(easy, CURLOPT_SSL_VERIFYHOST, _settings.acceptsAnyCertificate ? 0L : 2L);
        curl().easy_setopt(easy, CURLOPT_WRITEFUNCTION, receive);
        curl().easy_setopt(easy, CURLOPT_WRITEDATA, &request);
        curl().easy_setopt(easy, CURLOPT_ERRORBUFFER, request.complaint);
    }

    std::vector<Outcome> collect()
    {
        std::vector<Outcome> ended;
        ended.reserve(_requests.size()); // what is read from the library must not get lost
        int left = 0;
        while (const CURLMsg* message = curl().multi_info_read(_multi.get(), &left))
            if (message->msg == CURLMSG_DONE)
                ended.push_back(settle(message->easy_handle, message->data.result));
        return ended;
    }

    Outcome settle(CURL* easy, CURLcode code)
    {
        const auto place =
            std::find_if(_requests.begin(),
                         _requests.end(),
                         [easy](const auto& entry) { return entry.second.easy.get() == easy; });
        Request& request = place->second;
        Outcome outcome;
        outcome.peer = place->first;
        outcome.status = infoOf<long>(easy, CURLINFO_RESPONSE_CODE);
        outcome.result = resultOf(code, outcome.status);
        outcome.wasKept = infoOf<long>(easy, CURLINFO_NUM_CONNECTS) == 0 &&
                          infoOf<curl_off_t>(easy, CURLINFO_PRETRANSFER_TIME_T) > 0;
        outcome.retryAfter = std::chrono::seconds(
            std::clamp<curl_off_t>(infoOf<curl_off_t>(easy, CURLINFO_RETRY_AFTER), 0, kLongestRetrySeconds));
        outcome.answer.swap(request.answer);
        end(request);
        explain(outcome, request, code);
        return outcome;
    }

    static void explain(Outcome& outcome, const Request& request, CURLcode code) noexcept
    try
    {
        if (code == CURLE_WRITE_ERROR)
            outcome.reason = "the answer is too long";
        else if (outcome.result != Http_Result::Answered)
            outcome.reason = request.complaint[0] != '\0' && !request.hidesComplaint
                                 ? request.complaint
                                 : curl().easy_strerror(code);
    }
    catch (const std::bad_alloc&)
    {
        // Then there is no reason.
    }

    void end(Request& request) noexcept
    {
        if (request.isUnderWay)
            curl().multi_remove_handle(_multi.get(), request.easy.get());
        request.isUnderWay = false;
        request.body.reset();
    }

    const Http_Settings _settings;
    const Headers _headers = exportHeaders();
    const Multi _multi = required(Multi(curl().multi_init()));
    std::map<Peer, Request> _requests;
};

bool Http_Client::isAvailable()
{
    return true;
}

Http_Client::Http_Client(const Http_Settings& settings) : _settings(settings) {}

Http_Client::~Http_Client() = default;

void Http_Client::start(Peer peer, const std::string& url, Http_Body body, bool fresh)
{
    if (!_engine)
    {
        auto engine = std::make_unique<Engine>(_settings);
        const std::lock_guard<std::mutex> lock(_lock);
        _engine = std::move(engine);
    }
    _engine->start(peer, url, std::move(body), fresh);
}

std::vector<Http_Client::Outcome> Http_Client::wait(std::chrono::milliseconds atMost)
{
    {
        std::unique_lock<std::mutex> lock(_lock);
        if (!_engine)
            _woken.wait_for(lock, atMost, [this] { return _isWoken; });
        if (std::exchange(_isWoken, false))
            atMost = std::chrono::milliseconds(0);
    }
    return _engine ? _engine->wait(atMost) : std::vector<Outcome>();
}

void Http_Client::wake() noexcept
{
    const std::lock_guard<std::mutex> lock(_lock);
    if (_engine)
        return _engine->wake();
    _isWoken = true;
    _woken.notify_one();
}

void Http_Client::forget(Peer peer) noexcept
{
    if (_engine)
        _engine->forget(peer);
}

} // namespace cimple
