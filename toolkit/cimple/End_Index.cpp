// Chains of the association instances that have an end in common.
#include <algorithm>
#include <cimple/End_Index.h>
#include <cimple/Features.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
const size_t kMinGroups = 16;

uint32 folded(size_t hash)
{
    return static_cast<uint32>(hash ^ (static_cast<uint64>(hash) >> 32));
}
} // namespace

End_Index::End_Index(const Meta_Class* meta_class) : _meta_class(meta_class)
{
    if (!meta_class || (meta_class->flags & CIMPLE_FLAG_ASSOCIATION) == 0)
        return;
    for (const Meta_Feature* mf : features_of(meta_class))
    {
        const Meta_Reference* const mr = as_reference(mf);
        if (!mr || mr->subscript != 0)
            continue;
        if (!is_key(mf))
            _others.push_back(mr);
        else if (_roles.size() < CIMPLE_MAX_REFERENCES_PER_CLASS)
        {
            _roles.emplace_back();
            _roles.back().reference = mr;
        }
    }
}

const Known_Digests& End_Index::learn(const Instance* instance)
{
    if (instance->meta_class != _meta_class)
        return _known;
    for (size_t i = 0; i < _roles.size(); i++)
        if (const Instance* const end = __ref_of(instance, _roles[i].reference))
            _known.learn(i, end);
    return _known;
}

void End_Index::add(const Instance* instance, uint32 slot) noexcept
{
    if (_roles.empty())
        return;
    _complete = _complete && instance->meta_class == _meta_class;
    if (!_complete)
        return;
    try
    {
        for (Role& role : _roles)
            if (const Instance* const end = __ref_of(instance, role.reference))
                role.add(end, *_known.find(end), slot);
    }
    catch (const std::bad_alloc&)
    {
        _complete = false;
    }
}

void End_Index::clear()
{
    for (Role& role : _roles)
        role.clear();
    _known.forget();
    _complete = true;
}

bool End_Index::select(const Instance* model, Selection& selection) const
{
    if (!model || model->meta_class != _meta_class || !_complete)
        return false;
    const auto refers = [model](const Meta_Reference* mr) { return __ref_of(model, mr) != nullptr; };
    if (std::any_of(_others.begin(), _others.end(), refers))
        return false;

    bool narrow = false;
    Known_Digests known; // often one object in all roles
    for (const Role& role : _roles)
    {
        const Instance* const end = __ref_of(model, role.reference);
        if (!end)
            continue;
        narrow = true;
        const Digest* const before = known.find(end);
        const Digest& digest = before ? *before : known.learn(0, end);
        if (role.shapes.may_match_other(end, digest, Key_Shapes::Model_First))
            return false;
        if (role.groups.empty())
            continue;
        const Group& group = role.groups[role.place_of(folded(digest.value))];
        if (group.first != kNone)
            selection._chains[selection._size++] = {&role.next, group.first};
    }
    return narrow;
}

bool End_Index::Selection::next(uint32& slot)
{
    slot = kNone;
    for (size_t i = 0; i < _size; i++)
        slot = std::min(slot, _chains[i].head);
    if (slot == kNone)
        return false;
    for (size_t i = 0; i < _size; i++)
    {
        Chain& chain = _chains[i];
        if (chain.head == slot)
            chain.head = (*chain.next)[slot];
    }
    return true;
}

// The group of the hash, or the free place where it belongs.
size_t End_Index::Role::place_of(uint32 hash) const
{
    const size_t mask = groups.size() - 1;
    size_t i = hash & mask;
    while (groups[i].first != kNone && groups[i].hash != hash)
        i = (i + 1) & mask;
    return i;
}

void End_Index::Role::add(const Instance* end, const Digest& digest, uint32 slot)
{
    shapes.add(end, digest);
    if (4 * (used + 1) > 3 * groups.size())
    {
        std::vector<Group> smaller(std::max(kMinGroups, 2 * groups.size()), Group{0, kNone, kNone});
        smaller.swap(groups);
        for (const Group& group : smaller)
            if (group.first != kNone)
                groups[place_of(group.hash)] = group;
    }
    next.resize(slot + 1, kNone);
    Group& group = groups[place_of(folded(digest.value))];
    if (group.first == kNone)
    {
        group = {folded(digest.value), slot, slot};
        used++;
        return;
    }
    next[group.last] = slot;
    group.last = slot;
}

void End_Index::Role::clear()
{
    groups.clear();
    used = 0;
    next.clear();
    shapes.clear();
}

CIMPLE_NAMESPACE_END
