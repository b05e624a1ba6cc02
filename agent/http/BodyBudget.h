// The memory that the bodies of all requests share.
#ifndef AGENT_HTTP_BODYBUDGET_H
#define AGENT_HTTP_BODYBUDGET_H

#include <algorithm>
#include <atomic>
#include <cstddef>

namespace cimd
{

// Used from any thread.
class BodyBudget
{
  public:
    explicit BodyBudget(std::size_t bytes) : _bytes(bytes) {}

    // False, and nothing taken, if less than that is left.
    bool take(std::size_t bytes)
    {
        if (_used.fetch_add(bytes) + bytes <= _bytes)
            return true;
        _used -= bytes;
        return false;
    }
    void giveBack(std::size_t bytes) { _used -= bytes; }
    std::size_t bytes() const { return _bytes; }

  private:
    const std::size_t _bytes;
    std::atomic<std::size_t> _used{0};
};

// What one body has taken, given back at the end of the scope. Used on one thread at a time. So much of it is
// free: a few large bodies must not keep out all others, which are small.
class BodyShare
{
  public:
    // `budget` outlives the share.
    BodyShare(BodyBudget& budget, std::size_t free) : _budget(budget), _free(free) {}
    ~BodyShare() { giveBack(); }
    BodyShare(const BodyShare&) = delete;
    BodyShare& operator=(const BodyShare&) = delete;

    bool take(std::size_t bytes)
    {
        const std::size_t before = counted();
        _taken += bytes;
        if (_budget.take(counted() - before))
            return true;
        _taken -= bytes;
        return false;
    }
    // At most what it has taken.
    void giveBack(std::size_t bytes)
    {
        const std::size_t before = counted();
        _taken -= bytes;
        _budget.giveBack(before - counted());
    }
    void giveBack() { giveBack(_taken); }

  private:
    std::size_t counted() const { return _taken - std::min(_taken, _free); }

    BodyBudget& _budget;
    const std::size_t _free;
    std::size_t _taken = 0;
};

} // namespace cimd

#endif
