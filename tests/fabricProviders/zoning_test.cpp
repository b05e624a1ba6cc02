// Tests of what clients do to zoning: the methods of the service and the deletions, what they return, log,
// write to the switch and change of what is published.
#include "fabricProviders/VRAX_MemberOfZoneSet_Provider.h"
#include "fabricProviders/VRAX_ZoneAliasElementSettingData_Provider.h"
#include "fabricProviders/VRAX_ZoneMembership_Provider.h"
#include "fabricProviders/VRAX_ZoneSet_Provider.h"
#include "fabricProviders/VRAX_ZoningService_Provider.h"
#include "platform/xpl_fzs.h"
#include "simulator/scenario/scenario_json.h"
#include "switchaccess/Zoning_Edit.h"
#include "switchaccess/zone_members.h"
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
                return provider.CreateZone(_self.get(),
                                           property<String>(name.c_str()),
                                           type,
                                           property<uint16>(uint16{7}),
                                           made,
                                           value);
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

    // How the switch is when a request comes.
    enum State
    {
        kReady,
        kHeld,         // somebody else has the administrative mode
        kServiceStale, // and the service cannot be loaded
        kZonesStale,   // and the zones cannot be loaded
        kAliasesStale,
        kNoneActive,
        kSaveFails,
        kCommandFails,
        kAliasGone, // the alias "lone", after its member was loaded
    };
    void bring(State state)
    {
        const auto fails = [&](providerEnum_t map, const char* call)
        {
            VRAX_Maps::getInstance()->InstMapForceUnload(map);
            sim.failNext(call);
        };
        switch (state)
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
        case kCommandFails:
            sim.failNext("Cmd.Zoning.");
            break;
        case kAliasGone:
            Zoning_Edit edit;
            EXPECT_EQ(edit.command("Cmd.Zoning.Alias.lone.Delete", {}), 0);
            EXPECT_TRUE(edit.save());
            VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<VRAX_ZoneAlias>::value);
            break;
        }
    }

    struct Row
    {
        std::function<std::string()> run;
        State state;
        std::string result;
        std::string logged;
    };
    // `done`: the result of what may change the switch.
    void expectRows(const std::vector<Row>& rows, const std::string& done)
    {
        for (const Row& row : rows)
        {
            SCOPED_TRACE("row " + std::to_string(&row - rows.data()));
            SetUp();
            bring(row.state);
            const std::string before = formatScenario(sim.scenario());
            std::string result;
            std::string lines = logged([&] { result = row.run(); });
            EXPECT_EQ(result, row.result);
            // AddZone begins with where its arguments are in memory.
            if (lines.find("[\nZoningService =") == 0)
                lines.erase(0, lines.find("]", lines.find("[\nZone =")) + 1);
            EXPECT_EQ(lines, row.logged);
            if (row.result != done)
                EXPECT_EQ(formatScenario(sim.scenario()), before) << "what fails changes nothing";
            EXPECT_EQ(sim.adminModeHolder(), row.state == kHeld ? "console" : "");
            EXPECT_EQ(sim.outstandingBlocks(), 0U);
        }
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

    const std::string wwnRead = "[memberType = 2][ConnectivityMemberID=2100026E1A40B7C1][s=21 "
                                "NodePortName[0] = 33][s=00 NodePortName[1] = 0]"
                                "[s=02 NodePortName[2] = 2][s=6E NodePortName[3] = 110][s=1A NodePortName[4] "
                                "= 26][s=40 NodePortName[5] = 64]"
                                "[s=B7 NodePortName[6] = 183][s=C1 NodePortName[7] = 193]";
    const std::vector<Row> rows = {
        {activate(inactive("prod"), on),
         kReady,
         "0 0",
         "[Activating  ZoneSet prod][Activating  ZoneSet Succeeded]"},
        {activate(active + "prod", on),
         kReady,
         "0 0",
         "[Activating  ZoneSet prod][Activating  ZoneSet Succeeded]"},
        {activate(inactive("prod"), on),
         kHeld,
         "0 6",
         std::string("[Activating  ZoneSet prod]") + kNoAdminMode},
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
         "[ZoneSetName=new][Successfully created and added ZoneSet to db][\n Zone Set Name : " +
             inactive("new") + "]"},
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
         "[ZoneName=new][ZoneType=2][Created Zone successfully][\nZone InstanceID= : " + inactive("new") +
             "]"},
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

        {alias("new"),
         kReady,
         "0 0",
         "[CreateZoneAlias:ZoneAlias =new][Successfully Created ZoneAlias - new]"},
        {alias("new"), kHeld, "0 6", std::string("[CreateZoneAlias:ZoneAlias =new]") + kNoAdminMode},
        {alias(""), kReady, "0 5", "[CreateZoneAlias:ZoneAlias =][Invalid Parameter]"},
        {alias("host"),
         kReady,
         "0 4",
         "[CreateZoneAlias:ZoneAlias =host][Failed to Create ZoneAlias with error 161]"},
        {run([&] { return other.createAlias("new"); }),
         kReady,
         "0 7",
         "[Error looking up Zoning Service Ref]"},
        {alias("new"),
         kServiceStale,
         "0 4",
         std::string(kServiceFailed) + "[VRAX_ZoningService load failed]"},

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
        {addZone("prod", inactive("z2")), kReady, "0 5", ""},
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
        // No such domain; the others are above 255, and with so many digits would name an address or nothing.
        {newMember(4, "240:1", inactive("z3")), kReady, "0 4", "[xpl_smlSetV Failed]"},
        {newMember(4, "1:4096", inactive("z3")), kReady, "0 5", "[Invalid Parameter: ConnectivityMemberID]"},
        {newMember(4, "256:256", inactive("z3")), kReady, "0 5", "[Invalid Parameter: ConnectivityMemberID]"},
        {newMember(4, "1:18446744073709551626", inactive("z3")),
         kReady,
         "0 5",
         "[Invalid Parameter: ConnectivityMemberID]"},
        {newMember(2, kHost, inactive("none")), kReady, "0 5", ""},
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
         "[CRIT:fabricProviders/VRAX_Zone_Provider:load[] xpl_fzsGetZoneList Failed][VRAX_Zone_Provider load "
         "failed]"},
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
    expectRows(rows, "0 0");
}

