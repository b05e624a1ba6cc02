// The I/O thread: accepting, waiting for what can be done, and looking at the time.
//
// A request passes these stations: head complete (I/O thread: refuse() may end it), body read up to the limit
// (I/O thread; a worker may be asked who the client is), request handed to a worker, answer or its first
// chunk made (worker), answer written as it is made (I/O thread). Reply is where the two threads meet.
#include "agent/http/HttpServer.h"

#include "agent/auth/client_address.h"
#include "agent/cim/CimError.h"
#include "agent/http/Connection.h"
#include "agent/http/Epoll.h"
#include "agent/http/cim_headers.h"
#include "agent/log/log.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <exception>
#include <list>
#include <mutex>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>

namespace cimd
{

namespace
{

constexpr int kAcceptedInTurn =
    16; // so that those who have sent something are read before others take their place
constexpr std::chrono::milliseconds kLookAgain{10}; // looking at all connections costs something
constexpr std::chrono::milliseconds kAcceptAgain{100};
// Identities in epoll: its tasks, the listeners, the connections.
constexpr std::uint64_t kFirstListener = Epoll::kTasks + 1;

} // namespace

class HttpServer::Impl : public Station
{
  public:
    Impl(HttpHandler& theHandler,
         const Limits& theLimits,
         std::vector<ListenSocket> sockets,
         ServerOptions options)
        : Station(theHandler, theLimits, std::move(options.spoolDirectory)),
          _onHungWorkers(std::move(options.onHungWorkers)), _pool(limits.workers, limits.queuedRequests)
    {
        for (ListenSocket& socket : sockets)
        {
            if (socket.isTls() && !_tls)
                _tls = std::make_shared<TlsContext>(options.tls);
            Listener& listener = _listeners.emplace_back(Listener{std::move(socket)});
            _epoll.add(listener.socket.get(), kFirstListener + _listeners.size() - 1, EPOLLIN | EPOLLET);
        }
        _nextId = kFirstListener + _listeners.size();
        _thread = std::thread([this] { serve(); });
    }

