// Tests of what clients do to zoning: the methods of the service and the deletions, what they return, log, write
// to the switch and change of what is published.
#include "fabricProviders/VRAX_ZoneMembership_Provider.h"
#include "fabricProviders/VRAX_ZoneSet_Provider.h"
#include "fabricProviders/VRAX_ZoningService_Provider.h"
#include "simulator/scenario/scenario_json.h"
#include "tests/common/testing/Switch_Test.h"

#include "CIM_NamedAddressCollection.h"
#include "CIM_SystemSpecificCollection.h"
#include "CIM_Zone.h"
#include "CIM_ZoneMembershipSettingData.h"
#include "CIM_ZoneSet.h"

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

const std::string kWwn = "100002a5c0de0001";
const std::string kHost = "2100026E1A40B7C1";

std::string inactive(const std::string& name)
{
    return "Inactive:" + kWwn + ":" + name;
}

template <class CLASS>
Owned<CLASS> keysOf(const std::string& id)
{
    Owned<CLASS> keys = makeNull<CLASS>();
    keys->InstanceID.set(id.c_str());
    return keys;
}

template <class TYPE, class VALUE>
Property<TYPE> property(const VALUE& value)
{
    Property<TYPE> result;
    result.set(value);
    return result;
}
template <class TYPE>
Property<TYPE> nothing()
{
    Property<TYPE> result;
    result.clear();
    return result;
}

// The methods as short functions; each returns "status value", and what was handed out in `out`.
class Service
{
  public:
    explicit Service(const std::string& name = kWwn) : _self(makeNull<VRAX_ZoningService>())
    {
        _self->SystemCreationClassName.set("VRAX_Switch");
        _self->SystemName.set(name.c_str());
        _self->CreationClassName.set("VRAX_ZoningService");
        _self->Name.set(name.c_str());
    }

    std::map<std::string, std::string> out; // of the last call; empty: none

