// Tests of the switches of the fabric: what is published of them.
#include "serverProviders/VRAX_FCSwitchObjectManager_Provider.h"
#include "tests/fabricProviders/three_switches.h"

namespace cimple
{
namespace
{

using simulator::AdminState;
using simulator::SwitchScenario;

TEST_F(Switches, PublishTheListedPropertiesAndNoOthers)
{
    sim.changeSwitch(
        [](SwitchScenario& facts)
        {
            facts.name = "core-a";
            facts.configuredAdminState = AdminState::diagnostics;
            facts.faults = {32768, 7};
        });
    sim.answer("Oper.Switch.OperState", "Offline");
    const Description localSwitch = {
        {"CreationClassName", "VRAX_FCSwitch"},
        {"Name", kLocalName},
        {"ElementName", "core-a"},
        {"NameFormat", "WWN"},
        {"Description", "FibreChannel Switch"},
        {"OperationalStatus", "[10, 5, 32768, 7]"},
        {"EnabledState", "2"},
        {"RequestedState", "5"},
        {"EnabledDefault", "7"},
        {"OtherIdentifyingInfo", "[5]"},
        {"IdentifyingDescriptions", "[DomainID]"},
        {"Dedicated", "[5]"},
    };
    const auto remoteSwitch = [](const char* name, const char* elementName, const char* domain)
    {
        return Description{
            {"CreationClassName", "VRAX_FCSwitch"},
            {"Name", name},
            {"ElementName", elementName},
            {"NameFormat", "WWN"},
            {"Description", "FibreChannel Switch"},
            {"OperationalStatus", "[0]"},
            {"EnabledState", "5"},
            {"RequestedState", "12"},
            {"EnabledDefault", "5"},
            {"OtherIdentifyingInfo", domain},
            {"IdentifyingDescriptions", "[DomainID]"},
            {"Dedicated", "[5]"},
        };
    };
    EXPECT_EQ(instances<VRAX_FCSwitch_Provider>(),
              (std::vector<Description>{remoteSwitch("100002A5C0DE1003", "remote-3", "[3]"),
                                        localSwitch,
                                        remoteSwitch(kRemoteName, "remote-7", "[7]")}));
}

TEST_F(Switches, ReadEachSwitchInOneBatchAndAFreshMapNotAtAll)
{
    typedef std::vector<std::string> Keys;
    const auto remoteKeys = [](const std::string& domain)
    {
        return Keys{"Oper.Fabric.Entry." + domain + ".WWN",
                    "Oper.Fabric.Entry." + domain + ".SymNodeName",
                    "Oper.Switch.Echo." + domain};
    };
    instances<VRAX_FCSwitch_Provider>();
    EXPECT_EQ(sim.batches(),
              (std::vector<Keys>{remoteKeys("3"),
                                 {"Oper.Switch.WWN",
                                  "Config.Switch.SymName",
                                  "Oper.Switch.OperState",
                                  "Oper.Switch.AdminState",
                                  "Config.Switch.AdminState",
                                  "Oper.Switch.DomainID",
                                  "Oper.Switch.Type"},
                                 remoteKeys("7")}));
    EXPECT_EQ(sim.calls("DataCache::dcRdLock"), 1u);
    sim.mark();
    EXPECT_EQ(instances<VRAX_FCSwitch_Provider>().size(), 3u);
    EXPECT_EQ(sim.platformCalls(), 0u);
}

TEST_F(Switches, FollowTheFabric)
{
    sim.removeSwitch(3);
    clock.outlive();
    EXPECT_EQ(instances<VRAX_FCSwitch_Provider>().size(), 2u);
    sim.removeSwitch(7);
    clock.outlive();
    EXPECT_EQ(published(0)["Name"], kLocalName);
    // A load that finds no switch, or no fabric, is as good as any other.
    for (const char* call : {"FabricCache::getFirstSwitch", "DataCache::getFabric"})
    {
        clock.outlive();
        sim.failNext(call);
        EXPECT_EQ(instances<VRAX_FCSwitch_Provider>().size(), 0u) << call;
        EXPECT_EQ(instances<VRAX_FCSwitchObjectManager_Provider>().size(), 0u) << call;
    }
}

TEST_F(Switches, TheLocalSwitchIsTheOneWithExactlyItsWwn)
{
    sim.failNext("DataCache::getRootSwitchWwn");
    EXPECT_EQ(local()["RequestedState"], "12") << "none";
    EXPECT_EQ(reloadedLocal()["RequestedState"], "5");
}

TEST_F(Switches, TranslateStatesAndFaults)
{
    struct Row
    {
        const char* text;
        std::vector<std::uint16_t> faults;
        const char* status;  // of the text as operational state
        const char* enabled; // of the text as administrative state
    };
    const Row rows[] = {
        {"Online", {}, "[2]", "2"},
        {"Offline", {}, "[10]", "3"},
        {"Downed", {}, "[10]", "3"},
        {"Down", {}, "[0]", "3"},
        {"Diagnostics", {32769}, "[11, 32769]", "7"},
        {"Online", {32768}, "[2, 5, 32768]", "2"},
        {"Online", {32769}, "[6, 32769]", "2"},
        {"", {}, "[0]", "0"},
    };
    for (const Row& row : rows)
    {
        for (const char* key :
             {"Oper.Switch.OperState", "Oper.Switch.AdminState", "Config.Switch.AdminState"})
            sim.answer(key, row.text);
        Description one = localWith([&](SwitchScenario& facts) { facts.faults = row.faults; });
        EXPECT_EQ(one["OperationalStatus"], row.status) << row.text;
        EXPECT_EQ(one["EnabledState"], row.enabled) << row.text;
        EXPECT_EQ(one["EnabledDefault"], row.enabled) << row.text;
    }
    // Each property comes from its own key.
    sim.answer("Oper.Switch.OperState", "Diagnostics");
    sim.answer("Oper.Switch.AdminState", "Offline");
    sim.answer("Config.Switch.AdminState", "Online");
    Description one = localWith([](SwitchScenario& facts) { facts.faults.clear(); });
    EXPECT_EQ(one["OperationalStatus"] + one["EnabledState"] + one["EnabledDefault"], "[11]32");
}

TEST_F(Switches, DescribeTheirKind)
{
    struct Row
    {
        const char* type;
        const char* productName;
        bool transparent;
        const char* local;
        const char* remote;
    };
    const Row rows[] = {
        {"Rowan 5024", "A product", false, "FibreChannel Switch", "FibreChannel Switch"},
        {"Rowan Blade", "Rowan 4Gb Blade  ", false, "Rowan 4Gb Blade", "FibreChannel Switch"},
        {"Rowan Blade", "\t Rowan\t\r\n ", false, "\t Rowan", "FibreChannel Switch"},
        {"rowan blade", "Rowan 4Gb Blade", false, "FibreChannel Switch", "FibreChannel Switch"},
        {"Rowan Blade ", "Rowan 4Gb Blade", false, "FibreChannel Switch", "FibreChannel Switch"},
        {"Rowan 5024", "A product", true, "FC-T Switch", "FC-T Switch"},
        {"Rowan Blade", "Rowan 4Gb Blade", true, "Rowan 4Gb Blade", "FC-T Switch"},
        {"Rowan Blade", "   ", false, "", "FibreChannel Switch"},
    };
    for (const Row& row : rows)
    {
        Description one = localWith(
            [&](SwitchScenario& facts)
            {
                facts.type = row.type;
                facts.productName = row.productName;
                facts.transparent = row.transparent;
            });
        EXPECT_EQ(one["Description"], row.local) << row.type << ", " << row.productName;
        EXPECT_EQ(published(2)["Description"], row.remote) << row.type << ", " << row.productName;
        for (std::size_t position : {1u, 2u})
        {
            Description any = published(position);
            EXPECT_EQ(any["Dedicated"], row.transparent ? "[2]" : "[5]");
            EXPECT_EQ(any.count("IdentifyingDescriptions"), row.transparent ? 0u : 1u);
            EXPECT_EQ(any["OtherDedicatedDescriptions"], row.transparent ? "[FC-T Switch]" : "");
        }
    }
    const std::string longest(128, 'n');
    const auto become = [&](SwitchScenario& facts)
    { facts.type = "Rowan Blade", facts.productName = longest; };
    EXPECT_EQ(localWith(become)["Description"], longest);
    clock.outlive();
    sim.failNext("VPD_Client::read_product_name");
    EXPECT_EQ(local()["Description"], "FibreChannel Switch");
}

TEST_F(Switches, FailuresOfTheLoad)
{
    const std::string origin = "Exception[CRIT]:" + kOrigin + "load[] ";
    sim.refuseCacheLock();
    expectLoadFails<VRAX_FCSwitch_Provider>(origin + "Unable to obtaion datacache rdlock");
    const std::string unreadable = origin + "Unable to obtain FCSwitch attributes";
    sim.failNext("xpl_smlGetBatch", 1, XPL_UNREACHABLE, 2);
    expectLoadFails<VRAX_FCSwitch_Provider>(unreadable);
    for (const char* key : {"Oper.Switch.Type", "Oper.Fabric.Entry.7.SymNodeName"})
    {
        sim.failNext(key);
        expectLoadFails<VRAX_FCSwitch_Provider>(unreadable);
    }
    sim.answer("Oper.Fabric.Entry.7.WWN", "");
    const char* const keyless = "VRAX_FCSwitch::One or more Key Properties are not populated";
    expectLoadFails<VRAX_FCSwitch_Provider>(origin + keyless);
    sim.answer("Oper.Fabric.Entry.7.WWN", kLocalWwn);
    expectLoadFails<VRAX_FCSwitch_Provider>(origin + "Failed to insert instance in the map");
    sim.restore();
    expectStepsFail<VRAX_FCSwitch_Provider>(
        origin, {"VRAX_FCSwitch instance creation failed", keyless, nullptr}, 1);
    EXPECT_EQ(instances<VRAX_FCSwitch_Provider>().size(), 3u);
}

} // namespace
} // namespace cimple
