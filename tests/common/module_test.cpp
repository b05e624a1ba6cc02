// Tests of the module as a CIM server sees it: the shared library, loaded and driven through CMPI.
#include "simulator/testing/SimSwitch.h"
#include "test_client.h"

#include <cimple/cimple.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include <dlfcn.h>

#include <gtest/gtest.h>

using simulator::SimSwitch;
using test_broker::Broker;
using test_broker::Client;
using test_broker::Factories;
using test_broker::Factory;
using test_broker::Outcome;

namespace
{

// The module stays loaded, as in a server.
void* library()
{
    static void* const handle = dlopen(VRAX_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
    return handle;
}

// Null when the module does not export it.
Factory factory(const std::string& name)
{
    return reinterpret_cast<Factory>(dlsym(library(), name.c_str()));
}

Factories factories(const std::string& prefix)
{
    Factories result;
    result.instance = factory(prefix + "_Create_InstanceMI");
    result.method = factory(prefix + "_Create_MethodMI");
    result.association = factory(prefix + "_Create_AssociationMI");
    result.indication = factory(prefix + "_Create_IndicationMI");
    return result;
}

class Module : public testing::Test
{
  protected:
    Module() : sim(SimSwitch::make()) {}

    void SetUp() override { ASSERT_NE(library(), nullptr) << dlerror(); }
    // A server's cleanup empties the maps, so that the next test reads its own switch.
    void TearDown() override
    {
        for (const std::unique_ptr<Client>& one : clients)
            EXPECT_TRUE(one->cleanup().ok());
        EXPECT_EQ(broker.violations(), "");
        EXPECT_EQ(sim.outstandingBlocks(), 0u);
    }

    Client& client(const std::string& className)
    {
        clients.push_back(std::make_unique<Client>(broker, factories(className)));
        return *clients.back();
    }
    static std::string path(const char* className) { return std::string("root/interop:") + className; }

    SimSwitch sim;
    Broker broker;
    std::vector<std::unique_ptr<Client>> clients;
};

enum Kind
{
    INSTANCE,
    ASSOCIATION,
    INDICATION
};

TEST_F(Module, ExportsTheFactoriesOfEachKindUnderBothNamesAndNothingElse)
{
    struct Row
    {
        Kind kind;
        const char* className;
    };
    const Row rows[] = {
#define VRAX_PROVIDER(kind, folder, cls) {kind, #cls},
#include "common/providers.def"
#undef VRAX_PROVIDER
    };
    std::set<std::string> registered;
    for (const Row& row : rows)
    {
        registered.insert(row.className);
        for (const char* suffix : {"", "_Provider"})
        {
            const Factories found = factories(std::string(row.className) + suffix);
            EXPECT_EQ(found.instance != nullptr, row.kind != INDICATION) << row.className << suffix;
            EXPECT_NE(found.method, nullptr) << row.className << suffix;
            EXPECT_EQ(found.association != nullptr, row.kind == ASSOCIATION) << row.className << suffix;
            EXPECT_EQ(found.indication != nullptr, row.kind == INDICATION) << row.className << suffix;
        }
    }

    const auto module = reinterpret_cast<cimple::Module_Proc>(dlsym(library(), "cimple_module"));
    ASSERT_NE(module, nullptr);
    std::set<std::string> listed;
    for (const cimple::Registration* one = module(); one != nullptr; one = one->next)
        EXPECT_TRUE(listed.insert(one->meta_class->name).second) << one->meta_class->name;
    EXPECT_EQ(listed, registered);

    for (const char* hidden : {"_ZN6cimple9VRAX_Maps11getInstanceEv",
                               "_ZN6cimple6createEPKNS_10Meta_ClassEb",
                               "cimple_cmpi_adapter",
                               "_Z7cim_logiPKcz"})
        EXPECT_EQ(dlsym(library(), hidden), nullptr) << hidden;
}

TEST_F(Module, ServesInstancesNamesAndMethods)
{
    Client& statistics = client("VRAX_FCPortStatistics");
    const Outcome all = statistics.enumerateInstances(path("VRAX_FCPortStatistics"));
    ASSERT_EQ(all.instances.size(), 4u) << all.message;
    EXPECT_NE(all.instances[0].find("ElementName=\"FC Port Statistics\""), std::string::npos);
    const Outcome names = statistics.enumerateInstanceNames(path("VRAX_FCPortStatistics"));
    ASSERT_EQ(names.paths.size(), 4u);
    EXPECT_EQ(statistics.getInstance(names.paths[2]).texts().at(0), all.texts().at(2));
    EXPECT_EQ(statistics.getInstance(path("VRAX_FCPortStatistics.InstanceID=\"none\"")).rc,
              CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(statistics.invokeMethod(names.paths[0], "resetselectedstats").rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(statistics.invokeMethod(names.paths[0], "MakeCoffee").rc, CMPI_RC_ERR_METHOD_NOT_FOUND);
}

// A load that fails is made once: it fails the first request, in its own words, and says so to the server's
// log.
TEST_F(Module, AFirstLoadThatFailsIsTheFirstRequestsOwn)
{
    typedef void (*Configure)(int, void (*)(int, const char*));
    const auto configure = reinterpret_cast<Configure>(dlsym(library(), "cim_log_configure"));
    ASSERT_NE(configure, nullptr);
    static std::vector<std::string> lines;
    configure(4, [](int, const char* text) { lines.emplace_back(text); });
    sim.failNext("get_Local_Switch_World_Wide_Name");
    const Outcome failed =
        client("VRAX_StatisticsCollection").enumerateInstances(path("VRAX_StatisticsCollection"));
    configure(4, nullptr);
    EXPECT_NE(failed.message.find("(status 70): Unable to retrieve localWWN"), std::string::npos)
        << failed.message;
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("Unable to retrieve localWWN"), std::string::npos) << lines[0];
}

// A modification does not load by itself; its class has been loaded before it all the same.
TEST_F(Module, AFirstRequestMayBeAModification)
{
    const Outcome modified =
        client("VRAX_FCSwitch")
            .modifyInstance(
                path("VRAX_FCSwitch.CreationClassName=\"VRAX_FCSwitch\",Name=\"100002A5C0DE0001\""),
                "VRAX_FCSwitch{ElementName=\"edge\"}");
    EXPECT_TRUE(modified.ok()) << modified.message;
}

// The server enables providers that have nothing to send it, and ends them while the module's own run.
TEST_F(Module, ItsIndicationsAreNotTheServersToEnable)
{
    typedef int (*Switch)();
    const auto start = reinterpret_cast<Switch>(dlsym(library(), "vrax_start_indications"));
    const auto stop = reinterpret_cast<Switch>(dlsym(library(), "vrax_stop_indications"));
    ASSERT_TRUE(start != nullptr && stop != nullptr);
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(start(), 0);
    Client& alerts = client("CIM_AlertIndication");
    EXPECT_TRUE(alerts.enableIndications().ok());
    EXPECT_TRUE(alerts.disableIndications().ok());
    EXPECT_TRUE(alerts.cleanup().ok());
    EXPECT_EQ(stop(), 0);
    EXPECT_EQ(stop(), 0);
}

} // namespace
