// Tests of the associations between fabric, switches, ports, endpoints and nodes: pairs, ends, failures.
#include "fabricProviders/VRAX_DeviceSAPImplementation_Provider.h"
#include "fabricProviders/VRAX_FCSwitchFCPort_Provider.h"
#include "fabricProviders/VRAX_FCSwitchProtocolEndPoint_Provider.h"
#include "fabricProviders/VRAX_FabricFCNode_Provider.h"
#include "fabricProviders/VRAX_FabricFCPort_Provider.h"
#include "fabricProviders/VRAX_FabricFCSwitch_Provider.h"
#include "fabricProviders/VRAX_FabricLogicalNetwork_Provider.h"
#include "fabricProviders/VRAX_FabricProtocolEndPoint_Provider.h"
#include "fabricProviders/VRAX_MemberOfFCNode_Provider.h"
#include "fabricProviders/VRAX_MemberOfLogicalNetwork_Provider.h"
#include "tests/fabricProviders/small_fabric.h"

namespace cimple
{
namespace
{

typedef std::vector<std::string> Texts;

constexpr const char* kPrincipalCall = "get_Principal_Switch_World_Wide_Name";
constexpr const char* kCacheCall = "DataCache::dcRdLock";

// One association: what it pairs in the small fabric, and what can keep its ends from loading.
struct Association
{
    const char* name;
    Texts pairs;          // "first-second"
    std::size_t ofALogin; // pairs that a node's login adds
    Texts endCalls;       // calls without which an end cannot load

    Served (*serve)(const std::function<void(const Instance&)>& visit);
    // What a client finds who follows the association from each of its first (or second) ends: the same
    // texts.
    Texts (*followed)(bool fromFirst);
    void (*makeEndsStale)();
    providerEnum_t map;
};

template <class PROVIDER>
Served serveAny(const std::function<void(const Instance&)>& visit)
{
    return serve<PROVIDER>([&](const typename PROVIDER::Class& one) { visit(one); });
}

template <class PROVIDER, class FIRST, class SECOND>
Texts followed(bool fromFirst)
{
    Texts found;
    serve<PROVIDER>(
        [&](const typename PROVIDER::Class& association)
        {
            const auto from = [&](const auto& ends)
            {
                for (const Instance* end : ends)
                {
                    const Instance* others[CIMPLE_MAX_REFERENCES_PER_CLASS];
                    const ssize_t count =
                        get_associators(end, &association, nullptr, nullptr, nullptr, others);
                    for (ssize_t i = 0; i < count; ++i)
                    {
                        const std::string a = small_fabric::nameOf(*end);
                        const std::string b = small_fabric::nameOf(*others[i]);
                        found.push_back(fromFirst ? a + "-" + b : b + "-" + a);
                    }
                }
            };
            fromFirst ? from(Read_Guard<FIRST>().view()) : from(Read_Guard<SECOND>().view());
        });
    return found;
}

template <class PROVIDER, class FIRST, class SECOND>
Association association(Texts pairs, std::size_t ofALogin, Texts endCalls)
{
    return {PROVIDER::Class::static_meta_class.name,
            std::move(pairs),
            ofALogin,
            std::move(endCalls),
            &serveAny<PROVIDER>,
            &followed<PROVIDER, FIRST, SECOND>,
            []
            {
                VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<FIRST>::value);
                VRAX_Maps::getInstance()->InstMapForceUnload(Map_Index<SECOND>::value);
            },
            PROVIDER::kIndex};
}

const std::vector<Association>& associations()
{
    static const std::vector<Association> all = {
        association<VRAX_FabricFCSwitch_Provider, VRAX_Fabric, VRAX_FCSwitch>(
            {"S1-S1", "S1-S2"}, 0, {kPrincipalCall, kCacheCall}),
        association<VRAX_FabricLogicalNetwork_Provider, VRAX_Fabric, VRAX_LogicalNetwork>(
            {"S1-S1"}, 0, {kPrincipalCall}),
        association<VRAX_FabricFCNode_Provider, VRAX_Fabric, VRAX_FCNode>(
            {"S1-N1", "S1-N2", "S1-N3"}, 1, {kPrincipalCall, kCacheCall}),
        association<VRAX_FabricFCPort_Provider, VRAX_Fabric, VRAX_FCPort>(
            {"S1-N1", "S1-N2", "S1-N3"}, 1, {kPrincipalCall, kCacheCall}),
        association<VRAX_FabricProtocolEndPoint_Provider, VRAX_Fabric, VRAX_ProtocolEndpoint>(
            {"S1-N1", "S1-N2", "S1-N3"}, 1, {kPrincipalCall, kCacheCall}),
        association<VRAX_FCSwitchFCPort_Provider, VRAX_FCSwitch, VRAX_FCPort>(
            {"S1-S1:P10", "S1-S1:P11", "S1-S1:P12", "S1-S1:P13", "S2-S2:P20", "S2-S2:P21", "S2-S2:P22"},
            0,
            {kCacheCall}),
        association<VRAX_FCSwitchProtocolEndPoint_Provider, VRAX_FCSwitch, VRAX_ProtocolEndpoint>(
            {"S1-P10", "S1-P11", "S1-P13", "S2-P20", "S2-P21", "S2-P22"}, 0, {kCacheCall}),
        association<VRAX_DeviceSAPImplementation_Provider, VRAX_FCPort, VRAX_ProtocolEndpoint>({"S1:P10-P10",
                                                                                                "S1:P11-P11",
                                                                                                "S1:P13-P13",
                                                                                                "N1-N1",
                                                                                                "N2-N2",
                                                                                                "S2:P20-P20",
                                                                                                "S2:P21-P21",
                                                                                                "S2:P22-P22",
                                                                                                "N3-N3"},
                                                                                               1,
                                                                                               {kCacheCall}),
        association<VRAX_MemberOfFCNode_Provider, VRAX_FCNode, VRAX_FCPort>(
            {"N1-N1", "N2-N2", "N3-N3"}, 1, {kCacheCall}),
        association<VRAX_MemberOfLogicalNetwork_Provider, VRAX_LogicalNetwork, VRAX_ProtocolEndpoint>(
            {"S1-P10", "S1-P11", "S1-P13", "S1-N1", "S1-N2", "S1-P20", "S1-P21", "S1-P22", "S1-N3"},
            1,
            {kPrincipalCall, kCacheCall}),
    };
    return all;
}

class TopologyAssociations : public Switch_Test
{
  protected:
    void SetUp() override { sim.open(small_fabric::scenario()); }