template <class CLASS>
std::string remove(const std::string& id)
{
    const Owned<CLASS> keys = keysOf<CLASS>(id);
    return std::to_string(typename Registered<CLASS>::Provider().delete_instance(keys.get()));
}

TEST_F(Zoning, DeletionsSayWhatBecameOfThem)
{
    const auto zoneSet = [](const std::string& id) { return [id] { return remove<VRAX_ZoneSet>(id); }; };
    const auto zone = [](const std::string& id) { return [id] { return remove<VRAX_Zone>(id); }; };
    const auto alias = [](const std::string& name)
    { return [name] { return remove<VRAX_ZoneAlias>(kWwn + ":" + name); }; };
    const auto member = [](const std::string& id)
    { return [id] { return remove<VRAX_ZoneMembership>(id); }; };
    const auto crit = [](const char* provider, const char* text) {
        return std::string("[CRIT:fabricProviders/") + provider + "_Provider:delete_instance[] " + text + "]";
    };
    const std::string setRefused = crit("VRAX_ZoneSet", "xpl_fzsRemoveZoneset fialed");
    const std::string zoneRefused = crit("VRAX_Zone", "xpl_fzsDeleteZone fialed");
    const std::string ofLone = "[ElementName: lone][found the instance][NodeName: 020304]";
    const std::string ofZ2 = "[ElementName: z2][found the instance][NodeName: 010203]";
    expectRows(
        {
            {zoneSet(inactive("prod")), kReady, "0", "[Deleting Requested instance]"},
            {zoneSet("INACTIVE:" + kWwn + ":prod"), kReady, "0", "[Deleting Requested instance]"},
            {zoneSet(inactive("prod")), kHeld, "90", setRefused},
            {zoneSet(inactive("none")), kReady, "90", setRefused},
            {zoneSet("prod"), kReady, "90", setRefused},
            {zone(inactive("z2")), kReady, "0", "[Deleting Requested instance]"},
            {zone(inactive("z2")), kHeld, "90", zoneRefused},
            {zone(inactive("none")), kReady, "90", zoneRefused},
            {alias("spare"), kReady, "0", ""},
            {alias("spare"), kHeld, "93", ""},
            {alias("none"), kReady, "93", ""},
            {alias("spare"), kSaveFails, "93", ""},
            {member(inactive("010203")), kReady, "0", ofZ2},
            // Zones are lenient: what the switch refuses for another reason is saved.
            {member(inactive("010203")), kCommandFails, "0", ofZ2},
            {member(inactive("1:A")),
             kReady,
             "93",
             "[ElementName: z1][found the instance][found the instance][NodeName: 1:A][Cannot delete an "
             "active "
             "member]"},
            {member(inactive("020304")), kReady, "0", ofLone},
            {member(inactive("020304")),
             kCommandFails,
             "93",
             ofLone + crit("VRAX_ZoneMembership", "Failed to remove the ZoneMember error : 5")},
            {member(inactive("2100026E1A40B7D9")),
             kReady,
             "93",
             "[ElementName: enforced][found the instance][NodeName: 2100026E1A40B7D9][Cannot delete an "
             "active "
             "member]"},
            {member(inactive("020304")), kAliasGone, "0", "[ElementName: lone][NodeName: 020304]"},
            {member(inactive("020304")),
             kHeld,
             "93",
             ofLone + crit("VRAX_ZoneMembership", "Failed to get in Zoning editMode")},
            {member(inactive("020304")),
             kSaveFails,
             "93",
             ofLone + crit("VRAX_ZoneMembership", "Failed to save in Zoning editMode")},
            {member(inactive("0A0A0A")), kReady, "93", "[Instance Not found ]"},
            {member(inactive("020304")),
             kZonesStale,
             "93",
             "[CRIT:fabricProviders/VRAX_Zone_Provider:load[] xpl_fzsGetZoneList Failed][VRAX_Zone_Provider "
             "load "
             "failed]"},
            {member(inactive("020304")),
             kAliasesStale,
             "93",
             "[Exception[CRIT]:fabricProviders/VRAX_ZoneAlias_Provider:load[] xpl_fzsGetZoneAliasList "
             "Failed][VRAX_ZoneAlias_Provider load failed]"},
        },
        "0");

    // The library goes by the name, the map by the whole key.
    SetUp();
    EXPECT_EQ(logged([] { EXPECT_EQ(remove<VRAX_Zone>("x:y:z3"), "90"); }),
              crit("VRAX_Zone", "Requested Instance not found, delete instance Failed"));
    EXPECT_EQ(sim.zoning().zones.size(), 2U);
}

