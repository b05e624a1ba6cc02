// The load of a class that is built from the instances of other classes, its ends.
#ifndef COMMON_COMPOSITE_PROVIDER_H
#define COMMON_COMPOSITE_PROVIDER_H

#include "common/Map_Provider.h"
#include "common/lock_set.h"

#include <type_traits>

namespace cimple
{

// Base of a provider whose load first brings the maps of END_PROVIDERS up to date and then builds its own map
// from them, under the write locks of all of them.
//
// Locks: the association-load mutex first, then every map that the load can touch, by rank: its own, those of
// the ends, and, for an end that is itself built from others, those of its ends too. All are taken before
// anything is loaded, since a nested load may only find its locks already held by this thread, never wait for
// them. The mutex is given back before the own map is built, so that reading the switch in build() does not
// hold up the loads of other associations. The ends' order in the list does not matter.
//
// PROVIDER supplies
//   void buildFrom(Map_Writer<CLASS>& map, const Locked_Ends& ends): as build() of Instance_Provider_Base.
template <class PROVIDER, class CLASS, class... END_PROVIDERS>
class Composite_Provider_Base : public Map_Provider<PROVIDER, CLASS>
{
    typedef Map_Provider<PROVIDER, CLASS> Base;

  public:
    // The locks of a load, with the views of the ends' maps: ends.view<VRAX_Zone>().
    typedef Composite_Guard<CLASS, typename END_PROVIDERS::Class...> Locked_Ends;

    // Every map that a load locks.
    static constexpr Map_List lockList()
    {
        Map_List list;
        list.add(Base::kIndex);
        (list.add(endLocks<END_PROVIDERS>()), ...);
        return list;
    }

    // True when a load would find nothing to do: the map is fresh, so are the ends, and none of them has been
    // loaded again since this map was built.
    static bool isCurrent()
    {
        return Base::maps().InstMapIsFresh(Base::kIndex) && (END_PROVIDERS::isCurrent() && ...) &&
               Base::maps().builtFrom(Base::kIndex) == endLoads();
    }

    Load_Status load()
    {
        trace(PROVIDER::kSource, __func__, __LINE__);
        if (isCurrent())
            return LOAD_OK;

        static constexpr Map_List kLocks = lockList();
        Association_Load_Lock endLoading;
        Locked_Ends ends(kLocks);
        const bool endsLoaded = loadEnds();
        endLoading.unlock();
        if (!endsLoaded)
            return LOAD_FAILED;
        if (Base::maps().InstMapIsFresh(Base::kIndex))
            return LOAD_OK;
        const auto build = [&](Map_Writer<CLASS>& map) { Base::self().buildFrom(map, ends); };
        return Base::rebuild(ends, build, endLoads());
    }

  private:
    struct End
    {
        providerEnum_t map;
        bool (*isCurrent)();
        Load_Status (*load)();
    };
    static constexpr std::size_t kEndCount = sizeof...(END_PROVIDERS);

    template <class END>
    static constexpr Map_List endLocks()
    {
        if constexpr (isComposite<END>(0))
            return END::lockList();
        Map_List list;
        list.add(END::kIndex);
        return list;
    }
    template <class END>
    static constexpr auto isComposite(int) -> decltype(END::lockList(), true)
    {
        return true;
    }
    template <class END>
    static constexpr bool isComposite(...)
    {
        return false;
    }

    template <class END>
    static Load_Status loadWithTemporary()
    {
        END provider;
        return provider.load();
    }

    // The ends by rank of their maps: a composite end comes before the maps that it is built from.
    static constexpr std::array<End, kEndCount> endsByRank()
    {
        std::array<End, kEndCount> ends = {
            End{END_PROVIDERS::kIndex, &END_PROVIDERS::isCurrent, &loadWithTemporary<END_PROVIDERS>}...};
        for (std::size_t i = 1; i < kEndCount; ++i)
        {
            for (std::size_t j = i; j > 0 && mapRank(ends[j].map) < mapRank(ends[j - 1].map); --j)
            {
                const End moved = ends[j];
                ends[j] = ends[j - 1];
                ends[j - 1] = moved;
            }
        }
        return ends;
    }

    // Changes whenever one of the ends is loaded, since the counts only grow.
    static std::uint32_t endLoads() { return (Base::maps().loadCount(END_PROVIDERS::kIndex) + ...); }

    // Loads the ends that are stale. The own map is made stale first, so that it never outlives the instances
    // that it was built from; it stays so when an end fails. Called with all locks held.
    static bool loadEnds()
    {
        static constexpr std::array<End, kEndCount> kEnds = endsByRank();
        for (const End& end : kEnds)
        {
            if (end.isCurrent())
                continue;
            Base::maps().InstMapForceUnload(Base::kIndex);
            if (end.load() != LOAD_OK)
                return false;
        }
        // An end may also have been loaded by a request of its own.
        if (Base::maps().builtFrom(Base::kIndex) != endLoads())
            Base::maps().InstMapForceUnload(Base::kIndex);
        return true;
    }
};

// The base of the provider of a registered class that is built from other registered classes.
template <class CLASS, class... END_CLASSES>
using Composite_Provider = Composite_Provider_Base<typename Registered<CLASS>::Provider,
                                                   CLASS,
                                                   typename Registered<END_CLASSES>::Provider...>;

} // namespace cimple

#endif
