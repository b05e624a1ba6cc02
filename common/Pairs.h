// The verbs with which an association says which instances belong together. None of them compares every
// instance of one end with every instance of the other.
#ifndef COMMON_PAIRS_H
#define COMMON_PAIRS_H

#include "common/Text_Index.h"
#include "switchaccess/local_switch.h"

#include <type_traits>

namespace cimple
{

// Handed to the build() of an association provider; writes into its map.
//     pairs.first<VRAX_Fabric>().withEach<VRAX_FCNode>();
//     pairs.first<VRAX_Fabric>().withEach<VRAX_Zone>(isActive);
//     pairs.first<VRAX_SAN>().withFirst<VRAX_Fabric>();
//     pairs.local<VRAX_FCSwitch>().withEach<VRAX_Zone>();
//     pairs.equal<VRAX_FCSwitch, VRAX_FCPort>(nameOf, switchOf);
//     pairs.join(zone, membership);
// Which of two instances takes which role follows from their classes, whatever the order in which they are
// named; where both roles are for one class, or for classes that neither role names, the first named takes
// the first role.
template <class PROVIDER>
class Pairs
{
    typedef typename PROVIDER::Class Class;
    typedef typename PROVIDER::Locked_Ends Locked_Ends;

  public:
    Pairs(Map_Writer<Class>& map, const Locked_Ends& ends) : _map(map), _ends(ends) {}
    Pairs(const Pairs&) = delete;
    Pairs& operator=(const Pairs&) = delete;

    // The loaded map of an end.
    template <class END>
    Map_View<END> all() const
    {
        return _ends.template view<END>();
    }

    // Joins two instances. Fails the load when the pair cannot be created, or is there already and that is a
    // failure.
    template <class A, class B>
    void join(const A& a, const B& b, int line = __builtin_LINE())
    {
        Owned<Class> association = make(a, b, line);
        add(association, line);
    }

    // The same in two steps, for a caller that sets further properties of the pair in between.
    template <class A, class B>
    Owned<Class> make(const A& a, const B& b, int line = __builtin_LINE()) const
    {
        Owned<Class> association = PROVIDER::make({}, line);
        if constexpr (isNamedBackwards<A, B>())
            connect(*association, b, a, line);
        else
            connect(*association, a, b, line);
        return association;
    }
    void add(Owned<Class>& association, int line = __builtin_LINE())
    {
        PROVIDER::add(_map, association, {}, line);
    }

    // One instance that others are joined with; null joins nothing.
    template <class ONE>
    class Hub
    {
      public:
        Hub(Pairs& pairs, const ONE* one) : _pairs(pairs), _one(one) {}

        // Null when there is none.
        const ONE* get() const { return _one; }

        // Joins it with the first OTHER, if there is one.
        template <class OTHER>
        void withFirst(int line = __builtin_LINE()) const
        {
            const OTHER* other = _pairs.template all<OTHER>().first();
            if (_one != nullptr && other != nullptr)
                _pairs.join(*_one, *other, line);
        }

        // Joins it with every OTHER.
        template <class OTHER>
        void withEach(int line = __builtin_LINE()) const
        {
            withEach<OTHER>([](const OTHER&) { return true; }, line);
        }
        // Joins it with every OTHER for which belongs(other) is true.
        template <class OTHER, class BELONGS>
        void withEach(BELONGS belongs, int line = __builtin_LINE()) const
        {
            if (_one == nullptr)
                return;
            for (const OTHER* other : _pairs.template all<OTHER>())
                if (belongs(*other))
                    _pairs.join(*_one, *other, line);
        }

      private:
        Pairs& _pairs;
        const ONE* _one;
    };

    // The first instance of a class; also for classes that have just one.
    template <class ONE>
    Hub<ONE> first()
    {
        return Hub<ONE>(*this, all<ONE>().first());
    }

    // The switch that bears the local switch's WWN, without regard to letter case; none when the map has no
    // such switch. Fails the load when the switch cannot be asked for its name.
    template <class SWITCH>
    Hub<SWITCH> local(int line = __builtin_LINE())
    {
        const Local_Switch_Wwn wwn({PROVIDER::kSource, "load", line});
        for (const SWITCH* one : all<SWITCH>())
            if (one->Name.value.equali(wwn.text()))
                return Hub<SWITCH>(*this, one);
        return Hub<SWITCH>(*this, nullptr);
    }

    // Joins every A with every B of the same key, in the order of the maps. The functions give the key of an
    // instance in one of the forms of Text_Index.h.
    template <class A, class B, class KEY_OF_A, class KEY_OF_B>
    void equal(KEY_OF_A keyOfA, KEY_OF_B keyOfB, int line = __builtin_LINE())
    {
        typedef std::decay_t<decltype(keyOfB(std::declval<const B&>()))> Key;
        const Text_Index<B, Key> others(all<B>(), keyOfB);
        for (const A* a : all<A>())
        {
            const Key key = keyOfA(*a);
            if (!text_key::isLeftOut(key))
                others.forEach(key, [&](const B* b) { join(*a, *b, line); });
        }
    }

  private:
    template <class END, class OWNER>
    static END* endOf(END* OWNER::*);
    typedef std::remove_pointer_t<decltype(endOf(PROVIDER::kFirstRole))> First;
    typedef std::remove_pointer_t<decltype(endOf(PROVIDER::kSecondRole))> Second;

    template <class A, class B>
    static constexpr bool isNamedBackwards()
    {
        const bool fits = std::is_same_v<A, First> || std::is_same_v<B, Second>;
        return !fits && (std::is_same_v<B, First> || std::is_same_v<A, Second>);
    }

    // Whether the provider has a member of that name, whatever it takes: then that name is ambiguous in a
    // class which has it from here as well.
    struct Named_Fill
    {
        int fill;
    };
    template <class P>
    struct Both : P, Named_Fill
    {
    };
    template <class P, class = void>
    struct Names_Fill : std::true_type
    {
    };
    template <class P>
    struct Names_Fill<P, std::void_t<decltype(&Both<P>::fill)>> : std::false_type
    {
    };

    template <class P, class A, class B, class = void>
    struct Has_Fill : std::false_type
    {
    };
    template <class P, class A, class B>
    struct Has_Fill<
        P,
        A,
        B,
        std::void_t<decltype(P::fill(
            std::declval<typename P::Class&>(), std::declval<const A&>(), std::declval<const B&>()))>>
        : std::true_type
    {
    };

    template <class A, class B>
    static void connect(Class& association, const A& first, const B& second, int line)
    {
        refer(association.*PROVIDER::kFirstRole, first, line);
        refer(association.*PROVIDER::kSecondRole, second, line);
        static_assert(Has_Fill<PROVIDER, A, B>::value == Names_Fill<PROVIDER>::value,
                      "fill() takes the pair, the first end and the second");
        if constexpr (Has_Fill<PROVIDER, A, B>::value)
            PROVIDER::fill(association, first, second);
    }

    // Lets a reference share the instance: cached instances are not changed any more.
    template <class REFERENCED>
    static void refer(REFERENCED*& reference, const Instance& target, int line)
    {
        reference = cast<REFERENCED*>(const_cast<Instance*>(&target));
        if (reference == nullptr)
        {
            PROVIDER::fail("%s cannot refer to an instance of %s",
                           {Class::static_meta_class.name, target.meta_class->name},
                           line);
        }
        ref(reference);
    }

    Map_Writer<Class>& _map;
    const Locked_Ends& _ends;
};

} // namespace cimple

#endif
