// Providers with scripted loads over real classes, for tests of the load pattern.
#ifndef TESTS_COMMON_TESTING_FAKE_PROVIDERS_H
#define TESTS_COMMON_TESTING_FAKE_PROVIDERS_H

#include "common/Association_Provider.h"

#include "VRAX_CIMXMLCommMechanismForManager.h"
#include "VRAX_FCPortStatistics_Methods.h"
#include "VRAX_NamespaceInManager.h"
#include "VRAX_StatisticsCollection.h"

#include <atomic>
#include <functional>

namespace cimple
{

// Fails a load without a word.
[[noreturn]] inline void failSilently()
{
    throw VRAX_Except("testProviders/any", "load", 1, Failure_Text::silent());
}

// How the builds of one fake provider went and shall go; TARGET is what they write to.
template <class CLASS, class TARGET = Map_Writer<CLASS>>
struct Script
{
    static inline std::atomic<int> builds{0};
    // Called in place of the provider's usual build when set. Set it only while no other thread loads.
    typedef std::function<void(TARGET&)> Build;
    static inline Build instead;

    static bool play(TARGET& target)
    {
        ++builds;
        if (instead)
            instead(target);
        return static_cast<bool>(instead);
    }
    static void reset()
    {
        builds = 0;
        instead = nullptr;
    }
};

// Four ports, "1" to "4".
class Ports_Provider : public Instance_Provider_Base<Ports_Provider, VRAX_FCPortStatistics>,
                       public VRAX_FCPortStatistics_Methods<Ports_Provider>
{
  public:
    static constexpr const char* kSource = "testProviders/Ports_Provider";
    static constexpr std::size_t kCount = 4;

    static void insert(Map_Writer<VRAX_FCPortStatistics>& map, const char* id)
    {
        Owned<VRAX_FCPortStatistics> port = make();
        port->InstanceID.set(id);
        add(map, port);
    }
    void build(Map_Writer<VRAX_FCPortStatistics>& map)
    {
        if (Script<VRAX_FCPortStatistics>::play(map))
            return;
        for (const char* id : {"1", "2", "3", "4"})
            insert(map, id);
    }
};

// Built from the ports.
class Collection_Provider
    : public Composite_Provider_Base<Collection_Provider, VRAX_StatisticsCollection, Ports_Provider>
{
  public:
    static constexpr const char* kSource = "testProviders/Collection_Provider";

    void buildFrom(Map_Writer<VRAX_StatisticsCollection>& map, const Locked_Ends& ends)
    {
        if (Script<VRAX_StatisticsCollection>::play(map))
            return;
        Owned<VRAX_StatisticsCollection> collection = makeNull<VRAX_StatisticsCollection>();
        collection->InstanceID.set(ends.view<VRAX_FCPortStatistics>().first()->InstanceID.value);
        add(map, collection);
    }
};

class Manager_Provider : public Instance_Provider_Base<Manager_Provider, VRAX_ObjectManager>
{
  public:
    static constexpr const char* kSource = "testProviders/Manager_Provider";

    void build(Map_Writer<VRAX_ObjectManager>& map)
    {
        if (Script<VRAX_ObjectManager>::play(map))
            return;
        Owned<VRAX_ObjectManager> manager = makeNull<VRAX_ObjectManager>();
        manager->SystemCreationClassName.set("VRAX_FCSwitch");
        manager->SystemName.set("10000000C9000001");
        manager->CreationClassName.set("VRAX_ObjectManager");
        manager->Name.set("10000000C9000001");
        manager->Description.set("manager");
        add(map, manager);
    }
};

class Names_Provider : public Instance_Provider_Base<Names_Provider, VRAX_Namespace>
{
  public:
    static constexpr const char* kSource = "testProviders/Names_Provider";

    static void insert(Map_Writer<VRAX_Namespace>& map, const char* name)
    {
        Owned<VRAX_Namespace> instance = makeNull<VRAX_Namespace>();
        instance->SystemCreationClassName.set("VRAX_FCSwitch");
        instance->SystemName.set("10000000C9000001");
        instance->ObjectManagerCreationClassName.set("VRAX_ObjectManager");
        instance->ObjectManagerName.set("10000000C9000001");
        instance->CreationClassName.set("VRAX_Namespace");
        instance->Name.set(name);
        instance->Description.set("namespace");
        add(map, instance);
    }
    void build(Map_Writer<VRAX_Namespace>& map)
    {
        if (!Script<VRAX_Namespace>::play(map))
            insert(map, "root/interop");
    }
};

class Pairs_Provider : public Association_Provider_Base<Pairs_Provider,
                                                        VRAX_NamespaceInManager,
                                                        &VRAX_NamespaceInManager::Antecedent,
                                                        &VRAX_NamespaceInManager::Dependent,
                                                        Manager_Provider,
                                                        Names_Provider>
{
  public:
    static constexpr const char* kSource = "testProviders/Pairs_Provider";
    typedef Script<VRAX_NamespaceInManager, Pairs> Played;

    void build(Pairs& pairs)
    {
        if (!Played::play(pairs))
            pairs.first<VRAX_ObjectManager>().withFirst<VRAX_Namespace>();
    }
};

// An association with a composite end and with that end's own end; listed against the lock order. It joins
// nothing: only its load matters.
class Nested_Provider : public Association_Provider_Base<Nested_Provider,
                                                         VRAX_CIMXMLCommMechanismForManager,
                                                         &VRAX_CIMXMLCommMechanismForManager::Antecedent,
                                                         &VRAX_CIMXMLCommMechanismForManager::Dependent,
                                                         Ports_Provider,
                                                         Collection_Provider,
                                                         Manager_Provider>
{
  public:
    static constexpr const char* kSource = "testProviders/Nested_Provider";
    typedef Script<VRAX_CIMXMLCommMechanismForManager, Pairs> Played;

    void build(Pairs& pairs) { Played::play(pairs); }
};

// Puts every fake back to its usual build with an empty, stale map.
void resetFakeProviders();

} // namespace cimple

#endif
