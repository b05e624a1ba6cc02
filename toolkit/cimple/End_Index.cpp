// Tables of the association instances by the objects that they refer to.
#include <algorithm>
#include <cimple/End_Index.h>
#include <cimple/Features.h>

CIMPLE_NAMESPACE_BEGIN

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
            _roles.push_back(mr);
    }
}

End_Index::~End_Index()
{
    outdate();
}

const Known_Digests& End_Index::learn(const Instance* instance)
{
    if (instance->meta_class != _meta_class)
        return _known;
    for (size_t i = 0; i < _roles.size(); i++)
        if (const Instance* const end = __ref_of(instance, _roles[i]))
            _known.learn(i, end);
    return _known;
}

// Moves the entries behind it, which costs less than a new table up to some ten thousand of them.
void End_Index::add(const Instance* instance, uint32 slot) noexcept
{
    Table* const table = _table.load(std::memory_order_relaxed);
    if (!table)
        return;
    try
    {
        table->complete = table->complete && instance->meta_class == _meta_class;
        for (size_t i = 0; table->complete && i < _roles.size(); i++)
        {
            const Instance* const end = __ref_of(instance, _roles[i]);
            if (!end)
                continue;
            const Digest& digest = *_known.find(end);
            Ends& ends = table->roles[i];
            ends.shapes.add(end, digest);
            const Selection::Entry entry = {folded(digest.value), slot};
            ends.entries.insert(std::upper_bound(ends.entries.begin(), ends.entries.end(), entry), entry);
        }
    }
    catch (const std::bad_alloc&)
    {
        outdate();
    }
}

void End_Index::outdate() noexcept
{
    if (const Table* const table = _table.load(std::memory_order_relaxed))
    {
        _table.store(nullptr, std::memory_order_relaxed);
        delete table;
    }
}

const End_Index::Table* End_Index::table(const Array<Instance*>& instances, const Slots& slots) const
{
    if (const Table* const made = _table.load(std::memory_order_acquire))
        return made;
    const std::lock_guard<std::mutex> lock(_making);
    if (const Table* const made = _table.load(std::memory_order_relaxed))
        return made;
    try
    {
        Table* const made = make_table(instances, slots).release();
        _table.store(made, std::memory_order_release);
        return made;
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

std::unique_ptr<End_Index::Table> End_Index::make_table(const Array<Instance*>& instances,
                                                        const Slots& slots) const
{
    auto table = std::make_unique<Table>();
    const auto is_of_class = [this](const Instance* instance) { return instance->meta_class == _meta_class; };
    table->complete = std::all_of(instances.data(), instances.data() + instances.size(), is_of_class);
    if (!table->complete)
        return table;
    for (const Meta_Reference* role : _roles)
    {
        Ends& ends = table->roles.emplace_back();
        ends.entries.reserve(instances.size());
        Known_Digests known; // neighbours often have an end in common
        for (size_t pos = 0; pos < instances.size(); pos++)
        {
            const Instance* const end = __ref_of(instances[pos], role);
            if (!end)
                continue;
            const Digest& digest = known.learn(0, end);
            ends.shapes.add(end, digest);
            ends.entries.push_back({folded(digest.value), slots.at(pos)});
        }
        std::sort(ends.entries.begin(), ends.entries.end());
    }
    return table;
}

bool End_Index::select(const Array<Instance*>& instances,
                       const Slots& slots,
                       const Instance* model,
                       Selection& selection) const
{
    if (!model || model->meta_class != _meta_class)
        return false;
    const auto refers = [model](const Meta_Reference* mr) { return __ref_of(model, mr) != nullptr; };
    if (std::any_of(_others.begin(), _others.end(), refers) ||
        std::none_of(_roles.begin(), _roles.end(), refers))
        return false;
    const Table* const made = table(instances, slots);
    if (!made || !made->complete)
        return false;

    Known_Digests known; // often one object in all roles
    for (size_t i = 0; i < _roles.size(); i++)
    {
        const Instance* const end = __ref_of(model, _roles[i]);
        if (!end)
            continue;
        const Digest* const before = known.find(end);
        const Digest& digest = before ? *before : known.learn(0, end);
        const Ends& ends = made->roles[i];
        if (ends.shapes.may_match_other(end, digest, Key_Shapes::Model_First))
            return false;
        const auto by_hash = [](const Selection::Entry& a, const Selection::Entry& b)
        { return a.hash < b.hash; };
        const auto [first, last] = std::equal_range(
            ends.entries.begin(), ends.entries.end(), Selection::Entry{folded(digest.value), 0}, by_hash);
        if (first != last)
            selection._ranges[selection._size++] = {&*first, &*first + (last - first)};
    }
    return true;
}

bool End_Index::Selection::next(uint32& slot)
{
    bool found = false;
    for (size_t i = 0; i < _size; i++)
    {
        const Range& range = _ranges[i];
        if (range.next != range.end && (!found || range.next->slot < slot))
        {
            slot = range.next->slot;
            found = true;
        }
    }
    for (size_t i = 0; i < _size; i++)
    {
        Range& range = _ranges[i];
        if (found && range.next != range.end && range.next->slot == slot)
            range.next++;
    }
    return found;
}

CIMPLE_NAMESPACE_END
