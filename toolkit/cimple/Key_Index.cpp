// Hashing of keys and the table of positions.
#include <algorithm>
#include <cimple/Features.h>
#include <cimple/Key_Index.h>
#include <cimple/Strings.h>
#include <cimple/Value_Ops.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
const size_t kMinBuckets = 16;

typedef Key_Index::Digest Digest;

// Spreads a hash over all bits, so that sums of hashes do not collide for related values.
size_t mix(size_t x)
{
    uint64 y = (x + 0x9E3779B97F4A7C15ULL) * 0xBF58476D1CE4E5B9ULL;
    y ^= y >> 29;
    y *= 0x94D049BB133111EBULL;
    y ^= y >> 32;
    return static_cast<size_t>(y);
}

size_t hash_of_name(const char* name)
{
    size_t hash = 0;
    for (; *name != '\0'; name++)
        hash = hash * 31 + __lower[static_cast<unsigned char>(*name)];
    return hash;
}

Digest digest_of_property(const Instance* instance, const Meta_Property* mp)
{
    const void* const field = __property_of(instance, mp);
    const bool null = null_of(mp, field) != 0;
    const size_t shape = mix(hash_of_name(mp->name) + mp->type * 64U + (mp->subscript != 0 ? 1U : 0U));
    return {shape, shape + (null ? 1 : mix(value_ops(mp).hash(field)))};
}

Digest digest_of_reference(const Instance* instance, const Meta_Reference* mr)
{
    const size_t name = mix(hash_of_name(mr->name) + 1);
    if (mr->subscript != 0) // does not occur as a key; key_eq alone tells such instances apart
        return {name, name};
    const Instance* const value = __ref_of(instance, mr);
    if (!value)
        return {name, name};
    const Digest nested = Key_Index::digest_of(value);
    return {mix(name + nested.shape), mix(name + nested.value)};
}

// Whether key_eq(a, b) could hold if only the values agreed.
bool shapes_match(const Instance* a, const Instance* b)
{
    for (const Meta_Feature* fa : features_of(a->meta_class))
    {
        if (!is_key(fa))
            continue;
        const Meta_Feature* const fb = find_counterpart(b->meta_class, fa);
        if (!fb || !is_key(fb))
            return false;
        if (const Meta_Property* pa = as_property(fa))
        {
            const Meta_Property* const pb = as_property(fb);
            if (!pb || pa->type != pb->type || pa->subscript != pb->subscript)
                return false;
            continue;
        }
        const Meta_Reference* const ra = as_reference(fa);
        const Meta_Reference* const rb = as_reference(fb);
        if (!ra || !rb || ra->subscript != rb->subscript)
            return false;
        if (ra->subscript != 0)
            continue;
        const Instance* const va = __ref_of(a, ra);
        const Instance* const vb = __ref_of(b, rb);
        if (va && vb ? !shapes_match(va, vb) : va != vb)
            return false;
    }
    return true;
}
} // namespace

// Sums, because classes may list the same keys in a different order.
Key_Index::Digest Key_Index::digest_of(const Instance* instance)
{
    Digest sum = {0, 0};
    for (const Meta_Feature* mf : features_of(instance->meta_class))
    {
        if (!is_key(mf))
            continue;
        const Meta_Property* const mp = as_property(mf);
        const Digest digest =
            mp ? digest_of_property(instance, mp) : digest_of_reference(instance, known_reference(mf));
        sum.shape += mix(digest.shape);
        sum.value += mix(digest.value);
    }
    return sum;
}

size_t Key_Index::find(const Array<Instance*>& instances, const Instance* model, const Digest& digest) const
{
    if (_buckets.empty())
        return size_t(-1);

    if (may_match_other_shape(model, digest.shape))
    {
        for (size_t pos = 0; pos < instances.size(); pos++)
        {
            if (key_eq(instances[pos], model))
                return pos;
        }
        return size_t(-1);
    }
    for (uint32 pos = _buckets[digest.value & (_buckets.size() - 1)]; pos != kNone; pos = _nodes[pos].next)
    {
        if (_nodes[pos].hash == digest.value && key_eq(instances[pos], model))
            return pos;
    }
    return size_t(-1);
}

bool Key_Index::may_match_other_shape(const Instance* model, size_t shape) const
{
    return std::any_of(_shapes.begin(),
                       _shapes.end(),
                       [&](const Shape& known)
                       { return known.hash != shape && shapes_match(known.sample.get(), model); });
}

void Key_Index::add(const Instance* instance, const Digest& digest)
{
    const bool known = std::any_of(
        _shapes.begin(), _shapes.end(), [&](const Shape& shape) { return shape.hash == digest.shape; });
    if (!known)
        _shapes.push_back({digest.shape, std::unique_ptr<Instance, Destroyer>(key_clone(instance))});

    if (_nodes.size() >= _buckets.size())
        rebuild_buckets(std::max(kMinBuckets, 2 * _buckets.size()));
    _nodes.push_back({digest.value, kNone});
    link(static_cast<uint32>(_nodes.size() - 1));
}

void Key_Index::remove(size_t pos)
{
    // Out of its bucket first.
    const uint32 gone = static_cast<uint32>(pos);
    uint32* link_to = &_buckets[_nodes[pos].hash & (_buckets.size() - 1)];
    while (*link_to != gone)
        link_to = &_nodes[*link_to].next;
    *link_to = _nodes[pos].next;

    const bool last = pos + 1 == _nodes.size();
    _nodes.erase(_nodes.begin() + static_cast<std::ptrdiff_t>(pos));
    if (last)
        return;
    const auto moved_up = [gone](uint32 p) { return p != kNone && p > gone ? p - 1 : p; };
    for (uint32& bucket : _buckets)
        bucket = moved_up(bucket);
    for (Node& node : _nodes)
        node.next = moved_up(node.next);
}

void Key_Index::clear()
{
    _buckets.clear();
    _nodes.clear();
    _shapes.clear();
}

void Key_Index::rebuild_buckets(size_t n)
{
    std::vector<uint32> buckets(n, kNone);
    _buckets.swap(buckets);
    for (uint32 pos = 0; pos < _nodes.size(); pos++)
        link(pos);
}

void Key_Index::link(uint32 pos)
{
    uint32& bucket = _buckets[_nodes[pos].hash & (_buckets.size() - 1)];
    _nodes[pos].next = bucket;
    bucket = pos;
}

CIMPLE_NAMESPACE_END
