// Finds the instances of an association by an object that they refer to. Internal to Instance_Map.
#ifndef CIMPLE_END_INDEX_H
#define CIMPLE_END_INDEX_H

#include <cimple/Key_Digest.h>

CIMPLE_NAMESPACE_BEGIN

// For each reference that is a key: the slots of the instances that refer to an object there, by the hash of
// the object's keys. Objects with equal hashes are not told apart: callers compare keys in any case. An
// aid only: what cannot be indexed makes it answer that every instance has to be looked at.
class End_Index
{
  public:
    // Indexes nothing unless the class is an association.
    explicit End_Index(const Meta_Class* meta_class);

    // The ends of an instance that is about to be added, for its own digest.
    const Known_Digests& learn(const Instance* instance);

    // `slot` is greater than all before. Follows learn() of this instance.
    void add(const Instance* instance, uint32 slot) noexcept;

    // What has been learned may no longer hold: an instance was not added, or one is about to go.
    void forget() { _known.forget(); }

    void clear();

    // The slots in ascending order, each once, some of them perhaps gone.
    class Selection
    {
      public:
        bool next(uint32& slot);

      private:
        friend class End_Index;

        struct Chain
        {
            const std::vector<uint32>* next;
            uint32 head;
        };
        Chain _chains[CIMPLE_MAX_REFERENCES_PER_CLASS];
        size_t _size = 0;
    };

    // Those that refer to what the model refers to in one of its roles. False: every instance has to be
    // looked at, because the model does not refer to anything or the answer is not known.
    bool select(const Instance* model, Selection& selection) const;

  private:
    static constexpr uint32 kNone = 0xFFFFFFFF;

    struct Group // of instances whose ends have equal hashes
    {
        uint32 hash;
        uint32 first; // slot, or kNone: the place is free
        uint32 last;
    };

    struct Role
    {
        const Meta_Reference* reference;
        std::vector<Group> groups; // open addressing; a power of two of them, at most 3/4 in use
        size_t used = 0;
        std::vector<uint32> next; // by slot: the next one of the group, or kNone
        Key_Shapes shapes;

        size_t place_of(uint32 hash) const;
        void add(const Instance* end, const Digest& digest, uint32 slot);
        void clear();
    };

    const Meta_Class* _meta_class;
    std::vector<Role> _roles;
    std::vector<const Meta_Reference*> _others; // scalar references that are no keys
    Known_Digests _known;                       // ends of the instance that was added last, by role
    bool _complete = true;                      // every instance has been indexed
};

CIMPLE_NAMESPACE_END

#endif
