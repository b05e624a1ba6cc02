// Tests of the guard around operations, of result tables and of what the shapes of classes leave to a class.
#include "common/Local_Port_Provider.h"
#include "common/Unmapped_Provider.h"
#include "common/results.h"
#include "tests/common/testing/Switch_Test.h"

#include "VRAX_CIMXMLCommunicationMechanism.h"
#include "VRAX_FCPortRateStatistics.h"
#include "VRAX_StorageConfigurationService.h"

#include <stdexcept>

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

TEST(OperationTest, EndsInOneStatusOneLogLineAndOneReason)
{
    typedef Operation<int> Op;
    const struct
    {
        const char* what;
        std::function<int(Op&)> body;
        int status;
        const char* logged; // null: nothing
        const char* reason; // for the client
    } rows[] = {
        {"done", [](Op&) { return 0; }, 0, nullptr, ""},
        {"refused without a word", [](Op&) { return 3; }, 3, nullptr, ""},
        {"failure",
         [](Op& op) -> int {
             op.fail("no %s in %s", {"port", "2"});
         },
         9,
         "Exception[CRIT]:x/Y:work[] no port in 2",
         "no port in 2"},
        {"failure as a line",
         [](Op& op) -> int {
             op.fail(Failure_Text::line("no %2$s"), {"a", "b"});
         },
         9,
         "CRIT:x/Y:work[] no b",
         "no b"},
        {"blanks for the log's sake",
         [](Op& op) -> int { op.fail(Failure_Text::line("\n none \n")); },
         9,
         "CRIT:x/Y:work[] \n none \n",
         "none"},
        {"a percent sign",
         [](Op& op) -> int { op.fail("%s", {"100%d"}); },
         9,
         "Exception[CRIT]:x/Y:work[] 100%d",
         "100%d"},
        {"a failure that is no alarm",
         [](Op& op) -> int { op.fail(Failure_Text::info("gone")); },
         9,
         nullptr, // below the critical level
         "gone"},
        {"silent failure", [](Op& op) -> int { op.fail(Failure_Text::silent()); }, 9, nullptr, ""},
        {"another status",
         [](Op& op) -> int { op.failWith(4, "why"); },
         4,
         "Exception[CRIT]:x/Y:work[] why",
         "why"},
        {"exception", [](Op&) -> int { throw std::runtime_error("odd"); }, 9, "CRIT:x/Y:work[] odd", "odd"},
        {"out of memory",
         [](Op&) -> int { throw std::bad_alloc(); },
         9,
         "CRIT:x/Y:work[] std::bad_alloc",
         "std::bad_alloc"},
    };
    for (const auto& row : rows)
    {
        Error::clear();
        const Log_Capture log;
        int tidied = 0;
        EXPECT_EQ(Op("x/Y", "work", 9).run(row.body, [&] { ++tidied; }), row.status) << row.what;
        EXPECT_EQ(tidied, row.status == 0 || row.status == 3 ? 0 : 1) << row.what;
        EXPECT_EQ(log.texts(), row.logged != nullptr ? Texts{row.logged} : Texts()) << row.what;
        EXPECT_STREQ(Error::get(), row.reason) << row.what;
    }
    Error::clear();
}

TEST(ResultTables, GiveTheFirstRowThatFits)
{
    constexpr State_Change kStates[] = {{2, State_Action::SetAdminState, 1, "on\n"},
                                        {3, State_Action::Refuse, 0, nullptr}};
    constexpr Method_Result kResults[] = {{0, nullptr, 10}, {5, "gone\n", 11}, {kAnyOther, "odd = %d\n", 12}};
    const Log_Capture log(kLogInfo);
    EXPECT_EQ(stateChange(kStates, 2), &kStates[0]);
    EXPECT_EQ(stateChange(kStates, 3), &kStates[1]);
    EXPECT_EQ(stateChange(kStates, 4), nullptr);
    EXPECT_EQ(conclude(kResults, 0), 10u);
    EXPECT_EQ(conclude(kResults, 5), 11u);
    EXPECT_EQ(conclude(kResults, -5), 12u);
    EXPECT_EQ(log.texts(), (Texts{"on", "gone", "odd = -5"}));
}

// Publishes one instance with the defaults of the schema and one without.
class Defaults_Provider : public Instance_Provider_Base<Defaults_Provider, VRAX_CIMXMLCommunicationMechanism>
{
  public:
    static constexpr const char* kSource = "testProviders/Defaults_Provider";
    static constexpr bool kChecksKeys = false;
    void build(Map_Writer<VRAX_CIMXMLCommunicationMechanism>& map)
    {
        Owned<VRAX_CIMXMLCommunicationMechanism> one = make();
        one->Name.set("null");
        add(map, one);
        one = makeDefaulted();
        add(map, one);
    }
};