// Whether the association's map has the pair at present.
bool isInMap(const std::string& zoneSet, const std::string& zone)
{
    const Read_Guard<VRAX_MemberOfZoneSet> guard;
    for (const VRAX_MemberOfZoneSet* pair : guard.view())
        if (pair->Collection->InstanceID.value == zoneSet.c_str() &&
            pair->Member->InstanceID.value == zone.c_str())
            return true;
    return false;
}

// The first request that a module gets may be one of these.
TEST_F(Zoning, MethodsLoadWhatTheyLookUp)
{
    const auto unloadAll = []
    {
        VRAX_ZoningService_Provider().unload();
        VRAX_ZoneMembership_Provider().unload();
        VRAX_ZoneSet_Provider().unload();
        VRAX_Zone_Provider().unload();
        VRAX_ZoneAlias_Provider().unload();
    };
    unloadAll();
    EXPECT_EQ(service.addZone(inactive("empty"), inactive("z2")), "0 0");
    EXPECT_TRUE(isInMap(inactive("empty"), inactive("z2")));
    unloadAll();
    EXPECT_EQ(service.addAlias(inactive("z2"), kWwn + ":lone"), "0 0");
    unloadAll();
    EXPECT_EQ(service.createMember<VRAX_ZoneAlias>(property<uint16>(uint16{4}), "17:10", kWwn + ":spare"),
              "0 0");
    unloadAll();
    EXPECT_EQ(service.addMember<VRAX_ZoneAlias>(kWwn + ":lone", inactive("010203")), "0 0");
    for (const auto& [name, members] : sim.zoning().aliases)
        if (name == "lone")
            EXPECT_EQ(members, (Texts{"020304", "010203"}));
        else if (name == "spare")
            EXPECT_EQ(members, (Texts{"010203", "11:A"}));
}

// Whatever ends the request.
TEST_F(Zoning, AnEditSessionEndsWithItsScope)
{
    {
        const Zoning_Edit edit;
        EXPECT_TRUE(edit.begun());
        EXPECT_NE(sim.adminModeHolder(), "");
    }
    EXPECT_EQ(sim.adminModeHolder(), "");
}

