// Look-up of a map's instances by a text, for loads that pair two maps.
#ifndef COMMON_TEXT_INDEX_H
#define COMMON_TEXT_INDEX_H

#include "common/map_access.h"
#include "common/string_helpers.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace cimple
{

// Finds the instances of a map by a text without regard to letter case, so that a load can pair two maps in
// one pass over each. Borrows the instances.
template <class CLASS>
class Text_Index
{
  public:
    // textOf(const CLASS&) gives the text of an instance (const char*); null leaves the instance out.
    template <class TEXT_OF>
    Text_Index(const Map_View<CLASS>& view, TEXT_OF textOf)
    {
        _first.reserve(view.size());
        for (const CLASS* instance : view)
        {
            const char* text = textOf(*instance);
            if (text != nullptr)
                add(upperCased(text), instance);
        }
    }

    // Calls visit(const CLASS*) for each instance with this text, in the map's order.
    template <class VISIT>
    void forEach(const char* text, VISIT visit) const
    {
        const auto found = _first.find(upperCased(text));
        if (found == _first.end())
            return;
        for (std::size_t i = found->second.head; i != kNone; i = _entries[i].next)
            visit(_entries[i].instance);
    }

    // The first instance with this text, or null.
    const CLASS* find(const char* text) const
    {
        const auto found = _first.find(upperCased(text));
        return found != _first.end() ? _entries[found->second.head].instance : nullptr;
    }

  private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    struct Chain
    {
        std::size_t head;
        std::size_t tail;
    };
    struct Entry
    {
        const CLASS* instance;
        std::size_t next;
    };

    void add(std::string text, const CLASS* instance)
    {
        const std::size_t position = _entries.size();
        _entries.push_back({instance, kNone});
        const auto [found, isNew] = _first.try_emplace(std::move(text), Chain{position, position});
        if (!isNew)
        {
            _entries[found->second.tail].next = position;
            found->second.tail = position;
        }
    }

    std::unordered_map<std::string, Chain> _first;
    std::vector<Entry> _entries;
};

} // namespace cimple

#endif
