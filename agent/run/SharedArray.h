// Memory that processes forked later share with this one.
#ifndef AGENT_RUN_SHAREDARRAY_H
#define AGENT_RUN_SHAREDARRAY_H

#include <cerrno>
#include <cstddef>
#include <sys/mman.h>
#include <system_error>
#include <type_traits>

namespace cimd
{

// A fixed number of items that start as zero bytes. They are never constructed or destroyed.
template <class Item>
class SharedArray
{
  public:
    // Throws std::system_error when there is no memory.
    explicit SharedArray(std::size_t size)
        : _size(size),
          _items(static_cast<Item*>(
              mmap(nullptr, size * sizeof(Item), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)))
    {
        static_assert(std::is_trivially_destructible_v<Item>);
        if (_items == MAP_FAILED)
            throw std::system_error(errno, std::generic_category(), "memory shared between processes");
    }
    ~SharedArray() { munmap(_items, _size * sizeof(Item)); }
    SharedArray(const SharedArray&) = delete;
    SharedArray& operator=(const SharedArray&) = delete;

    std::size_t size() const { return _size; }
    Item& operator[](std::size_t i) const { return _items[i]; }
    Item* begin() const { return _items; }
    Item* end() const { return _items + _size; }

  private:
    const std::size_t _size;
    Item* const _items;
};

} // namespace cimd

#endif
