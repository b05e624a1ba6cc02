// The I/O thread: accepting, waiting for what can be done, and looking at the time.
//
// A request passes these stations: head complete (I/O thread: refuse() may end it), body read up to the limit
// (I/O thread; a worker may be asked who the client is), request handed to a worker, answer or its first
// chunk made (worker), answer written as it is made (I/O thread). Reply is where the two threads meet.
#include "agent/http/HttpServer.h"

#include "agent/auth/client_address.h"
#include "agent/cim/CimError.h"
#include "agent/http/Connection.h"
#include "agent/http/WorkerPool.h"
#include "agent/http/cim_headers.h"
#include "agent/log/log.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <exception>
#include <future>
#include <list>
#include <map>
#include <mutex>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unordered_map>

namespace cimd
{

namespace
{

constexpr unsigned kInternalError = 500;
constexpr std::size_t kEvents = 64;
constexpr int kAcceptedInTurn =
    16; // so that those who have sent something are read before others take their place
constexpr std::chrono::milliseconds kLookAgain{10}; // looking at all connections costs something
constexpr std::chrono::milliseconds kAcceptAgain{100};
constexpr std::size_t kShownAddresses = 32;
constexpr std::uint64_t kWakeUp = 0; // identities in epoll: this, the listeners, the connections
constexpr std::uint64_t kFirstListener = 1;

std::string systemError()
{
    return std::generic_category().message(errno);
}

std::string peerName(const sockaddr* address, socklen_t size)
{
    char host[NI_MAXHOST];
    char port[NI_MAXSERV];
    if (getnameinfo(address, size, host, sizeof host, port, sizeof port, NI_NUMERICHOST | NI_NUMERICSERV) !=
        0)
        return "unknown";
    return (address->sa_family == AF_INET6 ? "[" + std::string(host) + "]" : host) + ":" + port;
}

} // namespace

class HttpServer::Impl : public Station
{
  public:
    Impl(HttpHandler& theHandler,
         const Limits& theLimits,
         std::vector<ListenSocket> sockets,
         ServerOptions options)
        : Station(theHandler, theLimits, std::move(options.spoolDirectory)),
          _onHungWorkers(std::move(options.onHungWorkers)), _epoll(epoll_create1(EPOLL_CLOEXEC)),
          _wakeUp(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), _pool(limits.workers, limits.queuedRequests)
    {
        if (_epoll.get() < 0 || _wakeUp.get() < 0)
            throw std::runtime_error("cannot serve: " + systemError());
        watch(_wakeUp.get(), kWakeUp, EPOLLIN);
        for (ListenSocket& socket : sockets)
        {
            if (socket.isTls() && !_tls)
                _tls = std::make_shared<TlsContext>(options.tls);
            Listener& listener = _listeners.emplace_back(std::move(socket));
            watch(listener.socket.get(), kFirstListener + _listeners.size() - 1, EPOLLIN | EPOLLET);
        }
        _nextId = kFirstListener + _listeners.size();
        _thread = std::thread([this] { serve(); });
    }

