// The table of slots by the hash of keys.
#include <algorithm>
#include <cimple/Key_Index.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
const size_t kMinBuckets = 16;
}

size_t Key_Index::find(const Array<Instance*>& instances,
                       const Slots& slots,
                       const Instance* model,
                       const Digest& digest) const
{
    if (_buckets.empty())
        return size_t(-1);

    if (_shapes.may_match_other(model, digest, Key_Shapes::Known_First))
    {
        for (size_t pos = 0; pos < instances.size(); pos++)
            if (key_eq(instances[pos], model))
                return pos;
        return size_t(-1);
    }
    const uint32 hash = folded(digest.value);
    for (uint32 slot = _buckets[hash & (_buckets.size() - 1)]; slot != kNone; slot = _nodes[slot].next)
    {
        if (_nodes[slot].hash != hash)
            continue;
        const size_t pos = slots.position_of(slot);
        if (key_eq(instances[pos], model))
            return pos;
    }
    return size_t(-1);
}

void Key_Index::add(const Instance* instance, const Digest& digest)
{
    _shapes.add(instance, digest);
    if (_nodes.size() >= _buckets.size())
        grow(std::max(kMinBuckets, 2 * _buckets.size()));
    if (_nodes.size() == _nodes.capacity())
        _nodes.reserve(_nodes.size() +
                       std::max(kMinBuckets, _nodes.size() / 4)); // doubled, most would be empty
    _nodes.push_back({folded(digest.value), kNone});
    link(static_cast<uint32>(_nodes.size() - 1));
}

void Key_Index::remove(uint32 slot)
{
    uint32* link_to = &_buckets[_nodes[slot].hash & (_buckets.size() - 1)];
    while (*link_to != slot)
        link_to = &_nodes[*link_to].next;
    *link_to = _nodes[slot].next;
    _nodes[slot].next = kGone;
}

void Key_Index::renumber(const Slots& slots)
{
    for (size_t pos = 0; pos < slots.size(); pos++)
        _nodes[pos] = _nodes[slots.at(pos)];
    _nodes.resize(slots.size());
    std::fill(_buckets.begin(), _buckets.end(), kNone);
    link_all();
}

void Key_Index::clear()
{
    _buckets.clear();
    _nodes.clear();
    _shapes.clear();
}

void Key_Index::grow(size_t n)
{
    std::vector<uint32> buckets(n, kNone);
    _buckets.swap(buckets);
    link_all();
}

void Key_Index::link_all()
{
    for (uint32 slot = 0; slot < _nodes.size(); slot++)
        if (_nodes[slot].next != kGone)
            link(slot);
}

void Key_Index::link(uint32 slot)
{
    uint32& bucket = _buckets[_nodes[slot].hash & (_buckets.size() - 1)];
    _nodes[slot].next = bucket;
    bucket = slot;
}

CIMPLE_NAMESPACE_END
