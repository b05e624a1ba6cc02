// Memory or file space that many share.
#ifndef AGENT_HTTP_BYTEBUDGET_H
#define AGENT_HTTP_BYTEBUDGET_H

#include <algorithm>
#include <atomic>
#include <cstddef>

namespace cimd
{

// Used from any thread.
class ByteBudget
{
  public:
    explicit ByteBudget(std::size_t most) : _most(most) {}

    // False, and nothing taken, if less than that is left.
    bool take(std::size_t bytes)
    {
        if (_used.fetch_add(bytes) + bytes <= _most)
            return true;
        _used -= bytes;
        return false;
    }
    void giveBack(std::size_t bytes) { _used -= bytes; }
    std::size_t most() const { return _most; }
    std::size_t used() const { return _used; }

  private:
    const std::size_t _most;
    std::atomic<std::size_t> _used{0};
};

// What one of them has taken, given back at the end of the scope. Used on one thread at a time.
class ByteShare
{
  public:
    // `budget` outlives the share. So much of it is free: a few large shares must not keep out all others,
    // which are small.
    explicit ByteShare(ByteBudget& budget, std::size_t free = 0) : _budget(budget), _free(free) {}
    ~ByteShare() { giveBack(); }
    ByteShare(const ByteShare&) = delete;
    ByteShare& operator=(const ByteShare&) = delete;

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
    std::size_t taken() const { return _taken; }

  private:
    std::size_t counted() const { return _taken - std::min(_taken, _free); }

    ByteBudget& _budget;
    const std::size_t _free;
    std::size_t _taken = 0;
};

} // namespace cimd

#endif
