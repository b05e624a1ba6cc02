// Finds instances of an array by their keys in constant time. Internal to Instance_Map.
#ifndef CIMPLE_KEY_INDEX_H
#define CIMPLE_KEY_INDEX_H

#include <cimple/Key_Digest.h>
#include <cimple/Slots.h>

CIMPLE_NAMESPACE_BEGIN

// A hash table of the slots of an array that its owner keeps; the owner tells of every change to the array.
//
// Keys are hashed by name and value, so that models of related classes find what key_eq would. Only when a
// model's shape could match a different one does a look-up go through the array.
class Key_Index
{
  public:
    // Position of the first instance that has all its keys from the model, or size_t(-1).
    size_t find(const Array<Instance*>& instances,
                const Slots& slots,
                const Instance* model,
                const Digest& digest) const;

    // `slot` is the next one. Nothing changes if memory runs out.
    void add(const Instance* instance, const Digest& digest);

    void remove(uint32 slot);

    // Before the slots are renumbered: what is at a position gets it as its slot. Does not throw.
    void renumber(const Slots& slots);

    void clear();

  private:
    static constexpr uint32 kNone = 0xFFFFFFFF;
    static constexpr uint32 kGone = 0xFFFFFFFE;

    struct Node
    {
        uint32 hash;
        uint32 next; // slot of the next instance in the same bucket, kNone, or kGone: it has been removed
    };

    void grow(size_t n);
    void link_all();
    void link(uint32 slot);

    std::vector<uint32> _buckets; // slots, or kNone; a power of two of them
    std::vector<Node> _nodes;     // by slot
    Key_Shapes _shapes;
};

CIMPLE_NAMESPACE_END

#endif
