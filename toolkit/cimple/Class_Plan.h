// What it takes to make, copy and destroy the instances of a class, worked out once from its description.
// Internal.
#ifndef CIMPLE_CLASS_PLAN_H
#define CIMPLE_CLASS_PLAN_H

#include <cimple/Features.h>
#include <cimple/Instance.h>
#include <cimple/Value_Ops.h>
#include <vector>

CIMPLE_NAMESPACE_BEGIN

// A key and the hash of what must agree besides the value: name (letter case ignored), kind and type.
struct Key_Plan
{
    const Meta_Feature* feature;
    size_t shape;
};

// Numbers, flags and null flags are copied as bytes; the lists hold the rest. An empty string, datetime or
// array is a null pointer, so a member of zero bytes is a constructed one.
class Class_Plan
{
  public:
    // Works for the description of a method object as well.
    explicit Class_Plan(const Meta_Class* mc);
    ~Class_Plan();
    Class_Plan(const Class_Plan&) = delete;
    Class_Plan& operator=(const Class_Plan&) = delete;

    // An instance whose members are all zero or empty and not null.
    Instance* make_blank(const Meta_Class* mc) const;

    // An instance in which every property has its default or is null.
    Instance* make_default() const { return duplicate(_defaults); }

    // A deep copy.
    Instance* duplicate(const Instance* instance) const;

    // Destroys the members and frees the memory.
    void dispose(Instance* instance) const;

    const std::vector<Key_Plan>& keys() const { return _keys; }

    const Meta_Class* meta_class() const { return _meta_class; }

    // A description may come to lie where another one was.
    bool is_of(const Meta_Class* mc) const
    {
        return mc == _meta_class && mc->meta_features == _features && mc->num_meta_features == _num_features;
    }

  private:
    struct Array_Plan
    {
        uint32 offset;
        const Value_Ops* ops;
    };

    Instance* allocate(const Meta_Class* mc) const;
    void add_property(const Meta_Property* mp);

    const Meta_Class* _meta_class;
    const Meta_Feature* const* _features;
    size_t _num_features;
    size_t _size;
    std::vector<uint32> _strings;   // offsets
    std::vector<uint32> _datetimes; // offsets
    std::vector<Array_Plan> _arrays;
    std::vector<uint32> _refs;       // offsets of pointers
    std::vector<uint32> _array_refs; // offsets of Property<Array_Instance>
    std::vector<Key_Plan> _keys;
    Instance* _defaults = nullptr;
};

// The plan lives until the end of the program. May be called by any number of threads.
const Class_Plan& plan_of(const Meta_Class* mc);

// A deep copy; null for null.
inline Instance* clone_or_null(const Instance* instance)
{
    return instance ? clone(instance) : nullptr;
}

// Spreads a hash over all bits, so that sums of hashes do not collide for related values.
inline size_t mix(size_t x)
{
    uint64 y = (x + 0x9E3779B97F4A7C15ULL) * 0xBF58476D1CE4E5B9ULL;
    y ^= y >> 29;
    y *= 0x94D049BB133111EBULL;
    y ^= y >> 32;
    return static_cast<size_t>(y);
}

CIMPLE_NAMESPACE_END

#endif