    Texts pairsOf(const Association& one)
    {
        Texts pairs;
        const Served served = one.serve([&](const Instance& association)
                                        { pairs.push_back(small_fabric::pairOf(association)); });
        EXPECT_EQ(served.status, 0) << one.name;
        return pairs;
    }
};

TEST_F(TopologyAssociations, PairWhatBelongsTogetherInTheOrderOfTheEnds)
{
    for (const Association& one : associations())
    {
        EXPECT_EQ(pairsOf(one), one.pairs) << one.name;
        sim.mark();
        EXPECT_EQ(pairsOf(one).size(), one.pairs.size());
        EXPECT_EQ(sim.platformCalls(), 0u) << one.name << " is served from the map while it is fresh";
    }
}

TEST_F(TopologyAssociations, AreFollowedFromBothEnds)
{
    for (const Association& one : associations())
    {
        EXPECT_EQ(one.followed(true), one.pairs) << one.name;
        EXPECT_EQ(one.followed(false), one.pairs) << one.name;
    }
}

TEST_F(TopologyAssociations, PairNothingWhereAnEndIsEmpty)
{
    sim.open(simulator::SimSwitch::make().ports(0).scenario());
    for (const Association& one : associations())
    {
        const bool ofTheFabricItself = one.map == VRAX_FabricFCSwitch_Provider::kIndex ||
                                       one.map == VRAX_FabricLogicalNetwork_Provider::kIndex;
        EXPECT_EQ(pairsOf(one).size(), ofTheFabricItself ? 1u : 0u) << one.name;
    }
}

TEST_F(TopologyAssociations, AreRebuiltWhenAnEndWentStale)
{
    for (const Association& one : associations())
        pairsOf(one);
    simulator::NodeScenario node;
    node.domain = 1;
    node.port = 1;
    node.portWwn = "2100aac5c0de0044";
    sim.addNode(node);
    for (const Association& one : associations())
    {
        ASSERT_TRUE(VRAX_Maps::getInstance()->InstMapIsFresh(one.map));
        one.makeEndsStale();
        EXPECT_EQ(pairsOf(one).size(), one.pairs.size() + one.ofALogin) << one.name;
    }
}

TEST_F(TopologyAssociations, FailWithTheirEndsAndRecover)
{
    for (const Association& one : associations())
    {
        for (const std::string& call : one.endCalls)
        {
            pairsOf(one);
            one.makeEndsStale();
            const Log_Capture log;
            sim.failNext(call);
            EXPECT_EQ(one.serve([](const Instance&) {}).status, ENUM_INSTANCES_FAILED)
                << one.name << " without " << call;
            EXPECT_FALSE(VRAX_Maps::getInstance()->InstMapIsFresh(one.map));
            EXPECT_EQ(pairsOf(one), one.pairs) << one.name << " after " << call;
        }
    }
}

TEST_F(TopologyAssociations, SayWhenAnInstanceCannotBeCreated)
{
    for (const Association& one : associations())
    {
        const Create_Failures failures(one.name);
        const Log_Capture log;
        EXPECT_EQ(one.serve([](const Instance&) {}).status, ENUM_INSTANCES_FAILED) << one.name;
        const std::string name = one.name;
        EXPECT_EQ(log.texts(),
                  (Texts{"Exception[CRIT]:fabricProviders/" + name +
                         "_Provider:load[] Unable to create instance of " + name}));
    }
}

} // namespace
} // namespace cimple
