// Places for requests in shared memory. Texts are atomic characters: a process that looks on while others
// write may see a mixture, which is good enough for a log, but no data race.
#include "agent/run/InFlight.h"

#include "agent/log/log.h"

#include <array>
#include <cstdint>

namespace cimd
{

namespace
{

constexpr auto kRelaxed = std::memory_order_relaxed;

// Lock-free, so that it works between processes and in signal handlers.
static_assert(std::atomic<char>::is_always_lock_free && std::atomic<std::uint32_t>::is_always_lock_free);

class SharedText
{
  public:
    void set(std::string_view text)
    {
        const bool isCut = text.size() >= _chars.size();
        const std::size_t length = isCut ? _chars.size() - 1 : text.size();
        for (std::size_t i = 0; i < length; ++i)
            _chars[i].store(isCut && i + kDots.size() >= length ? '.' : text[i], kRelaxed);
        _chars[length].store('\0', kRelaxed);
    }

    std::string get() const
    {
        std::string text;
        for (const std::atomic<char>& c : _chars)
        {
            const char value = c.load(kRelaxed);
            if (value == '\0')
                break;
            text += value;
        }
        return text;
    }

  private:
    static constexpr std::string_view kDots = "...";
    std::array<std::atomic<char>, 64> _chars;
};

} // namespace

// New pages are zero: every place is free.
struct InFlight::Slot
{
    std::atomic<std::uint32_t> isTaken;
    std::atomic<std::uint32_t> isCulprit;
    std::atomic<std::uint32_t> startMs; // since the table was made
    SharedText operation;
    SharedText className;
    SharedText peer;
};

namespace
{

// Of this thread; void because the type is private. Constant-initialised, so signal handlers can read it.
thread_local std::atomic<void*> currentSlot{nullptr};

} // namespace

InFlight::InFlight(std::size_t slots) : _slots(slots), _start(std::chrono::steady_clock::now()) {}

InFlight::~InFlight() = default;

std::vector<InFlight::Request> InFlight::list() const
{
    using namespace std::chrono;
    const auto now = duration_cast<milliseconds>(steady_clock::now() - _start);
    std::vector<Request> requests;
    for (const Slot& slot : _slots)
    {
        if (slot.isTaken.load(std::memory_order_acquire) == 0)
            continue;
        const std::uint32_t age = static_cast<std::uint32_t>(now.count()) - slot.startMs.load(kRelaxed);
        requests.push_back({slot.operation.get(),
                            slot.className.get(),
                            slot.peer.get(),
                            milliseconds(age),
                            slot.isCulprit.load(kRelaxed) != 0});
    }
    return requests;
}

std::string InFlight::Request::text() const
{
    return operationText(operation, className) + peer + ": in flight for " + secondsText(age) +
           (isCulprit ? ", crashed here" : "");
}

void InFlight::clear()
{
    for (Slot& slot : _slots)
        slot.isTaken.store(0, std::memory_order_release);
}

void InFlight::markCulprit() noexcept
{
    if (void* const slot = currentSlot.load(kRelaxed))
        static_cast<Slot*>(slot)->isCulprit.store(1, kRelaxed);
}

InFlight::Slot* InFlight::take()
{
    const std::size_t first = _next.fetch_add(1, kRelaxed);
    for (std::size_t i = 0; i < _slots.size(); ++i)
    {
        Slot& slot = _slots[(first + i) % _slots.size()];
        std::uint32_t expected = 0;
        if (slot.isTaken.compare_exchange_strong(expected, 1, std::memory_order_acquire))
            return &slot;
    }
    return nullptr;
}

InFlight::Entry::Entry(InFlight* table, std::string_view operation, std::string_view peer)
    : _slot(table != nullptr ? table->take() : nullptr),
      _outer(static_cast<Slot*>(currentSlot.exchange(_slot, kRelaxed)))
{
    using namespace std::chrono;
    if (_slot == nullptr)
        return;
    const auto start = duration_cast<milliseconds>(steady_clock::now() - table->_start);
    _slot->startMs.store(static_cast<std::uint32_t>(start.count()), kRelaxed);
    _slot->isCulprit.store(0, kRelaxed);
    _slot->operation.set(operation);
    _slot->className.set({});
    _slot->peer.set(peer);
}

InFlight::Entry::~Entry()
{
    currentSlot.store(_outer, kRelaxed);
    if (_slot != nullptr)
        _slot->isTaken.store(0, std::memory_order_release);
}

void InFlight::Entry::about(std::string_view className)
{
    if (_slot != nullptr)
        _slot->className.set(className);
}

} // namespace cimd
