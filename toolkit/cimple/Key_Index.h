// Finds instances of an array by their keys in constant time. Internal to Instance_Map.
#ifndef CIMPLE_KEY_INDEX_H
#define CIMPLE_KEY_INDEX_H

#include <cimple/Instance.h>
#include <memory>
#include <vector>

CIMPLE_NAMESPACE_BEGIN

// A hash table over the positions of an array that its owner keeps; the owner tells of every change to the
// array.
//
// Keys are hashed by name and value, so that models of related classes find what key_eq would. key_eq also
// holds between instances whose references lead to objects with different sets of keys; the index knows which
// sets
// ("shapes") occur, and only when a model's shape could match a different one does a look-up go through the
// array.
class Key_Index
{
  public:
    struct Digest
    {
        size_t shape; // hash of the names and types of keys
        size_t value; // hash of those and their values
    };

    static Digest digest_of(const Instance* instance);

    // Position of the first instance that has all its keys from the model, or size_t(-1).
    size_t find(const Array<Instance*>& instances, const Instance* model, const Digest& digest) const;

    // The next position is this instance's. Nothing changes if memory runs out.
    void add(const Instance* instance, const Digest& digest);

    // The position is gone; those behind it move up.
    void remove(size_t pos);

    void clear();

  private:
    static constexpr uint32 kNone = 0xFFFFFFFF;

    struct Node
    {
        size_t hash;
        uint32 next; // position of the next instance in the same bucket, or kNone
    };

    struct Destroyer
    {
        void operator()(Instance* instance) const { destroy(instance); }
    };

    struct Shape
    {
        size_t hash;
        std::unique_ptr<Instance, Destroyer> sample; // keys of some instance of this shape
    };

    bool may_match_other_shape(const Instance* model, size_t shape) const;
    void rebuild_buckets(size_t n);
    void link(uint32 pos);

    std::vector<uint32> _buckets; // positions, or kNone; a power of two of them
    std::vector<Node> _nodes;     // by position
    std::vector<Shape> _shapes;   // few: one, unless classes of references differ
};

CIMPLE_NAMESPACE_END

#endif
