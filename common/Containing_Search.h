// Finds for many texts at once the first of a row of instances in which each is part of a text.
#ifndef COMMON_CONTAINING_SEARCH_H
#define COMMON_CONTAINING_SEARCH_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

namespace cimple
{

// It finds what looking through all instances for one text after the other would find, because it looks at
// the same places: of each instance, in their order, every piece that is as long as a wanted text is looked
// up among the wanted texts not found yet, letter case included. A hash that rolls along the text makes this
// one pass over the instances for each length that wanted texts have; identifiers have a handful.
//
// Identifiers in a row begin alike. Pieces of what a text has in common with the one before it were looked up
// there, so that each costs a time in proportion to what is new in it.
template <class CLASS>
class Containing_Search
{
  public:
    typedef std::uint32_t Number;

    // Has this text searched for. A text has the same number each time.
    Number want(const std::string& text)
    {
        const auto [place, isNew] = _numbers.emplace(text, static_cast<Number>(_wanted.size()));
        if (isNew)
            _wanted.push_back({&place->first, nullptr, hashOf(text.data(), text.size()), kNone});
        return place->second;
    }

    // Goes through `row`, a range of const CLASS*. textOf(const CLASS&) is a text that lives as long as the
    // instance.
    template <class ROW, class TEXT_OF>
    void run(const ROW& row, TEXT_OF textOf)
    {
        std::vector<Length> lengths = byLength();
        const char* former = nullptr;
        for (const CLASS* instance : row)
        {
            const char* const text = textOf(*instance);
            const std::ptrdiff_t known = former != nullptr ? common(former, text) : kNothing;
            for (Length& one : lengths)
                lookUpPieces(one, *instance, text, known);
            former = text;
            const auto isDone = [](const Length& one) { return one.pending == 0; };
            lengths.erase(std::remove_if(lengths.begin(), lengths.end(), isDone), lengths.end());
            if (lengths.empty())
                return;
        }
    }

    // The first instance with the text, or null.
    const CLASS* find(Number number) const { return _wanted[number].found; }

  private:
    static constexpr Number kNone = static_cast<Number>(-1);
    static constexpr std::ptrdiff_t kNothing = -1; // not even the empty text is known
    static constexpr std::uint32_t kBase = 16777619U;

    struct Wanted
    {
        const std::string* text; // the key in _numbers
        const CLASS* found;
        std::uint32_t hash;
        Number next; // in the same bucket
    };
    // The wanted texts of one length, by hash.
    struct Length
    {
        std::size_t length;
        std::size_t pending;
        std::uint32_t weight;      // of the first character in a hash
        std::vector<Number> heads; // their number is a power of two

        // Not the low bits of the hash, which depend on the low bits of the characters alone.
        Number& head(std::uint32_t hash) { return heads[(hash * 2654435769U >> 8) & (heads.size() - 1)]; }
    };

    static std::uint32_t valueOf(char c) { return static_cast<unsigned char>(c); }
    static std::uint32_t hashOf(const char* text, std::size_t size)
    {
        std::uint32_t hash = 0;
        for (std::size_t i = 0; i < size; ++i)
            hash = hash * kBase + valueOf(text[i]);
        return hash;
    }

    // Characters that both texts begin with.
    static std::ptrdiff_t common(const char* a, const char* b)
    {
        std::ptrdiff_t size = 0;
        while (a[size] == b[size] && a[size] != '\0')
            ++size;
        return size;
    }

    std::vector<Length> byLength()
    {
        std::vector<Length> lengths;
        const auto ofSize = [&lengths](std::size_t size)
        {
            return std::find_if(
                lengths.begin(), lengths.end(), [size](const Length& one) { return one.length == size; });
        };
        for (const Wanted& wanted : _wanted)
        {
            const std::size_t size = wanted.text->size();
            if (const auto known = ofSize(size); known != lengths.end())
            {
                ++known->pending;
                continue;
            }
            std::uint32_t weight = 1;
            for (std::size_t i = 1; i < size; ++i)
                weight *= kBase;
            lengths.push_back({size, 1, weight, {}});
        }
        for (Length& one : lengths)
        {
            // Most pieces are not wanted: they shall meet an empty bucket.
            std::size_t buckets = 8;
            while (buckets < 4 * one.pending)
                buckets *= 2;
            one.heads.assign(buckets, kNone);
        }
        for (Number i = 0; i < _wanted.size(); ++i)
        {
            Number& head = ofSize(_wanted[i].text->size())->head(_wanted[i].hash);
            _wanted[i].next = head;
            head = i;
        }
        return lengths;
    }

    // Of the pieces of this length those that end behind the first `known` characters.
    void lookUpPieces(Length& among, const CLASS& instance, const char* text, std::ptrdiff_t known)
    {
        const auto length = static_cast<std::ptrdiff_t>(among.length);
        const auto size = static_cast<std::ptrdiff_t>(std::strlen(text));
        std::ptrdiff_t start = std::max<std::ptrdiff_t>(0, known + 1 - length);
        if (start + length > size)
            return;
        std::uint32_t hash = hashOf(text + start, among.length);
        for (;;)
        {
            for (Number i = among.head(hash); i != kNone; i = _wanted[i].next)
            {
                Wanted& wanted = _wanted[i];
                if (wanted.hash != hash || wanted.found != nullptr ||
                    std::memcmp(wanted.text->data(), text + start, among.length) != 0)
                    continue;
                wanted.found = &instance;
                --among.pending;
            }
            if (start + length == size)
                return;
            hash = (hash - valueOf(text[start]) * among.weight) * kBase + valueOf(text[start + length]);
            ++start;
        }
    }

    std::unordered_map<std::string, Number> _numbers;
    std::vector<Wanted> _wanted;
};

} // namespace cimple

#endif