// The simulated switch publishes no such member.
TEST_F(Zoning, IdentifiersOfOtherFormsAreNoMembers)
{
    const std::vector<std::pair<uint16, const char*>> others = {{2, ""},
                                                                {2, "2100026E1A40B7C"},
                                                                {2, "2100026E1A40B7CG"},
                                                                {3, "01020"},
                                                                {3, "01020G"},
                                                                {4, "1"},
                                                                {4, "1:"},
                                                                {4, ":1"},
                                                                {4, "100:1"},
                                                                {4, "1:100"},
                                                                {4, "1:G"}};
    for (const auto& [type, id] : others)
    {
        Member_Record record;
        EXPECT_FALSE(memberRecord(type, id, record)) << id;
    }
}

// In either letter case, and zones before aliases.
TEST_F(Zoning, AMemberIsDeletedFromTheHolderOfItsName)
{
    EXPECT_EQ(service.createAlias("z2"), "0 0");
    EXPECT_EQ(service.createZone("Z2", property<uint16>(uint16{2})), "0 0");
    EXPECT_EQ(logged([] { EXPECT_EQ(remove<VRAX_ZoneMembership>(inactive("010203")), "0"); }),
              "[ElementName: z2][found the instance][found the instance][found the instance]"
              "[NodeName: 010203]");
    for (const auto& [name, members] : sim.zoning().zones)
        if (name == "z2")
            EXPECT_EQ(members, Texts{kHost});
}