    ~Impl() override
    {
        stop(std::chrono::milliseconds(0));
        onIoThread([this] { _isEnding = true; });
        _thread.join(); // with all connections, which the makers of answers hear
        _pool.join();
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    bool stop(std::chrono::milliseconds grace)
    {
        onIoThread(
            [this]
            {
                isStopping = true;
                for (const Listener& listener : _listeners) // a supervisor may have them open, too
                    epoll_ctl(_epoll.get(), EPOLL_CTL_DEL, listener.socket.get(), nullptr);
                _listeners.clear();
                for (const std::uint64_t id : identities())
                {
                    _connections.at(id)->stop();
                    runConnection(id);
                }
            });
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait_for(lock, grace, [this] { return _exchanges == 0 && _running.empty(); });
        return _running.empty();
    }

    void setTls(const TlsIdentity& identity)
    {
        const auto context = std::make_shared<const TlsContext>(identity);
        onIoThread([&] { _tls = context; });
    }

    std::vector<std::string> connectionTable()
    {
        std::vector<std::string> lines;
        onIoThread([&] { lines = tableOfConnections(); });
        return lines;
    }

  private:
    using ConnectionPtr = std::unique_ptr<Connection>;

    struct Listener
    {
        explicit Listener(ListenSocket&& theSocket) : socket(std::move(theSocket)) {}
        ListenSocket socket;
        bool isReady = true; // somebody may be waiting
    };

    // --- other threads

    // Has the I/O thread do something.
    void post(std::function<void()> task)
    {
        std::lock_guard<std::mutex> lock(_postMutex);
        _posted.push_back(std::move(task));
        const std::uint64_t one = 1;
        if (_posted.size() == 1 && ::write(_wakeUp.get(), &one, sizeof one) < 0)
            log(LogLevel::Error, "http", "cannot wake the I/O thread: " + systemError());
    }

    // The same, and waits until it is done.
    void onIoThread(const std::function<void()>& task)
    {
        const auto done = std::make_shared<std::promise<void>>(); // set_value() may outlast the wait
        std::future<void> isDone = done->get_future();
        post(
            [task, done]
            {
                task();
                done->set_value();
            });
        isDone.wait();
    }

    void wake(std::uint64_t id) override
    {
        post([this, id] { runConnection(id); });
    }

    // Changes what stop() waits for.
    template <class Change>
    void changed(Change change)
    {
        std::lock_guard<std::mutex> lock(_mutex);
        change();
        _changed.notify_all();
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
            log(LogLevel::Error, "http", exchange.request.peer + ": " + error.what());
            response = {kInternalError, {{"Content-Type", "text/plain"}}, "The server failed to answer.\n"};
            response.trailers = failureTrailers(CimError(CimStatus::Failed, "the server failed to answer"));
        }
        exchange.request.body = std::string();
        exchange.share.giveBack();
        _pool.giveBack(worker); // before the client can ask again
        exchange.reply.finish(std::move(response), timeNow());
        changed([&] { _running.remove(running); });
    }

    // --- the I/O thread, from here on

    void began() override
    {
        changed([this] { ++_exchanges; });
    }
    void ended() override
    {
        changed([this] { --_exchanges; });
    }

    bool answer(const ExchangePtr& exchange) override
    {
        if (!_pool.reserve())
            return false;
        changed([&] { _running.push_back(exchange); });
        _pool.submit([this, exchange](WorkerPool::Worker& worker) { work(exchange, worker); });
        _due = std::min(_due, now + limits.operationSeconds);
        return true;
    }

    bool vouch(std::uint64_t id, const ExchangePtr& exchange) override
    {
        if (!_pool.reserve())
            return false;
        _pool.submit(
            [this, id, exchange](WorkerPool::Worker& worker)
            {
                std::optional<HttpResponse> refusal;
                try
                {
                    refusal = handler.vouch(exchange->request);
                }
                catch (const std::exception& error)
                {
                    log(LogLevel::Error, "http", exchange->request.peer + ": " + error.what());
                    refusal = HttpResponse{kInternalError, {}, "The server failed to answer.\n"};
                }
                _pool.giveBack(worker);
                post(
                    [this, id, refusal]
                    {
                        const auto entry = _connections.find(id);
                        if (entry == _connections.end())
                            return;
                        entry->second->vouched(refusal);
                        runConnection(id);
                    });
            });
        return true;
    }

    void watch(int fd, std::uint64_t id, std::uint32_t events)
    {
        epoll_event event{};
        event.events = events;
        event.data.u64 = id;
        if (epoll_ctl(_epoll.get(), EPOLL_CTL_ADD, fd, &event) != 0)
            throw std::runtime_error("cannot watch a socket: " + systemError());
    }

    void serve()
    {
        std::array<epoll_event, kEvents> events;
        while (!_isEnding)
        {
            const int count = epoll_wait(_epoll.get(), events.data(), kEvents, patience());
            now = timeNow();
            for (int i = 0; i < count; ++i)
                take(events[static_cast<std::size_t>(i)]);
            std::vector<std::uint64_t> again;
            again.swap(_again);
            for (const std::uint64_t id : again)
                runConnection(id);
            accept();
            if (now >= _due)
                checkAll();
        }
        for (const auto& entry : _connections)
            entry.second->close("the server is stopping");
        _connections.clear();
        refusals.tellAll(kNever);
    }

    // Milliseconds that epoll may wait.
    int patience() const
    {
        if (!_again.empty() || _acceptsMore)
            return 0;
        if (_due == kNever)
            return -1;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(_due - timeNow()).count() + 1;
        return static_cast<int>(std::clamp<long long>(left, 0, 3'600'000));
    }

    void take(const epoll_event& event)
    {
        const std::uint64_t id = event.data.u64;
        if (id == kWakeUp)
            return runPosted();
        if (id < kFirstListener + _listeners.size())
        {
            _listeners[id - kFirstListener].isReady = true;
            return;
        }
        const auto entry = _connections.find(id);
        if (entry == _connections.end())
            return;
        entry->second->ready(event.events);
        runConnection(id);
    }