    ~Impl() override
    {
        stop(std::chrono::milliseconds(0));
        _epoll.postAndWait([this] { _isEnding = true; });
        _thread.join(); // with all connections, which the makers of answers hear
        _pool.join();
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    bool stop(std::chrono::milliseconds grace)
    {
        _epoll.postAndWait(
            [this]
            {
                isStopping = true;
                for (const Listener& listener : _listeners) // a supervisor may have them open, too
                    _epoll.remove(listener.socket.get());
                _listeners.clear();
                for (auto& entry : _connections)
                    entry.second.stop();
                runAll();
            });
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait_for(lock, grace, [this] { return _exchanges == 0; });
        return _running.empty();
    }

    void setTls(const TlsIdentity& identity)
    {
        const auto context = std::make_shared<const TlsContext>(identity);
        _epoll.postAndWait([&] { _tls = context; });
    }

    ServerState state()
    {
        ServerState all;
        for (const char* name : Connection::kStateNames)
            all.connections[name] = 0;
        _epoll.postAndWait(
            [&]
            {
                for (const auto& [id, connection] : _connections)
                {
                    ++all.connections[connection.stateName()];
                    ++all.clients[connection.guest().address][connection.stateName()];
                }
                all.answers = answers;
                all.refusals = refusals.totals();
            });
        all.workers = _pool.load();
        return all;
    }

  private:
    struct Listener
    {
        ListenSocket socket;
        bool isReady = true; // somebody may be waiting
    };

    // --- other threads

    // Changes what stop() waits for.
    template <class Change>
    void changed(Change change)
    {
        std::lock_guard<std::mutex> lock(_mutex);
        change();
        _changed.notify_all();
    }

    static HttpResponse failure(const Exchange& exchange, const std::exception& error)
    {
        log(LogLevel::Error, "http", exchange.request.peer + ": " + error.what());
        HttpResponse response{
            kInternalError, {{"Content-Type", "text/plain"}}, "The server failed to answer.\n"};
        response.trailers = failureTrailers(CimError(CimStatus::Failed, "the server failed to answer"));
        return response;
    }

    void work(const ExchangePtr& running, WorkerPool::Worker& worker)
    {
        Exchange& exchange = *running;
        exchange.reply.start(timeNow(), [this, &worker] { writeOff(worker); });
        HttpResponse response;
        try
        {
            response = handler.answer(exchange.request, exchange.reply);
        }
        catch (const std::exception& error)
        {
            response = failure(exchange, error);
        }
        exchange.dropBody();
        _pool.giveBack(worker); // before the client can ask again
        exchange.reply.finish(std::move(response));
        changed([&] { _running.remove(running); });
    }

    // --- the I/O thread, from here on

    ExchangePtr begin(std::uint64_t id) override
    {
        auto exchange = std::make_shared<Exchange>(
            limits,
            bodies,
            area,
            [this, id] { _epoll.post([this, id] { runConnection(id); }); },
            [this] { changed([this] { --_exchanges; }); });
        changed([this] { ++_exchanges; });
        return exchange;
    }

    bool answer(const ExchangePtr& exchange) override
    {
        bool isTaken = false;
        changed([&] { _running.push_back(exchange); });
        try
        {
            isTaken = _pool.submit([this, exchange](WorkerPool::Worker& worker) { work(exchange, worker); });
        }
        catch (const std::bad_alloc&) // as full as a full queue
        {
        }
        if (isTaken)
            _due = std::min(_due, now + limits.operationSeconds);
        else
            changed([&] { _running.remove(exchange); });
        return isTaken;
    }

    bool vouch(std::uint64_t id, const ExchangePtr& exchange) override
    {
        return _pool.submit(
            [this, id, exchange](WorkerPool::Worker& worker)
            {
                std::optional<HttpResponse> refusal;
                try
                {
                    refusal = handler.vouch(exchange->request);
                }
                catch (const std::exception& error)
                {
                    refusal = failure(*exchange, error);
                }
                _pool.giveBack(worker);
                _epoll.post(
                    [this, id, refusal]
                    { runConnection(id, [&](Connection& connection) { connection.vouched(refusal); }); });
            });
    }

    void serve()
    {
        while (!_isEnding)
        {
            const std::vector<epoll_event>& events = _epoll.wait(patience());
            now = timeNow();
            for (const epoll_event& event : events)
                take(event);
            std::vector<std::uint64_t> again;
            again.swap(_again);
            for (const std::uint64_t id : again)
                runConnection(id);
            accept();
            if (now >= _due)
                checkAll();
        }
        for (auto& entry : _connections)
            entry.second.close("the server is stopping");
        _connections.clear();
        refusals.tellAll(kNever);
    }

    // Milliseconds that epoll may wait.
    int patience() const
    {
        if (!_again.empty() || _acceptsMore)
            return 0;
        const Time due = std::min(_due, _acceptAgain);
        if (due == kNever)
            return -1;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(due - timeNow()).count() + 1;
        return static_cast<int>(std::clamp<long long>(left, 0, 3'600'000));
    }

    void take(const epoll_event& event)
    {
        const std::uint64_t id = event.data.u64;
        if (id == Epoll::kTasks)
            return _epoll.runTasks();
        if (id < kFirstListener + _listeners.size())
        {
            _listeners[id - kFirstListener].isReady = true;
            return;
        }
        runConnection(id, [&event](Connection& connection) { connection.ready(event.events); });
    }

    // Has a connection, if it is still there, do what there is to do, after something else.
    void runConnection(std::uint64_t id, const std::function<void(Connection&)>& first = {})
    try
    {
        const auto entry = _connections.find(id);
        if (entry == _connections.end())
            return;
        Connection& connection = entry->second;
        if (first)
            first(connection);
        if (connection.run())
            _again.push_back(id);
        _due = std::min(_due, connection.check());
        if (connection.isOver())
            _connections.erase(entry);
    }
    catch (const std::exception& error) // of memory mostly
    {
        log(LogLevel::Error, "http", std::string("a connection had to be given up: ") + error.what());
        _connections.erase(id);
    }

    void runAll()
    {
        std::vector<std::uint64_t> all;
        for (const auto& entry : _connections)
            all.push_back(entry.first);
        for (const std::uint64_t id : all)
            runConnection(id);
    }

    void checkAll()
    {
        _due = kNever;
        runAll();
        std::list<ExchangePtr> running;
        {
            std::lock_guard<std::mutex> lock(_mutex);
            running = _running;
        }
        // A client that has gone leaves its provider behind; and a request may wait for its worker.
        for (const ExchangePtr& exchange : running)
            _due = std::min({_due, exchange->reply.check(now), now + limits.operationSeconds});
        _due = std::min(_due, refusals.tellAll(now));
        _due = std::max(_due, now + kLookAgain);
    }

    // --- accepting

    void accept()
    {
        _acceptsMore = false;
        _acceptAgain = kNever;
        for (Listener& listener : _listeners)
        {
            int accepted = 0;
            while (listener.isReady && accepted < kAcceptedInTurn && acceptOne(listener))
                ++accepted;
            _acceptsMore = _acceptsMore || accepted == kAcceptedInTurn;
        }
    }

    // False when there is nobody, or no place.
    bool acceptOne(Listener& listener)
    try
    {
        if (admission.isFull() && admission.next(now) == nullptr)
        {
            if (!std::exchange(_isTurningAway, true))
                noteFull("max-connections", limits.connections, "new clients");
            _acceptAgain = now + kAcceptAgain;
            return false;
        }
        _isTurningAway = false;
        std::string peer;
        FileDescriptor socket = listener.socket.accept(peer);
        if (socket.get() < 0)
            return acceptFailed(listener);
        const std::string origin = clientAddress(peer);
        if (admission.isFullFor(origin))
        {
            noteFull("max-connections-per-address", limits.connectionsPerAddress, peer);
            const Admission::Guest* guest = admission.next(origin);
            if (guest == nullptr)
                return true;
            drop(*guest);
        }
        if (admission.isFull())
        {
            noteFull("max-connections", limits.connections, peer);
            drop(*admission.next(now));
        }
        const std::uint64_t id = _nextId++;
        _epoll.add(socket.get(), id, EPOLLIN | EPOLLOUT | EPOLLRDHUP | EPOLLET);
        _connections.try_emplace(
            id, *this, id, std::move(socket), listener.socket.isTls() ? _tls : nullptr, peer);
        runConnection(id);
        return true;
    }
    catch (const std::exception& error)
    {
        log(LogLevel::Error, "http", std::string("a client cannot be served: ") + error.what());
        return true;
    }

    void drop(const Admission::Guest& guest)
    {
        const std::uint64_t id = guest.id; // the guest ends with the connection
        _connections.erase(id);
    }

    bool acceptFailed(Listener& listener)
    {
        const int reason = errno;
        switch (reason)
        {
        case EAGAIN:
            listener.isReady = false;
            return false;
        case EMFILE:
        case ENFILE:
        case ENOBUFS:
        case ENOMEM:
            if (!listener.socket.hasClient())
            {
                listener.isReady = false;
                return false;
            }
            refusals.add({LogLevel::Warning,
                          "http",
                          "cannot take connections: " + std::generic_category().message(reason)},
                         "new clients",
                         now);
            _acceptAgain = now + kAcceptAgain;
            if (const Admission::Guest* guest = admission.next(now))
                drop(*guest);
            return false;
        default: // the client has left meanwhile
            return true;
        }
    }

    void noteFull(const char* option, std::size_t limit, const std::string& peer)
    {
        RefusalLog::Refusal refusal{LogLevel::Warning, "http", std::string("--") + option + " is reached"};
        if (refusals.isNews(refusal.reason))
            refusal.detail = ": " + std::to_string(limit) + " connections, most from " + admission.most();
        refusals.add(refusal, peer, now);
    }

    void writeOff(WorkerPool::Worker& worker)
    {
        const unsigned hung = _pool.writeOff(worker);
        log(LogLevel::Error,
            "http",
            "an operation hangs; its thread was replaced, " + std::to_string(hung) + " of at most " +
                std::to_string(limits.hungWorkers) + " such threads");
        if (hung > limits.hungWorkers && _onHungWorkers)
            _onHungWorkers();
    }

    const OnHungWorkers _onHungWorkers;
    std::shared_ptr<const TlsContext> _tls;
    Epoll _epoll;
    std::vector<Listener> _listeners;
    std::unordered_map<std::uint64_t, Connection> _connections;
    std::uint64_t _nextId = 0;
    std::vector<std::uint64_t> _again; // those with more to do
    bool _acceptsMore = false;
    bool _isTurningAway = false;
    Time _acceptAgain = kNever; // there was no place, or no descriptor
    bool _isEnding = false;
    Time _due = kNever; // when to look at all connections

    std::mutex _mutex;
    std::condition_variable _changed;
    unsigned _exchanges = 0; // of connections and workers
    // Handed to a worker and not yet returned from; others hold them as long, for their end takes the mutex.
    std::list<ExchangePtr> _running;
    WorkerPool _pool;
    std::thread _thread; // last: it uses the others
};

HttpServer::HttpServer(HttpHandler& handler,
                       const Limits& limits,
                       std::vector<ListenSocket> sockets,
                       ServerOptions options)
    : _impl(std::make_unique<Impl>(handler, limits, std::move(sockets), std::move(options)))
{
}

HttpServer::~HttpServer() = default;

bool HttpServer::stop(std::chrono::milliseconds grace)
{
    return _impl->stop(grace);
}

void HttpServer::setTls(const TlsIdentity& identity)
{
    _impl->setTls(identity);
}

ServerState HttpServer::state()
{
    return _impl->state();
}

} // namespace cimd
