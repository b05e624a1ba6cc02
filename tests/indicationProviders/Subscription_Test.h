// Fixture of tests on a switch that has listeners and subscriptions.
#ifndef TESTS_INDICATIONPROVIDERS_SUBSCRIPTION_TEST_H
#define TESTS_INDICATIONPROVIDERS_SUBSCRIPTION_TEST_H

#include "indicationProviders/CIM_IndicationSubscription_Provider.h"
#include "tests/common/testing/Switch_Test.h"

namespace cimple
{

typedef std::vector<std::string> Texts;

class Subscription_Test : public Switch_Test
{
  protected:
    // Four listeners: a and d are permanent, b, c and d have the same destination. The subscription s1 has
    // two of them.
    static simulator::SimSwitchSetup subscribed()
    {
        return simulator::SimSwitch::make()
            .listener("a", "http://a:1/x.y", true)
            .listener("b", "http://b")
            .listener("c", "http://b")
            .listener("d", "http://b", true)
            .subscription("s1", "CQL:Alert:All", {"a", "b"})
            .subscription("s2", "Create:FCPort", {"a"});
    }

    void begin(const simulator::SimSwitchSetup& setup = subscribed())
    {
        sim.open(setup.scenario());
        makeMapsStale();
        sim.mark();
    }

    static Owned<CIM_ListenerDestinationCIMXML> listener(const std::string& name)
    {
        auto made = makeNull<CIM_ListenerDestinationCIMXML>();
        made->SystemCreationClassName.set("VRAX_FCSwitch");
        made->SystemName.set("100002a5c0de0001");
        made->CreationClassName.set("CIM_ListenerDestinationCIMXML");
        made->Name.set(name.c_str());
        return made;
    }
    static Owned<CIM_IndicationSubscription> subscription(const std::string& filter, const std::string& to)
    {
        auto made = makeNull<CIM_IndicationSubscription>();
        made->Filter = makeNull<CIM_IndicationFilter>().release();
        made->Filter->SystemCreationClassName.set("VRAX_FCSwitch");
        made->Filter->SystemName.set("100002a5c0de0001");
        made->Filter->CreationClassName.set("CIM_IndicationFilter");
        made->Filter->Name.set(filter.c_str());
        made->Handler = cast<CIM_ListenerDestination*>(static_cast<Instance*>(listener(to).release()));
        return made;
    }

    // "listener filter" of each subscription, "failed" when they cannot be loaded.
    static Texts pairs()
    {
        Texts found;
        const Served served = serve<CIM_IndicationSubscription_Provider>(
            [&](const CIM_IndicationSubscription& one) {
                found.push_back(one.Handler->Name.value.c_str() + std::string(" ") +
                                one.Filter->Name.value.c_str());
            });
        return served.status == 0 ? found : Texts{"failed"};
    }
    static Texts listeners()
    {
        Texts found;
        serve<CIM_ListenerDestinationCIMXML_Provider>([&](const CIM_ListenerDestinationCIMXML& one)
                                                      { found.push_back(one.Name.value.c_str()); });
        return found;
    }
};

} // namespace cimple

#endif
