// How often a provider was called for a class.
#ifndef AGENT_PROVIDERS_CALLCOUNT_H
#define AGENT_PROVIDERS_CALLCOUNT_H

#include <atomic>
#include <cstdint>
#include <exception>

namespace cimd
{

// All members may be called from any thread.
class CallCount
{
  public:
    std::uint64_t made() const { return _made.load(std::memory_order_relaxed); }
    std::uint64_t failed() const { return _failed.load(std::memory_order_relaxed); }

    // Counts a call, which has failed if an exception ends the scope.
    class Call
    {
      public:
        explicit Call(CallCount& count) : _count(count)
        {
            _count._made.fetch_add(1, std::memory_order_relaxed);
        }
        ~Call()
        {
            if (std::uncaught_exceptions() > _before)
                _count._failed.fetch_add(1, std::memory_order_relaxed);
        }
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;

      private:
        CallCount& _count;
        const int _before = std::uncaught_exceptions();
    };

  private:
    std::atomic<std::uint64_t> _made{0};
    std::atomic<std::uint64_t> _failed{0};
};

} // namespace cimd

#endif
