// Look-up of a map's instances by a text, for loads that pair two maps.
#ifndef COMMON_TEXT_INDEX_H
#define COMMON_TEXT_INDEX_H

#include "common/map_access.h"

#include <cstdint>
#include <strings.h>
#include <vector>

namespace cimple
{

// Finds the instances of a map by a text without regard to letter case (of ASCII letters), so that a load can
// pair two maps in one pass over each. Borrows the instances and their texts.
template <class CLASS>
class Text_Index
{
  public:
    // textOf(const CLASS&) gives the text of an instance (const char*, as long-lived as the instance); null
    // leaves the instance out.
    template <class TEXT_OF>
    Text_Index(const Map_View<CLASS>& view, TEXT_OF textOf)
    {
        _entries.reserve(view.size());
        for (const CLASS* instance : view)
        {
            const char* text = textOf(*instance);
            if (text != nullptr)
                _entries.push_back({instance, text, hashOf(text), kNone});
        }
        std::size_t buckets = 1;
        while (buckets < _entries.size())
            buckets *= 2;
        _heads.assign(buckets, kNone);
        // From the last to the first: a chain begins at its first entry.
        for (Position i = static_cast<Position>(_entries.size()); i-- > 0;)
        {
            Position& head = _heads[bucketOf(_entries[i].hash)];
            _entries[i].next = head;
            head = i;
        }
    }

    // Calls visit(const CLASS*) for each instance with this text, in the map's order.
    template <class VISIT>
    void forEach(const char* text, VISIT visit) const
    {
        for (Position i = firstWith(text); i != kNone; i = matching(_entries[i].next, text, _entries[i].hash))
            visit(_entries[i].instance);
    }

    // The first instance with this text, or null.
    const CLASS* find(const char* text) const
    {
        const Position i = firstWith(text);
        return i != kNone ? _entries[i].instance : nullptr;
    }

  private:
    // In _entries. Small, because the whole index is walked at random while two maps are paired.
    typedef std::uint32_t Position;
    static constexpr Position kNone = static_cast<Position>(-1);
    struct Entry
    {
        const CLASS* instance;
        const char* text;
        std::uint32_t hash;
        Position next; // in the same bucket
    };

    // FNV-1a over the text in lower case; the same for letters of either case.
    static std::uint32_t hashOf(const char* text)
    {
        std::uint32_t hash = 2166136261U;
        for (; *text != '\0'; ++text)
        {
            const bool upper = *text >= 'A' && *text <= 'Z';
            const auto c = static_cast<unsigned char>(upper ? *text + ('a' - 'A') : *text);
            hash = (hash ^ c) * 16777619U;
        }
        return hash;
    }

    // The bucket of a hash; their number is a power of two.
    std::size_t bucketOf(std::uint32_t hash) const { return hash & (_heads.size() - 1); }

    // The first entry with this text from `i` on in its bucket.
    Position matching(Position i, const char* text, std::uint32_t hash) const
    {
        while (i != kNone && (_entries[i].hash != hash || strcasecmp(_entries[i].text, text) != 0))
            i = _entries[i].next;
        return i;
    }
    Position firstWith(const char* text) const
    {
        const std::uint32_t hash = hashOf(text);
        return matching(_heads[bucketOf(hash)], text, hash);
    }

    std::vector<Entry> _entries; // in the map's order
    std::vector<Position> _heads;
};

} // namespace cimple

#endif
