// A fabric of three switches and what tests ask of them.
#ifndef TESTS_FABRICPROVIDERS_THREE_SWITCHES_H
#define TESTS_FABRICPROVIDERS_THREE_SWITCHES_H

#include "fabricProviders/VRAX_FCSwitch_Provider.h"
#include "tests/common/testing/Switch_Test.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cimple
{

inline const std::string kOrigin = "fabricProviders/VRAX_FCSwitch_Provider:";

// The local switch stands between two others in the order of domains.
inline constexpr const char* kLocalWwn = "100002a5C0de0005";
inline constexpr const char* kLocalName = "100002A5C0DE0005"; // as it is published
inline constexpr const char* kRemoteName = "100002A5C0DE1007";

class Switches : public Switch_Test
{
  protected:
    void SetUp() override
    {
        sim.open(simulator::SimSwitch::make().wwn(kLocalWwn).domain(5).remote(3, 2).remote(7, 2).scenario());
    }

    // The published switch of that position in the order of domains.
    Description published(std::size_t position)
    {
        std::vector<Description> all = instances<VRAX_FCSwitch_Provider>();
        return position < all.size() ? all[position] : Description();
    }
    Description local() { return published(1); }
    Description reloadedLocal()
    {
        clock.outlive();
        return local();
    }
    // After change(facts of the local switch).
    Description localWith(const std::function<void(simulator::SwitchScenario&)>& change)
    {
        sim.changeSwitch(change);
        return reloadedLocal();
    }

    static Owned<VRAX_FCSwitch> named(const char* name)
    {
        Owned<VRAX_FCSwitch> keys = makeNull<VRAX_FCSwitch>();
        keys->CreationClassName.set("VRAX_FCSwitch");
        keys->Name.set(name);
        return keys;
    }
    // The status of a request that carries everything a client reads, with this ElementName or, null,
    // without.
    static int rename(const char* switchName, const char* elementName)
    {
        const Owned<VRAX_FCSwitch> instance = named(switchName);
        instance->Description.set("not to be changed");
        instance->ElementName.set(elementName != nullptr ? elementName : "not asked for");
        const Owned<VRAX_FCSwitch> model(static_cast<VRAX_FCSwitch*>(clone(instance.get())));
        if (elementName == nullptr)
            model->ElementName.clear();
        return VRAX_FCSwitch_Provider().modify_instance(model.get(), instance.get());
    }

    struct Outcome
    {
        int status;
        std::optional<unsigned> value; // none: null
    };
    static Outcome request(std::optional<unsigned> state, const char* switchName = kLocalName)
    {
        const Owned<VRAX_FCSwitch> self = named(switchName);
        Property<uint16> requested;
        requested.clear();
        if (state)
            requested.set(static_cast<uint16>(*state));
        Property<Datetime> timeout;
        timeout.clear();
        Property<uint32> value;
        value.set(99);
        CIM_ConcreteJob* job = nullptr;
        const int status =
            VRAX_FCSwitch_Provider().RequestStateChange(self.get(), requested, job, timeout, value);
        EXPECT_EQ(job, nullptr);
        return {status, value.null ? std::nullopt : std::optional<unsigned>(value.value)};
    }
};

} // namespace cimple

#endif
