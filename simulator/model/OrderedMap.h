// Elements in the order in which they were added, found by their key.
#ifndef SIMULATOR_MODEL_ORDEREDMAP_H
#define SIMULATOR_MODEL_ORDEREDMAP_H

#include <cstdint>
#include <functional>
#include <map>
#include <utility>
#include <variant>

namespace simulator
{

// Every operation on one element takes O(log n). Without a Value it is an ordered set of keys.
template <class Key, class Value = std::monostate>
class OrderedMap
{
  public:
    struct Element
    {
        Key key;
        Value value;
    };

    // False, and nothing is added, when the key is there.
    bool add(const Key& key, Value value = Value())
    {
        if (!_ages.emplace(key, _nextAge).second)
            return false;
        _elements.emplace_hint(_elements.end(), _nextAge, Element{key, std::move(value)});
        ++_nextAge;
        return true;
    }

    // False when the key is not there.
    template <class AnyKey>
    bool remove(const AnyKey& key)
    {
        const auto found = _ages.find(key);
        if (found == _ages.end())
            return false;
        _elements.erase(found->second);
        _ages.erase(found);
        return true;
    }

    // Null when the key is not there.
    template <class AnyKey>
    const Value* find(const AnyKey& key) const
    {
        const auto found = _ages.find(key);
        return found != _ages.end() ? &_elements.at(found->second).value : nullptr;
    }
    template <class AnyKey>
    Value* find(const AnyKey& key)
    {
        return const_cast<Value*>(std::as_const(*this).find(key));
    }
    template <class AnyKey>
    bool contains(const AnyKey& key) const
    {
        return _ages.find(key) != _ages.end();
    }

    // Null when there is none.
    const Element* first() const { return _elements.empty() ? nullptr : &_elements.begin()->second; }
    // The element after the key's, which must be there; null when it is the last one.
    template <class AnyKey>
    const Element* after(const AnyKey& key) const
    {
        const auto next = _elements.upper_bound(_ages.find(key)->second);
        return next != _elements.end() ? &next->second : nullptr;
    }

    std::size_t size() const { return _elements.size(); }
    bool empty() const { return _elements.empty(); }
    // For loops: pairs of a rising number and the element.
    const std::map<std::uint64_t, Element>& elements() const { return _elements; }

  private:
    std::map<std::uint64_t, Element> _elements;
    std::map<Key, std::uint64_t, std::less<>> _ages;
    std::uint64_t _nextAge = 0;
};

} // namespace simulator

#endif
