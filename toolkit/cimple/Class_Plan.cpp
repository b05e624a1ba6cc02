// Plans of classes, and where they are kept.
#include <atomic>
#include <cimple/Class_Plan.h>
#include <cimple/Strings.h>
#include <memory>
#include <mutex>

CIMPLE_NAMESPACE_BEGIN

namespace
{
size_t size_of(const Meta_Class* mc)
{
    return (mc->flags & CIMPLE_FLAG_METHOD) != 0 ? reinterpret_cast<const Meta_Method*>(mc)->size : mc->size;
}

size_t hash_of_name(const char* name)
{
    size_t hash = 0;
    for (; *name != '\0'; name++)
        hash = hash * 31 + __lower[static_cast<unsigned char>(*name)];
    return hash;
}

size_t shape_of(const Meta_Feature* mf)
{
    const size_t name = hash_of_name(mf->name);
    if (const Meta_Property* mp = as_property(mf))
        return mix(name + mp->type * 64U + (mp->subscript != 0 ? 1U : 0U));
    return mix(name + 1);
}

template <class T>
T* member(const Instance* instance, uint32 offset)
{
    void* const field = reinterpret_cast<char*>(const_cast<Instance*>(instance)) + offset;
    return static_cast<T*>(field);
}

struct Disposer
{
    const Class_Plan* plan;
    void operator()(Instance* instance) const { plan->dispose(instance); }
};

// Holds an instance under construction.
typedef std::unique_ptr<Instance, Disposer> Held;

// The instance that has the array releases the elements if a copy fails.
void clone_elements(Array_Instance& to, const Array_Instance& from)
{
    to.reserve(from.size());
    for (size_t i = 0; i < from.size(); i++)
        to.append(clone_or_null(from[i]));
}

// All plans, found by the address of the description without a lock: a table that is replaced by a larger one
// when half of it is used.
class Plans
{
  public:
    Plans() = default;
    Plans(const Plans&) = delete;
    Plans& operator=(const Plans&) = delete;

    const Class_Plan& of(const Meta_Class* mc)
    {
        const Table* const table = _table.load(std::memory_order_acquire);
        const Class_Plan* const plan = table ? table->find(mc) : nullptr;
        return plan ? *plan : add(mc);
    }

  private:
    typedef std::atomic<const Class_Plan*> Slot;

    struct Table
    {
        explicit Table(size_t n) : mask(n - 1), slots(n) {}

        // The first slot that holds the class's plan or is free.
        size_t slot_of(const Meta_Class* mc) const
        {
            size_t i = mix(reinterpret_cast<size_t>(mc)) & mask;
            for (const Class_Plan* plan; (plan = slots[i].load(std::memory_order_acquire)) != nullptr;)
            {
                if (plan->is_of(mc))
                    break;
                i = (i + 1) & mask;
            }
            return i;
        }
        const Class_Plan* find(const Meta_Class* mc) const
        {
            return slots[slot_of(mc)].load(std::memory_order_acquire);
        }
        void put(const Meta_Class* mc, const Class_Plan* plan)
        {
            slots[slot_of(mc)].store(plan, std::memory_order_release);
        }

        size_t mask;
        std::vector<Slot> slots;
    };

    const Class_Plan& add(const Meta_Class* mc)
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        if (!_tables.empty())
        {
            if (const Class_Plan* plan = _tables.back()->find(mc))
                return *plan;
        }
        _plans.push_back(std::make_unique<const Class_Plan>(mc));
        const Class_Plan& plan = *_plans.back();
        if (_tables.empty() || _plans.size() > _tables.back()->mask / 2)
            grow();
        else
            _tables.back()->put(mc, &plan);
        return plan;
    }

    void grow()
    {
        auto table = std::make_unique<Table>(_tables.empty() ? kFirstSize : 2 * (_tables.back()->mask + 1));
        for (const auto& plan : _plans)
            table->put(plan->meta_class(), plan.get());
        _tables.push_back(std::move(table));
        _table.store(_tables.back().get(), std::memory_order_release);
    }

    static constexpr size_t kFirstSize = 256;

    std::mutex _mutex;
    std::vector<std::unique_ptr<const Class_Plan>> _plans;
    std::vector<std::unique_ptr<Table>> _tables; // the last is in use; threads may still read the others
    std::atomic<const Table*> _table{nullptr};
};

// Before all other static objects and so destroyed after them: those may own instances.
__attribute__((init_priority(101))) Plans plans;
} // namespace

