// Base of the association providers.
#ifndef COMMON_ASSOCIATION_PROVIDER_H
#define COMMON_ASSOCIATION_PROVIDER_H

#include "common/Composite_Provider.h"
#include "common/Text_Index.h"

namespace cimple
{

// Base of the provider of an association between the classes of END_PROVIDERS. Besides what Map_Provider asks
// for, PROVIDER supplies the reference properties that pairs are made of:
//   static constexpr auto kFirstRole = &VRAX_X::Antecedent;
//   static constexpr auto kSecondRole = &VRAX_X::Dependent;
// Its build() says which instances of the ends belong together:
//   joinFirst<VRAX_ObjectManager, VRAX_Namespace>(map);
// or joinFirstWithEach(), joinEqual(), or join(map, a, b) for each pair.
//
// Requests for associators and references are not supported here: the adapter answers them from the
// association instances, each of which shares both its ends with the maps of their classes.
template <class PROVIDER, class CLASS, class... END_PROVIDERS>
class Association_Provider_Base : public Composite_Provider_Base<PROVIDER, CLASS, END_PROVIDERS...>
{
  public:
    Enum_Associator_Names_Status enum_associator_names(const Instance*,
                                                       const String&,
                                                       const String&,
                                                       const String&,
                                                       Enum_Associator_Names_Handler<Instance>*)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return ENUM_ASSOCIATOR_NAMES_UNSUPPORTED;
    }

    Enum_Associators_Status enum_associators(
        const Instance*, const String&, const String&, const String&, Enum_Associators_Handler<Instance>*)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return ENUM_ASSOCIATORS_UNSUPPORTED;
    }

    Enum_References_Status
    enum_references(const Instance*, const CLASS*, const String&, Enum_References_Handler<CLASS>*)
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        return ENUM_REFERENCES_UNSUPPORTED;
    }

  protected:
    // A new association instance between the two instances, which it shares; the caller may fill further
    // properties before it inserts it. Never null: throws, in the name of the caller's line, when it cannot
    // be created.
    static Owned<CLASS> pair(const Instance* first, const Instance* second, int line = __builtin_LINE())
    {
        Owned<CLASS> association = makeWithDefaults<CLASS>();
        if (!association)
        {
            throw VRAX_Except(PROVIDER::kSource,
                              "load",
                              line,
                              CRIT,
                              "Unable to create instance of %s",
                              CLASS::static_meta_class.name);
        }
        refer(*association, first, second, line);
        return association;
    }

    // Sets both references of an association to the two instances, which it shares. For loads that create
    // their instances themselves.
    static void
    refer(CLASS& association, const Instance* first, const Instance* second, int line = __builtin_LINE())
    {
        setReference(association.*PROVIDER::kFirstRole, first, line);
        setReference(association.*PROVIDER::kSecondRole, second, line);
    }

    // Adds the pair to the map; a pair that is already there is dropped.
    static void
    join(Map_Writer<CLASS>& map, const Instance* first, const Instance* second, int line = __builtin_LINE())
    {
        Owned<CLASS> association = pair(first, second, line);
        map.insert(association);
    }

    // Joins the first instance of each end; nothing when either end has none.
    template <class FIRST, class SECOND>
    static void joinFirst(Map_Writer<CLASS>& map, int line = __builtin_LINE())
    {
        const FIRST* first = Map_View<FIRST>().first();
        const SECOND* second = Map_View<SECOND>().first();
        if (first != nullptr && second != nullptr)
            join(map, first, second, line);
    }

    // Joins the first FIRST with every SECOND.
    template <class FIRST, class SECOND>
    static void joinFirstWithEach(Map_Writer<CLASS>& map, int line = __builtin_LINE())
    {
        joinFirstWithEach<FIRST, SECOND>(
            map, [](const SECOND&) { return true; }, line);
    }

    // Joins the first FIRST with every SECOND for which belongs(second) is true.
    template <class FIRST, class SECOND, class BELONGS>
    static void joinFirstWithEach(Map_Writer<CLASS>& map, BELONGS belongs, int line = __builtin_LINE())
    {
        const FIRST* first = Map_View<FIRST>().first();
        if (first == nullptr)
            return;
        for (const SECOND* second : Map_View<SECOND>())
        {
            if (belongs(*second))
                join(map, first, second, line);
        }
    }

    // Joins every FIRST with every SECOND of the same text, compared without regard to letter case, in the
    // order of the maps. textOfFirst(first) and textOfSecond(second) return const char*; null leaves the
    // instance out.
    template <class FIRST, class SECOND, class TEXT_OF_FIRST, class TEXT_OF_SECOND>
    static void joinEqual(Map_Writer<CLASS>& map,
                          TEXT_OF_FIRST textOfFirst,
                          TEXT_OF_SECOND textOfSecond,
                          int line = __builtin_LINE())
    {
        const Text_Index<SECOND> seconds(Map_View<SECOND>(), textOfSecond);
        for (const FIRST* first : Map_View<FIRST>())
        {
            const char* text = textOfFirst(*first);
            if (text != nullptr)
                seconds.forEach(text, [&](const SECOND* second) { join(map, first, second, line); });
        }
    }

  private:
    template <class REFERENCED>
    static void setReference(REFERENCED*& reference, const Instance* target, int line)
    {
        REFERENCED* const shared = cast<REFERENCED*>(target);
        if (shared == nullptr)
        {
            throw VRAX_Except(PROVIDER::kSource,
                              "load",
                              line,
                              CRIT,
                              "%s cannot refer to an instance of %s",
                              CLASS::static_meta_class.name,
                              target->meta_class->name);
        }
        ref(shared);
        reference = shared;
    }
};

} // namespace cimple

#endif