// A class that says more than the real ones: it names its ports in a second key and in each text.
class Rates_Provider : public Local_Port_Provider_Base<Rates_Provider, VRAX_FCPortRateStatistics>
{
  public:
    static constexpr const char* kSource = "testProviders/Rates_Provider";
    static constexpr Attribute<VRAX_FCPortRateStatistics> kAttributes[] = {
        {"Oper.Switch.Echo.%1$s-%2$s", put<&VRAX_FCPortRateStatistics::Description>},
    };
    static constexpr Failure_Text kReadFailed = "%s unread";
    static constexpr Failure_Text kUnnamed = "%s unnamed";
    static constexpr const char* kIdPrefix = "P:";
    static constexpr const char* kElementName = "rates";
    static const char* keyArgument(const Loaded_Port& port) { return port.index == "1" ? "one" : "other"; }
    static void fill(VRAX_FCPortRateStatistics& rates,
                     const Attribute_Reader<VRAX_FCPortRateStatistics>& attributes,
                     const Datetime&)
    {
        rates.Caption.set(attributes.text(0));
    }
};

class Absent_Provider : public Unmapped_Provider_Base<Absent_Provider, VRAX_StorageConfigurationService>
{
  public:
    static constexpr const char* kSource = "testProviders/Absent_Provider";
};

class Shapes : public Switch_Test
{
};

TEST_F(Shapes, OfInstancesWithDefaultsAndWithout)
{
    const std::vector<Description> both = instances<Defaults_Provider>();
    EXPECT_EQ(both.at(0), (Description{{"Name", "null"}}));
    EXPECT_EQ(both.at(1).at("RequestedState"), "12");
}

TEST_F(Shapes, OfLocalPorts)
{
    sim.open(simulator::SimSwitch::make().ports(2).scenario());
    const auto port = [](const char* wwn, const char* echo)
    {
        return Description{{"InstanceID", std::string("P:100002a5c0de0001:") + wwn},
                           {"ElementName", "rates"},
                           {"Description", echo},
                           {"Caption", echo}};
    };
    EXPECT_EQ(
        instances<Rates_Provider>(),
        (std::vector<Description>{port("200002a5c0de0001", "0-other"), port("200102a5c0de0001", "1-one")}));
    const std::string origin = "Exception[CRIT]:testProviders/Rates_Provider:load[] ";
    sim.failNext("xpl_smlGetBatch", 1, XPL_UNREACHABLE, 1);
    expectLoadFails<Rates_Provider>(origin + "1 unread");
    sim.failNext("DataCache::calcPortWwn");
    expectLoadFails<Rates_Provider>(origin + "0 unnamed");
}

TEST_F(Shapes, OfAClassWithoutAMap)
{
    Absent_Provider provider;
    EXPECT_EQ(provider.load(), LOAD_OK);
    EXPECT_EQ(provider.unload(), UNLOAD_OK);
    VRAX_StorageConfigurationService* found = nullptr;
    EXPECT_EQ(provider.get_instance(nullptr, found), GET_INSTANCE_UNSUPPORTED);
    EXPECT_EQ(serve(provider).status, ENUM_INSTANCES_OK);
}

// A change of several properties of a cached instance: the others stay, and so does what is being answered.
TEST_F(Shapes, OfChangesToCachedInstances)
{
    instances<Rates_Provider>();
    Write_Guard<VRAX_FCPortRateStatistics> guard;
    const VRAX_FCPortRateStatistics* cached = guard.view().first();
    ref(cached);
    const Ref<VRAX_FCPortRateStatistics> held(const_cast<VRAX_FCPortRateStatistics*>(cached));
    const Owned<VRAX_FCPortRateStatistics> request(
        static_cast<VRAX_FCPortRateStatistics*>(key_clone(cached)));
    request->Caption.set("new");
    request->RxRate.set(5);
    request->ElementName.set("not in the model");
    const Owned<VRAX_FCPortRateStatistics> model(static_cast<VRAX_FCPortRateStatistics*>(key_clone(cached)));
    model->Caption.null = 0;
    model->RxRate.null = 0;
    Description expected = described(*cached);
    const Description former = expected;
    expected["Caption"] = "new";
    expected["RxRate"] = "5";
    const std::uint32_t loads = VRAX_Maps::getInstance()->loadCount(Rates_Provider::kIndex);
    EXPECT_TRUE(guard.change(*model, *request));
    EXPECT_EQ(described(*guard.view().first()), expected);
    EXPECT_EQ(described(*held.ptr()), former);
    EXPECT_NE(VRAX_Maps::getInstance()->loadCount(Rates_Provider::kIndex), loads)
        << "associations are built again";
    EXPECT_TRUE(Rates_Provider::isCurrent());

    // Instances that come and go with what a client does.
    const std::size_t size = guard.view().size();
    EXPECT_TRUE(guard.remove(*model));
    EXPECT_FALSE(guard.remove(*model));
    EXPECT_FALSE(guard.change(*model, *request));
    EXPECT_EQ(guard.view().size(), size - 1);
    Owned<VRAX_FCPortRateStatistics> again(static_cast<VRAX_FCPortRateStatistics*>(clone(held.ptr())));
    EXPECT_TRUE(guard.insert(again));
    again.reset(static_cast<VRAX_FCPortRateStatistics*>(clone(held.ptr())));
    EXPECT_FALSE(guard.insert(again));
    EXPECT_EQ(VRAX_Maps::getInstance()->loadCount(Rates_Provider::kIndex), loads + 3);
}

} // namespace
} // namespace cimple
