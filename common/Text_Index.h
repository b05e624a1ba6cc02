// Look-up of a map's instances by a text, for loads that pair two maps.
#ifndef COMMON_TEXT_INDEX_H
#define COMMON_TEXT_INDEX_H

#include "common/map_access.h"

#include <cstdint>
#include <string>
#include <strings.h>
#include <utility>
#include <vector>

namespace cimple
{

// What instances are found by: a text of the instance (const char*, as long-lived as the instance; null
// leaves it out), two of them (null in the first leaves it out), or a computed text (std::string; the empty
// one leaves it out). Compared without regard to letter case (of ASCII letters).
struct Two_Texts
{
    const char* first;
    const char* second;
};

namespace text_key
{

inline bool isLeftOut(const char* key)
{
    return key == nullptr;
}
inline bool isLeftOut(const Two_Texts& key)
{
    return key.first == nullptr;
}
inline bool isLeftOut(const std::string& key)
{
    return key.empty();
}

inline bool equal(const char* a, const char* b)
{
    return strcasecmp(a, b) == 0;
}
inline bool equal(const Two_Texts& a, const Two_Texts& b)
{
    return equal(a.second, b.second) && equal(a.first, b.first);
}
inline bool equal(const std::string& a, const std::string& b)
{
    return equal(a.c_str(), b.c_str());
}

// FNV-1a over the text in lower case; the same for letters of either case.
constexpr std::uint32_t kHashStart = 2166136261U;
inline std::uint32_t hashOf(const char* text, std::uint32_t hash = kHashStart)
{
    for (; *text != '\0'; ++text)
    {
        const bool upper = *text >= 'A' && *text <= 'Z';
        const auto c = static_cast<unsigned char>(upper ? *text + ('a' - 'A') : *text);
        hash = (hash ^ c) * 16777619U;
    }
    return hash;
}
inline std::uint32_t hashOf(const Two_Texts& key)
{
    return hashOf(key.second, hashOf(key.first));
}
inline std::uint32_t hashOf(const std::string& key)
{
    return hashOf(key.c_str());
}

} // namespace text_key

// Finds the instances of a map by their key (see above), so that a load can pair two maps in one pass over
// each. Borrows the instances and their texts.
template <class CLASS, class KEY = const char*>
class Text_Index
{
  public:
    // keyOf(const CLASS&) gives the KEY of an instance.
    template <class KEY_OF>
    Text_Index(const Map_View<CLASS>& view, KEY_OF keyOf)
    {
        _entries.reserve(view.size());
        for (const CLASS* instance : view)
        {
            KEY key = keyOf(*instance);
            if (text_key::isLeftOut(key))
                continue;
            const std::uint32_t hash = text_key::hashOf(key);
            _entries.push_back({instance, std::move(key), hash, kNone});
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

    // Calls visit(const CLASS*) for each instance with this key, in the map's order.
    template <class VISIT>
    void forEach(const KEY& key, VISIT visit) const
    {
        for (Position i = firstWith(key); i != kNone; i = matching(_entries[i].next, key, _entries[i].hash))
            visit(_entries[i].instance);
    }

    // The first instance with this key, or null.
    const CLASS* find(const KEY& key) const
    {
        const Position i = firstWith(key);
        return i != kNone ? _entries[i].instance : nullptr;
    }

  private:
    // In _entries. Small, because the whole index is walked at random while two maps are paired.
    typedef std::uint32_t Position;
    static constexpr Position kNone = static_cast<Position>(-1);
    struct Entry
    {
        const CLASS* instance;
        KEY key;
        std::uint32_t hash;
        Position next; // in the same bucket
    };

    // The bucket of a hash; their number is a power of two.
    std::size_t bucketOf(std::uint32_t hash) const { return hash & (_heads.size() - 1); }

    // The first entry with this key from `i` on in its bucket.
    Position matching(Position i, const KEY& key, std::uint32_t hash) const
    {
        while (i != kNone && (_entries[i].hash != hash || !text_key::equal(_entries[i].key, key)))
            i = _entries[i].next;
        return i;
    }
    Position firstWith(const KEY& key) const
    {
        const std::uint32_t hash = text_key::hashOf(key);
        return matching(_heads[bucketOf(hash)], key, hash);
    }

    std::vector<Entry> _entries; // in the map's order
    std::vector<Position> _heads;
};

} // namespace cimple

#endif
