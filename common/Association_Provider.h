// Bases of the association providers.
#ifndef COMMON_ASSOCIATION_PROVIDER_H
#define COMMON_ASSOCIATION_PROVIDER_H

#include "common/Composite_Provider.h"
#include "common/Pairs.h"

namespace cimple
{

// Base of the provider of an association whose references are FIRST_ROLE and SECOND_ROLE (pointers to members
// of CLASS), built from the maps of END_PROVIDERS. PROVIDER supplies
//   void build(Pairs& pairs): says which instances of the ends belong together, see Pairs.h;
// and, when its pairs have further properties,
//   static void fill(CLASS& pair, const A& first, const B& second): sets them.
// A pair whose keys are already there is dropped, unless PROVIDER has a kInsertionFailed.
//
// Requests for associators and references are not supported here: the adapter answers them from the
// association instances, each of which shares both its ends with the maps of their classes.
template <class PROVIDER, class CLASS, auto FIRST_ROLE, auto SECOND_ROLE, class... END_PROVIDERS>
class Association_Provider_Base : public Composite_Provider_Base<PROVIDER, CLASS, END_PROVIDERS...>
{
    typedef Composite_Provider_Base<PROVIDER, CLASS, END_PROVIDERS...> Base;

  public:
    static constexpr Failure_Text kInsertionFailed = Failure_Text::none();
    // The keys are the ends, which have passed the checks of their own classes.
    static constexpr bool kChecksKeys = false;
    static constexpr auto kFirstRole = FIRST_ROLE;
    static constexpr auto kSecondRole = SECOND_ROLE;

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
    typedef cimple::Pairs<PROVIDER> Pairs;
    friend class cimple::Pairs<PROVIDER>;
    friend Base;

    void buildFrom(Map_Writer<CLASS>& map, const typename Base::Locked_Ends& ends)
    {
        Pairs pairs(map, ends);
        Base::self().build(pairs);
    }
};

// The class of which a role is a member, and the class that the role refers to.
template <auto ROLE>
struct Role;
template <class CLASS, class END, END* CLASS::*ROLE>
struct Role<ROLE>
{
    typedef CLASS Association;
    typedef END End;
};

// The classes whose maps an association is built from.
template <class... CLASSES>
struct Ends
{
};

// What an association's roles refer to, each class once.
template <class FIRST, class SECOND>
struct Ends_Of_Roles
{
    typedef Ends<FIRST, SECOND> Type;
};
template <class BOTH>
struct Ends_Of_Roles<BOTH, BOTH>
{
    typedef Ends<BOTH> Type;
};

template <auto FIRST_ROLE, auto SECOND_ROLE, class ENDS>
struct Association_Base_Of;
template <auto FIRST_ROLE, auto SECOND_ROLE, class... CLASSES>
struct Association_Base_Of<FIRST_ROLE, SECOND_ROLE, Ends<CLASSES...>>
{
    typedef typename Role<FIRST_ROLE>::Association Class;
    typedef Association_Provider_Base<typename Registered<Class>::Provider,
                                      Class,
                                      FIRST_ROLE,
                                      SECOND_ROLE,
                                      typename Registered<CLASSES>::Provider...>
        Type;
};

// The base of the provider of a registered association; all else follows from its roles:
//     class VRAX_NamespaceInManager_Provider
//         : public Association_Provider<&VRAX_NamespaceInManager::Antecedent,
//         &VRAX_NamespaceInManager::Dependent>
// Where a role refers to a superclass of what it is built from, the third argument names the classes.
template <auto FIRST_ROLE,
          auto SECOND_ROLE,
          class ENDS =
              typename Ends_Of_Roles<typename Role<FIRST_ROLE>::End, typename Role<SECOND_ROLE>::End>::Type>
using Association_Provider = typename Association_Base_Of<FIRST_ROLE, SECOND_ROLE, ENDS>::Type;

} // namespace cimple

#endif
