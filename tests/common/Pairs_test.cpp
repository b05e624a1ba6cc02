// Tests of the verbs by which associations say what belongs together.
#include "tests/common/testing/Switch_Test.h"
#include "tests/common/testing/fake_providers.h"

#include "VRAX_ActiveConnection.h"
#include "VRAX_ProtocolEndpoint.h"

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;
typedef VRAX_ObjectManager Manager;
typedef VRAX_Namespace Name;
typedef cimple::Pairs<Pairs_Provider> Joined;

// Four endpoints, "A" to "D".
class Endpoints_Provider : public Instance_Provider_Base<Endpoints_Provider, VRAX_ProtocolEndpoint>
{
  public:
    static constexpr const char* kSource = "testProviders/Endpoints_Provider";

    void build(Map_Writer<VRAX_ProtocolEndpoint>& map)
    {
        for (const char* name : {"A", "B", "C", "D"})
        {
            Owned<VRAX_ProtocolEndpoint> endpoint = make();
            endpoint->SystemCreationClassName.set("VRAX_FCSwitch");
            endpoint->SystemName.set("S");
            endpoint->CreationClassName.set("VRAX_ProtocolEndpoint");
            endpoint->Name.set(name);
            add(map, endpoint);
        }
    }
};

// Both roles are for endpoints; pairs have a further property, and two reports of one pair are a failure.
class Links_Provider : public Association_Provider_Base<Links_Provider,
                                                        VRAX_ActiveConnection,
                                                        &VRAX_ActiveConnection::Antecedent,
                                                        &VRAX_ActiveConnection::Dependent,
                                                        Endpoints_Provider>
{
  public:
    static constexpr const char* kSource = "testProviders/Links_Provider";
    static constexpr Failure_Text kInsertionFailed = "two reports of one link";
    typedef Script<VRAX_ActiveConnection, Pairs> Played;

    void build(Pairs& pairs) { Played::play(pairs); }
    static void
    fill(VRAX_ActiveConnection& link, const VRAX_ProtocolEndpoint& first, const VRAX_ProtocolEndpoint& second)
    {
        String ends(first.Name.value);
        ends.append(second.Name.value);
        link.OtherTrafficDescription.set(ends);
    }
};

class PairsTest : public Switch_Test
{
  protected:
    typedef Pairs_Provider::Played::Build Build;

    void SetUp() override
    {
        resetFakeProviders();
        sim.open(simulator::SimSwitch::make().wwn("10000000c9000001").scenario());
        Script<Name>::instead = [](Map_Writer<Name>& map)
        {
            for (const char* name : {"root/a", "root/b", "root/B"})
                Names_Provider::insert(map, name);
        };
    }
    void TearDown() override
    {
        resetFakeProviders();
        Links_Provider::Played::reset();
    }

    // What a build joins: the names of the namespaces, behind their managers'.
    static Texts joined(const Build& build)
    {
        makeMapsStale();
        Pairs_Provider::Played::instead = build;
        Texts names;
        const Served served = serve<Pairs_Provider>(
            [&](const VRAX_NamespaceInManager& pair)
            {
                EXPECT_EQ(described(pair),
                          (Description{{"Antecedent", "-> VRAX_ObjectManager"},
                                       {"Dependent", "-> VRAX_Namespace"}}));
                names.push_back(pair.Dependent->Name.value.c_str());
            });
        if (served.status != ENUM_INSTANCES_OK)
            names.push_back("failed");
        return names;
    }
    static Texts linked(const Links_Provider::Played::Build& build)
    {
        makeMapsStale();
        Links_Provider::Played::instead = build;
        Texts links;
        serve<Links_Provider>(
            [&](const VRAX_ActiveConnection& link)
            {
                const std::string ends =
                    std::string(link.Antecedent->Name.value.c_str()) + link.Dependent->Name.value.c_str();
                EXPECT_EQ(link.OtherTrafficDescription.value, ends.c_str())
                    << "filled in the order of the roles";
                EXPECT_TRUE(link.TrafficType.null);
                links.push_back(ends + (link.IsUnidirectional.null ? "" : "!"));
            });
        return links;
    }
};