    std::string activate(const std::string& zoneSet, const Property<boolean>& on)
    {
        const Owned<VRAX_ZoneSet> keys = keysOf<VRAX_ZoneSet>(zoneSet);
        return call([&](auto& value)
                    { return provider.ActivateZoneSet(_self.get(), as<CIM_ZoneSet>(keys), on, value); });
    }
    std::string createZoneSet(const std::string& name)
    {
        return creating<CIM_ZoneSet>(
            [&](CIM_ZoneSet*& made, auto& value)
            { return provider.CreateZoneSet(_self.get(), property<String>(name.c_str()), made, value); });
    }
    std::string createZone(const std::string& name, const Property<uint16>& type)
    {
        return creating<CIM_Zone>(
            [&](CIM_Zone*& made, auto& value)
            {
                return provider.CreateZone(
                    _self.get(), property<String>(name.c_str()), type, property<uint16>(7), made, value);
            });
    }
    std::string createAlias(const std::string& name)
    {
        return creating<CIM_NamedAddressCollection>(
            [&](CIM_NamedAddressCollection*& made, auto& value)
            { return provider.CreateZoneAlias(_self.get(), property<String>(name.c_str()), made, value); });
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
    std::string createMember(const Property<uint16>& type, const std::string& id, const std::string& holder)
    {
        const Owned<CLASS> keys = keysOf<CLASS>(holder);
        return creating<CIM_ZoneMembershipSettingData>(
            [&](CIM_ZoneMembershipSettingData*& made, auto& value)
            {
                return provider.CreateZoneMembershipSettingData(_self.get(),
                                                                type,
                                                                property<String>(id.c_str()),
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

class Zoning : public Switch_Test
{
  protected:
    void SetUp() override
    {
        sim.open(simulator::SimSwitch::make()
                     .zoning(simulator::ZoningSetup()
                                 .alias("host", {kHost})
                                 .alias("spare", {"010203"})
                                 .zone("z1", {"host", "1:A"})
                                 .zone("z2", {kHost, "010203"})
                                 .zone("z3", {})
                                 .zoneSet("prod", {"z1"})
                                 .zoneSet("empty", {})
                                 .active("prod"))
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
        for (const std::string& line : log.texts())
            all += "[" + line + "]";
        return all;
    }

    Texts ids(const std::vector<Description>& instances)
    {
        Texts result;
        for (const Description& one : instances)
            result.push_back(one.at("InstanceID"));
        return result;
    }

    Service service;
};

constexpr char kServiceFailed[] =
    "[Exception[CRIT]:fabricProviders/VRAX_ZoningService_Provider:load[] Unable to retrieve localWWN]";
constexpr char kNoAdminMode[] = "[Admin mode is locked]";

// What a method returns and logs, by what it is asked and how the switch is.
TEST_F(Zoning, MethodsReturnWhatBecameOfThem)
{
    const Property<boolean> on = property<boolean>(true), off = property<boolean>(false);
    const auto type = [](uint16 value) { return property<uint16>(value); };
    const std::string spare = kWwn + ":spare", host = kWwn + ":host";
    const std::string active = "Active:" + kWwn + ":";
    Service other("200002a5c0de0001");

    // How the switch is.
    enum State
    {
        kReady,
        kHeld,         // somebody else has the administrative mode
        kServiceStale, // and the service cannot be loaded
        kZonesStale,   // and the zones cannot be loaded
        kAliasesStale,
        kNoneActive,
        kSaveFails,
    };
    struct Row
    {
        std::function<std::string()> run;
        State state;
        std::string value;
        std::string logged;
    };
    const auto run = [](auto call) { return std::function<std::string()>(call); };
    const auto activate = [&](const std::string& set, const Property<boolean>& wish)
    { return run([&, set, wish] { return service.activate(set, wish); }); };
    const auto zoneSet = [&](const std::string& name)
    { return run([&, name] { return service.createZoneSet(name); }); };
    const auto zone = [&](const std::string& name, const Property<uint16>& of)
    { return run([&, name, of] { return service.createZone(name, of); }); };
    const auto alias = [&](const std::string& name)
    { return run([&, name] { return service.createAlias(name); }); };
    const auto addZone = [&](const std::string& set, const std::string& one)
    { return run([&, set, one] { return service.addZone(set, one); }); };
    const auto addAlias = [&](const std::string& to, const std::string& one)
    { return run([&, to, one] { return service.addAlias(to, one); }); };
    const auto newMember = [&](uint16 of, const std::string& id, const std::string& to)
    { return run([&, of, id, to] { return service.createMember<VRAX_Zone>(type(of), id, to); }); };
    const auto newAliasMember = [&](uint16 of, const std::string& id, const std::string& to)
    { return run([&, of, id, to] { return service.createMember<VRAX_ZoneAlias>(type(of), id, to); }); };
    const auto addMember = [&](const std::string& to, const std::string& one)
    { return run([&, to, one] { return service.addMember<VRAX_Zone>(to, one); }); };
    const auto addAliasMember = [&](const std::string& to, const std::string& one)
    { return run([&, to, one] { return service.addMember<VRAX_ZoneAlias>(to, one); }); };

    const std::string wwnRead =
        "[memberType = 2][ConnectivityMemberID=2100026E1A40B7C1][s=21 NodePortName[0] = 33][s=00 NodePortName[1] = 0]"
        "[s=02 NodePortName[2] = 2][s=6E NodePortName[3] = 110][s=1A NodePortName[4] = 26][s=40 NodePortName[5] = 64]"
        "[s=B7 NodePortName[6] = 183][s=C1 NodePortName[7] = 193]";
    const Row rows[] = {
        {activate(inactive("prod"), on), kReady, "0 0", "[Activating  ZoneSet prod][Activating  ZoneSet Succeeded]"},
        {activate(active + "prod", on), kReady, "0 0", "[Activating  ZoneSet prod][Activating  ZoneSet Succeeded]"},
        {activate(inactive("prod"), on), kHeld, "0 6", std::string("[Activating  ZoneSet prod]") + kNoAdminMode},
        {activate(inactive("none"), on),
         kReady,
         "0 4",
         "[Activating  ZoneSet none][Activating  ZoneSet failed = 162]"},
        {activate(inactive("prod"), off), kReady, "0 0", "[Deactivating  ZoneSet Succeeded]"},
        {activate(inactive("none"), off), kReady, "0 0", "[Deactivating  ZoneSet Succeeded]"},
        {activate(inactive("prod"), off), kHeld, "0 6", kNoAdminMode},
        {activate(inactive("prod"), off), kNoneActive, "0 4", "[Deactivating  ZoneSet failed]"},
        {activate(inactive("prod"), nothing<boolean>()), kReady, "0 5", "[Activate is missing]"},
        {activate("prod", on), kReady, "0 5", "[ZoneSet Name not found in InstanceID]"},
        {run([&] { return other.activate(inactive("prod"), on); }),
         kReady,
         "0 5",
         "[Error looking up Zoning Service]"},
        {activate(inactive("prod"), on),
         kServiceStale,
         "0 4",
         std::string(kServiceFailed) + "[VRAX_ZoningService_Provider load failed]"},

        {zoneSet("new"),
         kReady,
         "0 0",
         "[ZoneSetName=new][Successfully created and added ZoneSet to db][\n Zone Set Name : " + inactive("new") +
             "]"},
        {zoneSet("new"), kHeld, "0 6", std::string("[ZoneSetName=new]") + kNoAdminMode},
        {zoneSet(""), kReady, "0 5", "[ZoneSetName=][Invalid Parameter]"},
        {zoneSet("n e w"), kReady, "0 4", "[ZoneSetName=n e w][Failed to Create ZoneSet]"},
        {zoneSet("prod"), kReady, "0 4", "[ZoneSetName=prod][Failed to Create ZoneSet]"},
        {zoneSet(std::string(65, 'n')),
         kReady,
         "0 4",
         "[ZoneSetName=" + std::string(65, 'n') + "][Error creating zoneset ]"},
        {run([&] { return other.createZoneSet("new"); }),
         kReady,
         "0 1",
         "[ZoneSetName=new][Error looking up Zoning Service]"},
        {zoneSet("new"),
         kServiceStale,
         "0 1",
         std::string(kServiceFailed) + "[VRAX_ZoningService load failed]"},

        {zone("new", type(2)),
         kReady,
         "0 0",
         "[ZoneName=new][ZoneType=2][Created Zone successfully][\nZone InstanceID= : " + inactive("new") + "]"},
        {zone("new", type(2)), kHeld, "0 6", std::string("[ZoneName=new][ZoneType=2]") + kNoAdminMode},
        {zone("new", type(0)), kReady, "0 5", "[ZoneName=new][ZoneType=0][Invalid ZoneType]"},
        {zone("new", type(3)), kReady, "0 5", "[ZoneName=new][ZoneType=3][Invalid ZoneType]"},
        {zone("new", nothing<uint16>()), kReady, "0 5", "[ZoneName=new][ZoneType=0][Invalid ZoneType]"},
        {zone("", type(1)), kReady, "0 5", "[ZoneName=][ZoneType=1][Invalid Parameter]"},
        {zone("1st", type(1)),
         kReady,
         "0 4",
         "[ZoneName=1st][ZoneType=1][Error creating zone:xpl_fzsCreateZone]"},
        {zone(std::string(65, 'n'), type(1)),
         kReady,
         "0 4",
         "[ZoneName=" + std::string(65, 'n') + "][ZoneType=1][Error creating zone]"},
        {run([&] { return other.createZone("new", type(1)); }),
         kReady,
         "0 1",
         "[ZoneName=new][ZoneType=1][Error looking up Zoning Service REF]"},
        {zone("new", type(0)),
         kServiceStale,
         "0 4",
         std::string("[ZoneName=new][ZoneType=0]") + kServiceFailed + "[VRAX_ZoningService load failed]"},

        {alias("new"), kReady, "0 0", "[CreateZoneAlias:ZoneAlias =new][Successfully Created ZoneAlias - new]"},
        {alias("new"), kHeld, "0 6", std::string("[CreateZoneAlias:ZoneAlias =new]") + kNoAdminMode},
        {alias(""), kReady, "0 5", "[CreateZoneAlias:ZoneAlias =][Invalid Parameter]"},
        {alias("host"),
         kReady,
         "0 4",
         "[CreateZoneAlias:ZoneAlias =host][Failed to Create ZoneAlias with error 161]"},
        {run([&] { return other.createAlias("new"); }), kReady, "0 7", "[Error looking up Zoning Service Ref]"},
        {alias("new"), kServiceStale, "0 4", std::string(kServiceFailed) + "[VRAX_ZoningService load failed]"},

        {addZone(inactive("empty"), inactive("z2")),
         kReady,
         "0 0",
         "[Adding zone z2 to zoneset empty][Adding zone z2 to zoneset empty Successful]"},
        {addZone(inactive("empty"), inactive("z2")),
         kHeld,
         "0 6",
         std::string("[Adding zone z2 to zoneset empty]") + kNoAdminMode},
        {addZone(inactive("prod"), inactive("z1")),
         kReady,
         "0 4",
         "[Adding zone z1 to zoneset prod][Failed to Add Zone to ZoneSet]"},
        {addZone(inactive("none"), inactive("z1")),
         kReady,
         "0 4",
         "[Adding zone z1 to zoneset none][Failed to Add Zone to ZoneSet]"},
        {addZone("prod", inactive("z2")), kReady, "0 5", "[]"},
        {addZone(inactive("prod"), inactive("none")), kReady, "0 7", "[Referenced zone not found]"},
        {run([&] { return other.addZone(inactive("empty"), inactive("z2")); }),
         kReady,
         "0 1",
         "[Error looking up Zoning Service]"},
        {addZone(inactive("empty"), inactive("z2")),
         kServiceStale,
         "0 1",
         std::string(kServiceFailed) + "[VRAX_ZoningService load failed]"},

        {addAlias(inactive("z2"), spare), kReady, "0 0", "[Successfully Added  ZoneAlias spare]"},
        {addAlias(inactive("z2"), spare), kHeld, "0 6", ""},
        {addAlias(inactive("z2"), spare), kSaveFails, "0 4", ""},
        {addAlias(inactive("z1"), host), kReady, "0 8", "[Member already exists]"},
        {addAlias(inactive("none"), spare), kReady, "0 7", "[VRAX_Zone Ref not found]"},
        {addAlias(inactive("z2"), kWwn + ":none"), kReady, "0 7", "[VRAX_ZoneAliasi Ref not found]"},
        {run([&] { return other.addAlias(inactive("z2"), spare); }),
         kReady,
         "0 7",
         "[Error looking up Zoning Service Ref]"},
        {addAlias(inactive("z2"), spare),
         kServiceStale,
         "0 3",
         std::string(kServiceFailed) + "[Error VRAX_ZoningService Update ]"},

        {newMember(2, "2100026e1a40b7d9", inactive("z3")), kReady, "0 0", ""},
        {newMember(3, "01ab03", inactive("z3")), kReady, "0 0", ""},
        {newMember(4, "1:10", inactive("z3")), kReady, "0 0", ""},
        {newAliasMember(4, "1:10", spare), kReady, "0 0", ""},
        {newMember(2, "2100026e1a40b7d9", inactive("z3")), kHeld, "0 6", ""},
        {newMember(2, "2100026e1a40b7d9", inactive("z3")), kSaveFails, "0 4", ""},
        {newMember(1, kHost, inactive("z3")), kReady, "0 5", "[Invalid Parameter: ConnectivityMemberType]"},
        {newMember(5, kHost, inactive("z3")), kReady, "0 5", "[Invalid Parameter: ConnectivityMemberType]"},
        {newMember(2, "2100026e1a40b7d", inactive("z3")),
         kReady,
         "0 5",
         "[Invalid Parameter: ConnectivityMemberID]"},
        {newMember(3, "01ab0", inactive("z3")), kReady, "0 5", "[Invalid Parameter: ConnectivityMemberID]"},
        {newMember(4, "1:0a", inactive("z3")), kReady, "0 5", "[Invalid Parameter: ConnectivityMemberID]"},
        // Numbers that the switch does not take: no such domain, no such port, more than any number.
        {newMember(4, "240:1", inactive("z3")), kReady, "0 4", "[xpl_smlSetV Failed]"},
        {newMember(4, "1:266", inactive("z3")), kReady, "0 4", "[xpl_smlSetV Failed]"},
        {newMember(4, "1:18446744073709551626", inactive("z3")), kReady, "0 4", "[xpl_smlSetV Failed]"},
        {newMember(2, kHost, inactive("none")), kReady, "0 5", "[]"},
        {newMember(2, kHost, inactive("z2")), kReady, "0 4", "[xpl_smlSetV Failed]"}, // there already
        {run([&] { return other.createMember<VRAX_Zone>(type(2), kHost, inactive("z3")); }),
         kReady,
         "0 4",
         "[Error looking up Zoning Service]"},
        {newMember(2, kHost, inactive("z3")),
         kServiceStale,
         "0 4",
         std::string(kServiceFailed) + "[VRAX_ZoningService load failed]"},
        {newMember(2, kHost, inactive("z3")),
         kZonesStale,
         "0 4",
         "[CRIT:fabricProviders/VRAX_Zone_Provider:load[] xpl_fzsGetZoneList Failed][VRAX_Zone_Provider load failed]"},
        {newMember(2, kHost, inactive("z3")),
         kAliasesStale,
         "0 4",
         "[Exception[CRIT]:fabricProviders/VRAX_ZoneAlias_Provider:load[] xpl_fzsGetZoneAliasList "
         "Failed][VRAX_ZoneAlias_Provider load failed]"},

        {addMember(inactive("z3"), inactive(kHost)), kReady, "0 0", wwnRead},
        {addMember(inactive("z3"), inactive(kHost)), kHeld, "0 6", wwnRead + kNoAdminMode},
        {addMember(inactive("z2"), inactive(kHost)), kReady, "0 8", wwnRead},
        {addAliasMember(host, inactive(kHost)), kReady, "0 8", wwnRead},
        {addMember(inactive("z3"), inactive("010203")),
         kReady,
         "0 0",
         "[memberType = 3][ConnectivityMemberID=010203][Type is XPL_ZMT_NODEPORTID]"},
        {addMember(inactive("z3"), inactive("1:A")),
         kReady,
         "0 0",
         "[memberType = 4][ConnectivityMemberID=1:A][DomainId = 1][PortNo = a]"},
        {addAliasMember(spare, active + "1:A"),
         kReady,
         "0 0",
         "[memberType = 4][ConnectivityMemberID=1:A][DomainId = 1][PortNo = a]"},
        {addMember(inactive("none"), inactive("1:A")),
         kReady,
         "0 7",
         "[Neither Zone Ref nor ZoneAlias Ref correct]"},
        {addMember(inactive("z3"), inactive("1:B")),
         kReady,
         "0 7",
         "[Referenced ZoneMembershipSettingData not found]"},
        {run([&] { return other.addMember<VRAX_Zone>(inactive("z3"), inactive("1:A")); }),
         kReady,
         "0 5",
         "[Error looking up Zoning Service]"},
        {addMember(inactive("z3"), inactive("1:A")),
         kServiceStale,
         "0 4",
         std::string(kServiceFailed) + "[VRAX_ZoningService_Provider load failed]"},
    };
    for (const Row& row : rows)
    {
        SCOPED_TRACE("row " + std::to_string(&row - rows));
        SetUp();
        const auto fails = [&](providerEnum_t map, const char* call)
        {
            VRAX_Maps::getInstance()->InstMapForceUnload(map);
            sim.failNext(call);
        };
        switch (row.state)
        {
        case kReady:
            break;
        case kHeld:
            sim.holdAdminMode("console");
            break;
        case kServiceStale:
            fails(Map_Index<VRAX_ZoningService>::value, "get_Local_Switch_World_Wide_Name");
            break;
        case kZonesStale:
            fails(Map_Index<VRAX_Zone>::value, "xpl_fzsGetZoneList");
            break;
        case kAliasesStale:
            fails(Map_Index<VRAX_ZoneAlias>::value, "xpl_fzsGetZoneAliasList");
            break;
        case kNoneActive:
            xpl_fzsDeactivateZoneset(hSwitch);
            break;
        case kSaveFails:
            sim.failNext("saveZoningEdit");
            break;
        }
        const std::string before = formatScenario(sim.scenario());
        std::string value;
        std::string lines = logged([&] { value = row.run(); });
        EXPECT_EQ(value, row.value);
        // AddZone begins with where its arguments are in memory.
        if (const std::size_t at = lines.find("[\nZoningService ="); at == 0)
            lines.erase(0, lines.find("]", lines.find("[\nZone =")) + 1);
        EXPECT_EQ(lines, row.logged);
        EXPECT_EQ(formatScenario(sim.scenario()) == before, row.value != "0 0") << "what fails changes nothing";
        EXPECT_EQ(sim.adminModeHolder(), row.state == kHeld ? "console" : "");
        EXPECT_EQ(sim.outstandingBlocks(), 0U);
    }
}

} // namespace
} // namespace cimple