const Class_Plan& plan_of(const Meta_Class* mc)
{
    return plans.of(mc);
}

Class_Plan::Class_Plan(const Meta_Class* mc)
    : _meta_class(mc), _features(mc->meta_features), _num_features(mc->num_meta_features), _size(size_of(mc))
{
    for (const Meta_Feature* mf : features_of(mc))
    {
        if (const Meta_Property* mp = as_property(mf))
            add_property(mp);
        else if (const Meta_Reference* mr = as_reference(mf))
            (mr->subscript == 0 ? _refs : _array_refs).push_back(mr->offset);
        if (is_key(mf))
            _keys.push_back({mf, shape_of(mf)});
    }
    Held defaults(make_blank(mc), Disposer{this});
    for (const Meta_Feature* mf : features_of(mc))
    {
        const Meta_Property* const mp = as_property(mf);
        if (!mp)
            continue;
        void* const field = __property_of(defaults.get(), mp);
        if (mp->value)
            value_ops(mp).set_default(field, mp->value);
        else
            null_of(mp, field) = 1;
    }
    _defaults = defaults.release();
}

Class_Plan::~Class_Plan()
{
    dispose(_defaults);
}

void Class_Plan::add_property(const Meta_Property* mp)
{
    if (mp->subscript != 0)
        _arrays.push_back({mp->offset, &value_ops(mp)});
    else if (mp->type == STRING)
        _strings.push_back(mp->offset);
    else if (mp->type == DATETIME)
        _datetimes.push_back(mp->offset);
}

// Memory with the head of an instance; the members are yet to come.
Instance* Class_Plan::allocate(const Meta_Class* mc) const
{
    Instance* const instance = new (::operator new(_size)) Instance();
    instance->__magic = CIMPLE_INSTANCE_MAGIC;
    Atomic_create(&instance->__refs, 1);
    instance->meta_class = mc;
    return instance;
}

Instance* Class_Plan::make_blank(const Meta_Class* mc) const
{
    Instance* const instance = allocate(mc);
    memset(static_cast<void*>(instance + 1), 0, _size - sizeof(Instance));
    return instance;
}

Instance* Class_Plan::duplicate(const Instance* instance) const
{
    Held copied(allocate(instance->meta_class), Disposer{this});
    Instance* const to = copied.get();
    memcpy(static_cast<void*>(to + 1), static_cast<const void*>(instance + 1), _size - sizeof(Instance));

    // What may fail comes last, when there is nothing that belongs to the original any more.
    to->__name_space = instance->__name_space;
    for (const uint32 offset : _strings)
        new (member<String>(to, offset)) String(*member<String>(instance, offset));
    for (const uint32 offset : _datetimes)
        new (member<Datetime>(to, offset)) Datetime(*member<Datetime>(instance, offset));
    for (const Array_Plan& array : _arrays)
        *member<void*>(to, array.offset) = nullptr;
    for (const uint32 offset : _refs)
        *member<Instance*>(to, offset) = nullptr;
    for (const uint32 offset : _array_refs)
        new (member<Array_Instance>(to, offset)) Array_Instance();

    for (const Array_Plan& array : _arrays)
        if (*member<void*>(instance, array.offset))
            array.ops->assign(member<void>(to, array.offset), member<void>(instance, array.offset));
    for (const uint32 offset : _refs)
        *member<Instance*>(to, offset) = clone_or_null(*member<Instance*>(instance, offset));
    for (const uint32 offset : _array_refs)
        clone_elements(*member<Array_Instance>(to, offset), *member<Array_Instance>(instance, offset));
    return copied.release();
}

void Class_Plan::dispose(Instance* instance) const
{
    for (const uint32 offset : _strings)
        member<String>(instance, offset)->~String();
    for (const uint32 offset : _datetimes)
        member<Datetime>(instance, offset)->~Datetime();
    for (const Array_Plan& array : _arrays)
        if (*member<void*>(instance, array.offset))
            array.ops->destroy(member<void>(instance, array.offset));
    for (const uint32 offset : _refs)
        unref(*member<Instance*>(instance, offset));
    for (const uint32 offset : _array_refs)
    {
        Array_Instance& elements = *member<Array_Instance>(instance, offset);
        for (size_t i = 0; i < elements.size(); i++)
            unref(elements[i]);
        elements.~Array_Instance();
    }
    instance->__magic = 0;
    instance->~Instance();
    ::operator delete(instance);
}

CIMPLE_NAMESPACE_END
