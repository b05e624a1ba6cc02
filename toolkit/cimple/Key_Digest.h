// Hashes of keys that are equal where key_eq holds, and the few cases in which they are not. Internal.
#ifndef CIMPLE_KEY_DIGEST_H
#define CIMPLE_KEY_DIGEST_H

#include <cimple/Instance.h>
#include <memory>
#include <vector>

CIMPLE_NAMESPACE_BEGIN

// A hash in half the room, for tables that compare keys in any case.
inline uint32 folded(size_t hash)
{
    return static_cast<uint32>(hash ^ (static_cast<uint64>(hash) >> 32));
}

struct Digest
{
    size_t shape; // hash of the names and types of keys
    size_t value; // hash of those and their values
};

// Digests of instances that many others refer to, so that they are not computed for each of them again.
class Known_Digests
{
  public:
    // Keeps the digest of the instance, which must not change or go away before forget().
    const Digest& learn(size_t i, const Instance* instance);

    const Digest* find(const Instance* instance) const;

    void forget() { _size = 0; }

  private:
    struct Known
    {
        const Instance* instance;
        Digest digest;
    };
    Known _known[CIMPLE_MAX_REFERENCES_PER_CLASS];
    size_t _size = 0;
};

// Of the names and values of an instance's keys.
Digest digest_of(const Instance* instance, const Known_Digests* known = nullptr);

// key_eq also holds between instances whose references lead to objects with different sets of keys, and from
// an instance to one with more keys. This knows which sets ("shapes") occur.
class Key_Shapes
{
  public:
    enum Side
    {
        Known_First, // key_eq(known, model)
        Model_First  // key_eq(model, known)
    };

    // Nothing changes if memory runs out.
    void add(const Instance* instance, const Digest& digest);

    // Whether key_eq could hold between the model and a known instance whose digest is another.
    bool may_match_other(const Instance* model, const Digest& digest, Side side) const;

    void clear() { _shapes.clear(); }

  private:
    struct Destroyer
    {
        void operator()(Instance* instance) const { destroy(instance); }
    };

    struct Shape
    {
        size_t hash;
        std::unique_ptr<Instance, Destroyer> sample; // keys of some instance of this shape
    };

    std::vector<Shape> _shapes; // few: one, unless classes of references differ
};

CIMPLE_NAMESPACE_END

#endif
