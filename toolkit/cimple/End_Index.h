// Finds the instances of an association by an object that they refer to. Internal to Instance_Map.
#ifndef CIMPLE_END_INDEX_H
#define CIMPLE_END_INDEX_H

#include <atomic>
#include <cimple/Key_Digest.h>
#include <cimple/Slots.h>
#include <memory>
#include <mutex>

CIMPLE_NAMESPACE_BEGIN

// For each reference that is a key: the slots of the instances that refer to an object there, by the hash of
// the object's keys. Objects with equal hashes are not told apart: callers compare keys in any case. An
// aid only: what cannot be indexed makes it answer that every instance has to be looked at.
//
// Made when it is first asked: many clients only enumerate, and do not pay for it.
class End_Index
{
  public:
    // Indexes nothing unless the class is an association.
    explicit End_Index(const Meta_Class* meta_class);
    ~End_Index();

    // The ends of an instance that is about to be added, for its own digest.
    const Known_Digests& learn(const Instance* instance);

    // What has been learned may no longer hold: an instance was not added, or one is about to go.
    void forget() { _known.forget(); }

    // An instance has come. `slot` is greater than all before. Follows learn() of this instance. One that
    // goes needs no mention.
    void add(const Instance* instance, uint32 slot) noexcept;

    // Slots have been renumbered, or all instances are gone.
    void outdate() noexcept;

    // The slots in ascending order, each once, some of them perhaps gone. Valid until the next
    // change.
    class Selection
    {
      public:
        bool next(uint32& slot);

      private:
        friend class End_Index;

        struct Entry // an instance's end
        {
            uint32 hash;
            uint32 slot;

            bool operator<(const Entry& other) const
            {
                return hash != other.hash ? hash < other.hash : slot < other.slot;
            }
        };
        struct Range
        {
            const Entry* next;
            const Entry* end;
        };
        Range _ranges[CIMPLE_MAX_REFERENCES_PER_CLASS];
        size_t _size = 0;
    };

    // Those that refer to what the model refers to in one of its roles. False: every instance has to be
    // looked at, because the model does not refer to anything or the answer is not known. May be called by
    // any number of threads while nothing else is.
    bool select(const Array<Instance*>& instances,
                const Slots& slots,
                const Instance* model,
                Selection& selection) const;

  private:
    struct Ends // of all instances in one role
    {
        std::vector<Selection::Entry> entries; // sorted
        Key_Shapes shapes;
    };
    struct Table
    {
        std::vector<Ends> roles;
        bool complete = true; // false: some instance is of another class
    };

    // Null if memory runs out.
    const Table* table(const Array<Instance*>& instances, const Slots& slots) const;
    std::unique_ptr<Table> make_table(const Array<Instance*>& instances, const Slots& slots) const;

    const Meta_Class* _meta_class;
    std::vector<const Meta_Reference*> _roles;
    std::vector<const Meta_Reference*> _others; // scalar references that are no keys
    Known_Digests _known;                       // ends of the instance that was added last, by role
    mutable std::mutex _making;
    mutable std::atomic<Table*> _table{nullptr}; // owned
};

CIMPLE_NAMESPACE_END

#endif