TEST_F(PairsTest, JoinWhatTheVerbSays)
{
    const auto isB = [](const Name& one) { return one.Name.value == "root/b"; };
    const auto nameOf = [](const Name& one) { return one.Name.value.c_str(); };
    const auto managers = [](auto text) { return [text](const Manager&) { return text; }; };
    const auto equal = [](auto ofManager, auto ofName)
    { return Build([=](Joined& p) { p.equal<Manager, Name>(ofManager, ofName); }); };
    const auto equalTwo = [](auto ofName, Two_Texts ofManager)
    {
        return Build([=](Joined& p)
                     { p.equal<Name, Manager>(ofName, [=](const Manager&) { return ofManager; }); });
    };
    const auto firstOfBoth = [](Joined& p) { p.first<Manager>().withFirst<Name>(); };
    const Texts all = {"root/a", "root/b", "root/B"};
    const struct
    {
        const char* what;
        Build build;
        Texts joined;
    } rows[] = {
        {"first with first", firstOfBoth, {"root/a"}},
        {"named backwards", [](Joined& p) { p.first<Name>().withFirst<Manager>(); }, {"root/a"}},
        {"with each", [](Joined& p) { p.first<Manager>().withEach<Name>(); }, all},
        {"with some", [&](Joined& p) { p.first<Manager>().withEach<Name>(isB); }, {"root/b"}},
        {"the local one", [](Joined& p) { p.local<Manager>().withEach<Name>(); }, all},
        {"text keys in any case", equal(managers("ROOT/b"), nameOf), {"root/b", "root/B"}},
        {"whole texts only", equal(managers("root/"), nameOf), {}},
        {"no text key", equal(managers(static_cast<const char*>(nullptr)), nameOf), {}},
        {"left out by their text key",
         equal(managers("x"), [&](const Name& one) { return isB(one) ? "X" : nullptr; }),
         {"root/b"}},
        {"two texts",
         equalTwo(
             [&](const Name& one) {
                 return Two_Texts{isB(one) ? "s" : "t", nameOf(one)};
             },
             {"S", "ROOT/B"}),
         {"root/b"}},
        {"two texts without the first",
         equalTwo(
             [](const Name&) {
                 return Two_Texts{nullptr, "k"};
             },
             {nullptr, "k"}),
         {}},
        {"computed texts",
         equal(managers(std::string("B")), [&](const Name& one) { return std::string(nameOf(one) + 5); }),
         {"root/b", "root/B"}},
        {"empty computed texts",
         equal(managers(std::string()), [](const Name&) { return std::string(); }),
         {}},
        {"a pair twice", [&](Joined& p) { firstOfBoth(p), firstOfBoth(p); }, {"root/a"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(joined(row.build), row.joined) << row.what;

    Script<Name>::instead = [](Map_Writer<Name>&) {};
    EXPECT_EQ(joined(rows[0].build), Texts()) << "no first one to join with";
    EXPECT_EQ(joined(rows[1].build), Texts()) << "no first one";
}

TEST_F(PairsTest, KnowTheLocalSwitchByItsWwn)
{
    const Build build = [](auto& p) { p.template local<Manager>().template withFirst<Name>(); };
    sim.open(simulator::SimSwitch::make().wwn("10000000c9000002").scenario());
    EXPECT_EQ(joined(build), Texts()) << "another one";
    const Log_Capture log;
    sim.failNext("get_Local_Switch_World_Wide_Name");
    EXPECT_EQ(joined(build), Texts{"failed"});
    EXPECT_EQ(log.texts(),
              Texts{"Exception[CRIT]:testProviders/Pairs_Provider:load[] Unable to retrieve localWWN"});
}

TEST_F(PairsTest, AreMadeAndAddedInTwoSteps)
{
    EXPECT_EQ(linked(
                  [](auto& p)
                  {
                      const auto& all = p.template all<VRAX_ProtocolEndpoint>();
                      const VRAX_ProtocolEndpoint *a = *all.begin(), *b = *++all.begin();
                      p.join(*b, *a); // the first named takes the first role
                      auto link = p.make(*a, *b);
                      link->IsUnidirectional.set(true);
                      p.add(link);
                  }),
              (Texts{"BA", "AB!"}));
    // An end that no map holds lives on in its pair.
    EXPECT_EQ(linked(
                  [](auto& p)
                  {
                      const VRAX_ProtocolEndpoint* a = p.template first<VRAX_ProtocolEndpoint>().get();
                      const Owned<VRAX_ProtocolEndpoint> own(static_cast<VRAX_ProtocolEndpoint*>(clone(a)));
                      own->Name.set("C");
                      p.join(*own, *a);
                  }),
              Texts{"CA"});
}

TEST_F(PairsTest, FailWithoutABadPair)
{
    const std::string origin = "Exception[CRIT]:testProviders/";
    const Log_Capture log;
    EXPECT_EQ(
        linked(
            [](auto& p)
            {
                for (int i = 0; i < 2; ++i)
                    p.template first<VRAX_ProtocolEndpoint>().template withFirst<VRAX_ProtocolEndpoint>();
            }),
        Texts());
    EXPECT_EQ(log.texts(), Texts{origin + "Links_Provider:load[] two reports of one link"});
    EXPECT_EQ(joined([](auto& p) { p.template first<Manager>().template withFirst<Manager>(); }),
              Texts{"failed"});
    EXPECT_EQ(log.texts(),
              Texts{origin + "Pairs_Provider:load[] VRAX_NamespaceInManager cannot refer to an instance of "
                             "VRAX_ObjectManager"});
}

} // namespace
} // namespace cimple