// What the switch has, and what of it shows at once and after the next load.
TEST_F(Zoning, ChangesArriveInTheSwitchAndShow)
{
    const auto shown = [this](auto provider, const std::string& key)
    {
        for (const Description& one : instances<decltype(provider)>())
            if (one.count("InstanceID") != 0 && one.at("InstanceID") == key)
                return one;
        return Description();
    };
    typedef std::vector<std::pair<std::string, Texts>> Lists;
    const auto named = [](const Lists& lists, const std::string& name)
    {
        for (const auto& one : lists)
            if (one.first == name)
                return one.second;
        return Texts{"none"};
    };

    EXPECT_EQ(service.createZoneSet("new"), "0 0");
    EXPECT_EQ(service.out, (Description{{"InstanceID", inactive("new")}}));
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), inactive("new")), service.out);
    EXPECT_EQ(service.createZone("za", property<uint16>(uint16{1})), "0 0");
    EXPECT_EQ(service.out,
              (Description{{"InstanceID", inactive("za")}, {"ElementName", "za"}, {"ZoneType", "1"}}));
    EXPECT_EQ(shown(VRAX_Zone_Provider(), inactive("za")), service.out);
    EXPECT_EQ(service.createZone("zb", property<uint16>(uint16{2})), "0 0");
    EXPECT_EQ(service.createAlias("al"), "0 0");
    EXPECT_EQ(service.out, (Description{{"InstanceID", kWwn + ":al"}, {"CollectionAlias", "al"}}));
    EXPECT_EQ(shown(VRAX_ZoneAlias_Provider(), kWwn + ":al"), service.out);

    EXPECT_EQ(service.createMember<VRAX_Zone>(property<uint16>(uint16{4}), "1:16", inactive("za")), "0 0");
    EXPECT_EQ(service.out,
              (Description{{"InstanceID", inactive("1:16")},
                           {"ConnectivityMemberType", "4"},
                           {"ConnectivityMemberID", "1:16"}}));
    // As the switch writes it: in hexadecimal.
    EXPECT_EQ(shown(VRAX_ZoneMembership_Provider(), inactive("1:16")), Description());
    EXPECT_EQ(shown(VRAX_ZoneMembership_Provider(), inactive("1:10")).at("ElementName"), "za");
    EXPECT_EQ(
        service.createMember<VRAX_ZoneAlias>(property<uint16>(uint16{2}), "2100026e1a40b7da", kWwn + ":al"),
        "0 0");
    EXPECT_EQ(service.createMember<VRAX_Zone>(property<uint16>(uint16{3}), "01ab03", inactive("zb")), "0 0");
    EXPECT_EQ(shown(VRAX_ZoneMembership_Provider(), inactive("01AB03")).at("ElementName"), "zb") << "at once";
    EXPECT_EQ(service.addMember<VRAX_Zone>(inactive("zb"), inactive("1:10")), "0 0");
    EXPECT_EQ(service.addAlias(inactive("zb"), kWwn + ":al"), "0 0");
    instances<VRAX_MemberOfZoneSet_Provider>();
    EXPECT_EQ(service.addZone(inactive("new"), inactive("za")), "0 0");
    EXPECT_TRUE(isInMap(inactive("new"), inactive("za"))) << "at once";
    EXPECT_EQ(service.addZone(inactive("new"), inactive("zb")), "0 0");

    const auto now = sim.zoning();
    EXPECT_EQ(named(now.zoneSets, "new"), (Texts{"za", "zb"}));
    EXPECT_EQ(named(now.zones, "za"), (Texts{"1:10"}));
    EXPECT_EQ(named(now.zones, "zb"), (Texts{"01AB03", "1:10", "al"}));
    EXPECT_EQ(named(now.aliases, "al"), (Texts{"2100026E1A40B7DA"}));
    clock.outlive();
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), inactive("new")),
              (Description{{"InstanceID", inactive("new")}, {"ElementName", "new"}, {"Active", "false"}}));
    EXPECT_EQ(shown(VRAX_Zone_Provider(), inactive("za")).at("ZoneType"), "1");
    EXPECT_EQ(shown(VRAX_Zone_Provider(), inactive("zb")).at("ZoneType"), "2");

    EXPECT_EQ(service.activate(inactive("new"), property<boolean>(true)), "0 0");
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), "Active:" + kWwn + ":new"), Description())
        << "after the next load";
    clock.outlive();
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), "Active:" + kWwn + ":new").at("Active"), "true");
    EXPECT_EQ(sim.zoning().active.name, "new");
    // The enforced copy has what the alias stands for, and does not follow the configured zone.
    const Lists enforced = {{"za", {"1:10"}}, {"zb", {"01AB03", "1:10", "2100026E1A40B7DA"}}};
    EXPECT_EQ(sim.zoning().active.zones, enforced);
    EXPECT_EQ(service.createMember<VRAX_Zone>(property<uint16>(uint16{2}), kHost, inactive("za")), "0 0");
    EXPECT_EQ(sim.zoning().active.zones, enforced);
    EXPECT_EQ(service.activate(inactive("new"), property<boolean>(true)), "0 0");
    EXPECT_EQ(named(sim.zoning().active.zones, "za"), (Texts{"1:10", kHost}));

    EXPECT_EQ(service.activate(inactive("new"), property<boolean>(false)), "0 0");
    EXPECT_EQ(sim.zoning().active.name, "");
    EXPECT_EQ(remove<VRAX_ZoneSet>(inactive("new")), "0");
    EXPECT_EQ(shown(VRAX_ZoneSet_Provider(), inactive("new")), Description()) << "at once";
    EXPECT_EQ(remove<VRAX_Zone>(inactive("za")), "0");
    EXPECT_EQ(remove<VRAX_ZoneAlias>(kWwn + ":al"), "0");
    EXPECT_EQ(named(sim.zoning().zoneSets, "new"), Texts{"none"});
    EXPECT_EQ(named(sim.zoning().zones, "za"), Texts{"none"});
    EXPECT_EQ(named(sim.zoning().aliases, "al"), Texts{"none"});
}

// Who waits for a large database sees how far it is.
TEST_F(Zoning, LongLoadsTellHowFarTheyAre)
{
    simulator::ZoningSetup zoning;
    for (int i = 1; i <= 401; ++i)
    {
        const std::string number = std::to_string(i);
        zoning.alias("a" + number, {"1:A"}).zone("z" + number, {"1:A"});
    }
    sim.open(simulator::SimSwitch::make().zoning(zoning).scenario());
    makeMapsStale();
    const std::string lines = logged(
        [this]
        {
            instances<VRAX_ZoneMembership_Provider>();
            instances<VRAX_ZoneAliasElementSettingData_Provider>();
        });
    EXPECT_EQ(lines,
              "[processed 200 zones, zoneName = z200 ][processed 400 zones, zoneName = z400 ]"
              "[processed 200 aliases, aliasName= a200 ][processed 400 aliases, aliasName= a400 ]"
              "[Calling xpl_fzsGetActiveZonesetName ]"
              "[VRAX_ZoneAliasSettingData, processed 200 alias entries]"
              "[VRAX_ZoneAliasSettingData, processed 400 alias entries]");
}

} // namespace
} // namespace cimple
