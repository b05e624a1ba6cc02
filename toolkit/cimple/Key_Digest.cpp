// Hashing of keys by name and value, so that instances of related classes have what key_eq compares in
// common.
#include <algorithm>
#include <cimple/Class_Plan.h>
#include <cimple/Key_Digest.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
size_t value_hash(const Instance* instance, const Meta_Property* mp, size_t shape)
{
    const Value_Ops& ops = value_ops(mp);
    const void* const field = __property_of(instance, mp);
    const bool null = static_cast<const uint8*>(field)[ops.size] != 0;
    return shape + (null ? 1 : mix(ops.hash(field)));
}

Digest digest_of_key(const Instance* instance, const Key_Plan& key, const Known_Digests* known)
{
    if (const Meta_Property* mp = as_property(key.feature))
        return {key.shape, value_hash(instance, mp, key.shape)};
    const Meta_Reference* const mr = known_reference(key.feature);
    // An array does not occur as a key; key_eq alone tells such instances apart.
    const Instance* const value = mr->subscript == 0 ? __ref_of(instance, mr) : nullptr;
    if (!value)
        return {key.shape, key.shape};
    const Digest* const found = known ? known->find(value) : nullptr;
    const Digest nested = found ? *found : digest_of(value);
    return {mix(key.shape + nested.shape), mix(key.shape + nested.value)};
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

const Digest& Known_Digests::learn(size_t i, const Instance* instance)
{
    for (; _size <= i; _size++)
        _known[_size].instance = nullptr;
    if (_known[i].instance != instance)
        _known[i] = {instance, digest_of(instance)};
    return _known[i].digest;
}

const Digest* Known_Digests::find(const Instance* instance) const
{
    const Known* const end = _known + _size;
    const Known* const found =
        std::find_if(_known, end, [instance](const Known& known) { return known.instance == instance; });
    return found != end ? &found->digest : nullptr;
}

// Sums, because classes may list the same keys in a different order.
Digest digest_of(const Instance* instance, const Known_Digests* known)
{
    Digest sum = {0, 0};
    for (const Key_Plan& key : plan_of(instance->meta_class).keys())
    {
        const Digest digest = digest_of_key(instance, key, known);
        sum.shape += mix(digest.shape);
        sum.value += mix(digest.value);
    }
    return sum;
}

void Key_Shapes::add(const Instance* instance, const Digest& digest)
{
    const bool known = std::any_of(
        _shapes.begin(), _shapes.end(), [&](const Shape& shape) { return shape.hash == digest.shape; });
    if (!known)
        _shapes.push_back({digest.shape, std::unique_ptr<Instance, Destroyer>(key_clone(instance))});
}

bool Key_Shapes::may_match_other(const Instance* model, const Digest& digest, Side side) const
{
    return std::any_of(_shapes.begin(),
                       _shapes.end(),
                       [&](const Shape& known)
                       {
                           const Instance* const sample = known.sample.get();
                           return known.hash != digest.shape &&
                                  (side == Known_First ? shapes_match(sample, model)
                                                       : shapes_match(model, sample));
                       });
}

CIMPLE_NAMESPACE_END
