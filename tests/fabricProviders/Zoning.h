// What tests do to zoning: the methods of the service as short functions, and the deletions.
#ifndef TESTS_FABRICPROVIDERS_ZONING_H
#define TESTS_FABRICPROVIDERS_ZONING_H

#include "fabricProviders/VRAX_ZoneMembership_Provider.h"
#include "fabricProviders/VRAX_ZoneSet_Provider.h"
#include "fabricProviders/VRAX_ZoningService_Provider.h"
#include "tests/common/testing/Switch_Test.h"

#include <optional>

#include "CIM_NamedAddressCollection.h"
#include "CIM_SystemSpecificCollection.h"
#include "CIM_Zone.h"
#include "CIM_ZoneMembershipSettingData.h"
#include "CIM_ZoneSet.h"

namespace cimple
{

const std::string kHost = "2100026E1A40B7C1";

inline std::string inactive(const std::string& name)
{
    return "Inactive:" + kLocalWwn + ":" + name;
}

template <class CLASS>
Owned<CLASS> keysOf(const std::string& id)
{
    Owned<CLASS> keys = makeNull<CLASS>();
    keys->InstanceID.set(id.c_str());
    return keys;
}

template <class TYPE, class VALUE>
Property<TYPE> property(const std::optional<VALUE>& value)
{
    Property<TYPE> result;
    result.clear();
    if (value)
        result.set(*value);
    return result;
}
inline Property<String> property(const std::string& text)
{
    return property<String>(std::optional<const char*>(text.c_str()));
}

// The methods as short functions; each returns "status value", and what was handed out in `out`.
class Service
{
  public:
    explicit Service(const std::string& name = kLocalWwn) : _self(makeNull<VRAX_ZoningService>())
    {
        _self->SystemCreationClassName.set("VRAX_Switch");
        _self->SystemName.set(name.c_str());
        _self->CreationClassName.set("VRAX_ZoningService");
        _self->Name.set(name.c_str());
    }

    std::map<std::string, std::string> out; // of the last call; empty: none

    std::string activate(const std::string& zoneSet, std::optional<bool> on)
    {
        const Owned<VRAX_ZoneSet> keys = keysOf<VRAX_ZoneSet>(zoneSet);
        return call(
            [&](auto& value) {
                return provider.ActivateZoneSet(
                    _self.get(), as<CIM_ZoneSet>(keys), property<boolean>(on), value);
            });
    }
    std::string createZoneSet(const std::string& name)
    {
        return creating<CIM_ZoneSet>(
            [&](CIM_ZoneSet*& made, auto& value)
            { return provider.CreateZoneSet(_self.get(), property(name), made, value); });
    }
    std::string createZone(const std::string& name, std::optional<uint16> type)
    {
        return creating<CIM_Zone>(
            [&](CIM_Zone*& made, auto& value)
            {
                return provider.CreateZone(_self.get(),
                                           property(name),
                                           property<uint16>(type),
                                           property<uint16>(std::optional<uint16>(7)),
                                           made,
                                           value);
            });
    }
    std::string createAlias(const std::string& name)
    {
        return creating<CIM_NamedAddressCollection>(
            [&](CIM_NamedAddressCollection*& made, auto& value)
            { return provider.CreateZoneAlias(_self.get(), property(name), made, value); });
    }
    std::string addZone(const std::string& zoneSet, const std::string& zone)
    {
        const Owned<VRAX_ZoneSet> set = keysOf<VRAX_ZoneSet>(zoneSet);
        const Owned<VRAX_Zone> keys = keysOf<VRAX_Zone>(zone);
        return call(
            [&](auto& value)
            { return provider.AddZone(_self.get(), as<CIM_ZoneSet>(set), as<CIM_Zone>(keys), value); });
    }
    std::string addAlias(const std::string& zone, const std::string& alias)
    {
        const Owned<VRAX_Zone> keys = keysOf<VRAX_Zone>(zone);
        const Owned<VRAX_ZoneAlias> other = keysOf<VRAX_ZoneAlias>(alias);
        return call(
            [&](auto& value)
            {
                return provider.AddZoneAlias(
                    _self.get(), as<CIM_Zone>(keys), as<CIM_NamedAddressCollection>(other), value);
            });
    }
    template <class CLASS>
    std::string createMember(std::optional<uint16> type, const std::string& id, const std::string& holder)
    {
        const Owned<CLASS> keys = keysOf<CLASS>(holder);
        return creating<CIM_ZoneMembershipSettingData>(
            [&](CIM_ZoneMembershipSettingData*& made, auto& value)
            {
                return provider.CreateZoneMembershipSettingData(_self.get(),
                                                                property<uint16>(type),
                                                                property(id),
                                                                as<CIM_SystemSpecificCollection>(keys),
                                                                made,
                                                                value);
            });
    }
    template <class CLASS>
    std::string addMember(const std::string& holder, const std::string& membership)
    {
        const Owned<CLASS> keys = keysOf<CLASS>(holder);
        const Owned<VRAX_ZoneMembership> member = keysOf<VRAX_ZoneMembership>(membership);
        return call(
            [&](auto& value)
            {
                return provider.AddZoneMembershipSettingData(_self.get(),
                                                             as<CIM_SystemSpecificCollection>(keys),
                                                             as<CIM_ZoneMembershipSettingData>(member),
                                                             value);
            });
    }