    void runPosted()
    {
        std::vector<std::function<void()>> tasks;
        {
            std::lock_guard<std::mutex> lock(_postMutex);
            std::uint64_t count = 0;
            if (::read(_wakeUp.get(), &count, sizeof count) < 0 && errno != EAGAIN)
                log(LogLevel::Error, "http", "cannot read the wake-up: " + systemError());
            tasks.swap(_posted);
        }
        for (const auto& task : tasks)
            task();
    }

    void runConnection(std::uint64_t id)
    try
    {
        const auto entry = _connections.find(id);
        if (entry == _connections.end())
            return;
        Connection& connection = *entry->second;
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

    std::vector<std::uint64_t> identities() const
    {
        std::vector<std::uint64_t> all;
        for (const auto& entry : _connections)
            all.push_back(entry.first);
        return all;
    }

    void checkAll()
    {
        _due = kNever;
        for (const std::uint64_t id : identities())
            runConnection(id);
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
        if (admission.isFull() && admission.next() == nullptr)
        {
            noteFull("max-connections", limits.connections, "new clients");
            return false;
        }
        sockaddr_storage storage{};
        auto* const address = reinterpret_cast<sockaddr*>(&storage);
        socklen_t size = sizeof storage;
        FileDescriptor socket(accept4(listener.socket.get(), address, &size, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (socket.get() < 0)
            return acceptFailed(listener);
        const std::string peer = peerName(address, size);
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
            drop(*admission.next());
        }
        const int on = 1;
        setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
        const std::uint64_t id = _nextId++;
        auto connection = std::make_unique<Connection>(
            *this, id, std::move(socket), listener.socket.isTls() ? _tls : nullptr, peer);
        watch(connection->fd(), id, EPOLLIN | EPOLLOUT | EPOLLRDHUP | EPOLLET);
        _connections.emplace(id, std::move(connection));
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
        switch (errno)
        {
        case EAGAIN:
            listener.isReady = false;
            return false;
        case EMFILE:
        case ENFILE:
        case ENOBUFS:
        case ENOMEM:
            refusals.add(
                {LogLevel::Warning, "http", "cannot take connections: " + systemError()}, "new clients", now);
            _due = std::min(_due, now + kAcceptAgain);
            if (const Admission::Guest* guest = admission.next())
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

    // The addresses with the most connections first.
    std::vector<std::string> tableOfConnections() const
    {
        std::map<std::string, std::map<std::string, std::size_t>> states; // by address
        std::map<std::string, std::size_t> counts;
        for (const auto& entry : _connections)
        {
            const std::string& address = entry.second->guest().address;
            ++states[address][entry.second->stateName()];
            ++counts[address];
        }
        std::vector<std::string> order;
        for (const auto& entry : counts)
            order.push_back(entry.first);
        std::stable_sort(
            order.begin(), order.end(), [&](const auto& a, const auto& b) { return counts[a] > counts[b]; });
        std::vector<std::string> lines{"connections: " + std::to_string(_connections.size()) + " of " +
                                       std::to_string(limits.connections) + " from " +
                                       std::to_string(order.size()) + " addresses"};
        order.resize(std::min(order.size(), kShownAddresses));
        for (const std::string& address : order)
        {
            std::string line = address + ": " + std::to_string(counts[address]);
            const char* separator = ": ";
            for (const auto& [state, count] : states[address])
                line += std::exchange(separator, ", ") + std::to_string(count) + ' ' + state;
            lines.push_back(std::move(line));
        }
        return lines;
    }

    const OnHungWorkers _onHungWorkers;
    std::shared_ptr<const TlsContext> _tls;
    const FileDescriptor _epoll;
    const FileDescriptor _wakeUp;
    std::vector<Listener> _listeners;
    std::unordered_map<std::uint64_t, ConnectionPtr> _connections;
    std::uint64_t _nextId = 0;
    std::vector<std::uint64_t> _again; // those with more to do
    bool _acceptsMore = false;
    bool _isEnding = false;
    Time _due = kNever; // when to look at all connections

    std::mutex _postMutex;
    std::vector<std::function<void()>> _posted;
    std::mutex _mutex;
    std::condition_variable _changed;
    unsigned _exchanges = 0;         // from a complete head to the end of the answer
    std::list<ExchangePtr> _running; // handed to a worker and not yet returned from
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

std::vector<std::string> HttpServer::connectionTable()
{
    return _impl->connectionTable();
}

} // namespace cimd