    VRAX_ZoningService_Provider provider;

  private:
    template <class OUT, class CLASS>
    static const OUT* as(const Owned<CLASS>& instance)
    {
        return reinterpret_cast<const OUT*>(static_cast<const Instance*>(instance.get()));
    }
    template <class CALL>
    std::string call(CALL call)
    {
        out.clear();
        Property<uint32> value;
        value.set(99);
        const int status = call(value);
        return std::to_string(status) + " " + (value.null ? "null" : std::to_string(value.value));
    }
    template <class OUT, class CALL>
    std::string creating(CALL create)
    {
        OUT* made = nullptr;
        const std::string result = call([&](auto& value) { return create(made, value); });
        const Owned<Instance> owner(reinterpret_cast<Instance*>(made));
        if (owner)
            out = described(*owner);
        return result;
    }

    Owned<VRAX_ZoningService> _self;
};

template <class CLASS>
std::string remove(const std::string& id)
{
    const Owned<CLASS> keys = keysOf<CLASS>(id);
    return std::to_string(typename Registered<CLASS>::Provider().delete_instance(keys.get()));
}

// A small zoning database, most of which is loaded.
class Zoning : public Switch_Test
{
  protected:
    void SetUp() override
    {
        sim.open(simulator::SimSwitch::make()
                     .zoning(simulator::ZoningSetup()
                                 .alias("host", {kHost})
                                 .alias("spare", {"010203"})
                                 .alias("enforced", {"2100026E1A40B7D9"})
                                 .alias("lone", {"020304"})
                                 .zone("z1", {"host", "enforced", "1:A"})
                                 .zone("z2", {kHost, "010203"})
                                 .zone("z3", {})
                                 .zoneSet("prod", {"z1"})
                                 .zoneSet("old", {"z1"})
                                 .zoneSet("empty", {})
                                 .active("old"))
                     .scenario());
        makeMapsStale();
        instances<VRAX_ZoningService_Provider>();
        instances<VRAX_ZoneSet_Provider>();
        instances<VRAX_ZoneMembership_Provider>();
        sim.mark();
    }

    // All lines of an action but the traces, in a row.
    template <class RUN>
    std::string logged(RUN run)
    {
        const Log_Capture log(kLogInfo);
        run();
        std::string all;
        for (const Log_Capture::Line& line : log.take())
        {
            std::string text = line.second;
            const std::size_t place = text.find('[', text.find("_Provider:"));
            if (place != text.npos) // the number of the source line
                text.erase(place + 1, text.find(']', place) - place - 1);
            all += "[" + text + "]";
        }
        return all;
    }

    Service service;
};

} // namespace cimple

#endif
