// From the making of interfaces to cleanup: loading, unloading, and many threads at once.
#include <cimple/cimom.h>

#include <stdexcept>
#include <thread>

#include "adapter_fixture.h"
#include "latch.h"

namespace adapter_test
{
namespace
{

class LifeCycle : public AdapterTest
{
  protected:
    Script& racks = script<Demo_Rack>();
};

TEST_F(LifeCycle, TheProviderLivesFromTheFirstInterfaceToTheLast)
{
    Client provider(broker, rackProvider);
    EXPECT_EQ(racks.alive, 1);
    EXPECT_EQ(racks.loads, 1); // once for both interfaces
    const auto cleanup = [&](auto* mi)
    {
        return broker
            .call([&](auto* c, auto*) { return mi->ft->cleanup(mi, c, 0); },
                  test_broker::Broker::kWithoutResult)
            .rc;
    };
    EXPECT_EQ(cleanup(provider.instances), CMPI_RC_OK);
    EXPECT_EQ(racks.alive, 1);
    EXPECT_TRUE(provider.enumerateInstances(classPath("Demo_Rack")).ok()); // brokers may go on
    EXPECT_EQ(cleanup(provider.instances), CMPI_RC_OK);                    // and repeat themselves
    EXPECT_EQ(racks.alive, 1);
    EXPECT_EQ(cleanup(provider.methods), CMPI_RC_OK);
    EXPECT_EQ(racks.alive, 0);
    EXPECT_EQ(racks.unloads, 1);

    // Even then an interface works: the library is not unloaded yet.
    racks.instances = {rack("r1")};
    EXPECT_EQ(provider.enumerateInstances(classPath("Demo_Rack")).texts(), Texts{"Demo_Rack{Name=\"r1\"}"});
    EXPECT_EQ(racks.alive, 1);
    EXPECT_EQ(provider.cleanup().rc, CMPI_RC_OK);
    EXPECT_EQ(racks.alive, 0);
}

TEST_F(LifeCycle, AFailedLoadIsReportedUntilOneSucceeds)
{
    racks.load = LOAD_FAILED;
    racks.instances = {rack("r1")};
    Client& provider = client(rackProvider);
    ASSERT_NE(provider.instances, nullptr);
    EXPECT_EQ(provider.enumerateInstances(classPath("Demo_Rack")).texts(),
              Texts{"1: Demo_Rack: enumerate instances: load failed (status 30)"});
    EXPECT_EQ(provider.getInstance(rackPath("r1")).rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(racks.enumerations, 0);
    racks.insideLoad = [] { throw std::runtime_error("no switch"); };
    EXPECT_EQ(provider.getInstance(rackPath("r1")).texts(),
              Texts{"1: Demo_Rack: get instance: exception: no switch"});
    // What the provider would not do even if it were loaded it refuses itself.
    racks.status = DELETE_INSTANCE_UNSUPPORTED;
    EXPECT_EQ(provider.deleteInstance(rackPath("r1")).rc, CMPI_RC_ERR_NOT_SUPPORTED);
    racks.status = 0;
    racks.insideLoad = nullptr;
    racks.load = LOAD_OK;
    const int loads = racks.loads;
    EXPECT_TRUE(provider.enumerateInstances(classPath("Demo_Rack")).ok());
    EXPECT_TRUE(provider.enumerateInstances(classPath("Demo_Rack")).ok());
    EXPECT_EQ(racks.loads, loads + 1);
}

TEST_F(LifeCycle, WhatWasNotLoadedIsNotUnloaded)
{
    racks.load = LOAD_FAILED;
    Client provider(broker, rackProvider);
    EXPECT_TRUE(provider.cleanup().ok());
    EXPECT_EQ(racks.unloads, 0);
    EXPECT_EQ(racks.alive, 0);
}

TEST_F(LifeCycle, AFailedUnloadIsReportedAndTheProviderGoes)
{
    racks.unload = UNLOAD_FAILED;
    Client provider(broker, rackProvider);
    EXPECT_EQ(provider.cleanup().texts(), Texts{"1: Demo_Rack: cleanup: unload failed (status 40)"});
    EXPECT_EQ(racks.alive, 0);
}

TEST_F(LifeCycle, WithoutAProviderObjectThereIsNoInterface)
{
    racks.insideCreate = [] { throw std::runtime_error("no memory"); };
    Client provider(broker, rackProvider);
    EXPECT_EQ(provider.instances, nullptr);
    EXPECT_EQ(provider.methods, nullptr);
    racks.insideCreate = nullptr;
    EXPECT_NE(client(rackProvider).instances, nullptr);
}

TEST_F(LifeCycle, AProviderMayRefuseToBeUnloaded)
{
    racks.inside = [] { cimom::allow_unload(false); };
    Client& provider = client(rackProvider);
    provider.enumerateInstances(classPath("Demo_Rack"));
    EXPECT_EQ(provider.cleanup().rc, CMPI_RC_DO_NOT_UNLOAD);
    EXPECT_EQ(racks.alive, 1);
    racks.inside = [] { cimom::allow_unload(true); };
    EXPECT_TRUE(provider.enumerateInstances(classPath("Demo_Rack")).ok());
    EXPECT_TRUE(provider.cleanup().ok());
    EXPECT_EQ(racks.alive, 0);
}

TEST_F(LifeCycle, CleanupFromInsideACallIsRefused)
{
    Client& provider = client(rackProvider);
    CMPIrc rc = CMPI_RC_OK;
    racks.inside = [&] { rc = provider.cleanup(true).rc; };
    EXPECT_TRUE(provider.enumerateInstances(classPath("Demo_Rack")).ok());
    EXPECT_EQ(rc, CMPI_RC_DO_NOT_UNLOAD);
}

TEST_F(LifeCycle, CallsOfOneProviderRunInParallel)
{
    racks.keepModels = false;
    Latch together(2);
    racks.inside = [&] { together.arriveAndWait(); };
    Client& provider = client(rackProvider);
    std::thread other([&] { EXPECT_TRUE(provider.enumerateInstances(classPath("Demo_Rack")).ok()); });
    EXPECT_EQ(provider.getInstance(rackPath("r1")).rc, CMPI_RC_ERR_NOT_FOUND);
    other.join();
}

TEST_F(LifeCycle, CleanupWaitsForCallsInFlight)
{
    racks.keepModels = false;
    Latch inside;
    Latch cleaning;
    std::atomic<bool> finished{false};
    racks.inside = [&]
    {
        inside.arrive();
        cleaning.wait();
        for (int i = 0; i < 1000; i++)
            std::this_thread::yield();
        EXPECT_EQ(racks.alive, 1);
        finished = true;
    };
    Client provider(broker, rackProvider);
    std::thread caller([&] { EXPECT_TRUE(provider.enumerateInstances(classPath("Demo_Rack")).ok()); });
    inside.wait();
    cleaning.arrive();
    EXPECT_TRUE(provider.cleanup().ok());
    EXPECT_TRUE(finished);
    EXPECT_EQ(racks.alive, 0);
    caller.join();
}

TEST_F(LifeCycle, InterfacesMayBeMadeByManyThreads)
{
    Latch together(8);
    std::vector<std::unique_ptr<Client>> clients(8);
    std::vector<std::thread> threads;
    for (auto& made : clients)
        threads.emplace_back(
            [&]
            {
                together.arriveAndWait();
                made = std::make_unique<Client>(broker, rackProvider);
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(racks.alive, 1);
    EXPECT_EQ(racks.loads, 1);
    for (auto& made : clients)
        EXPECT_EQ(made->instances, clients[0]->instances);
    EXPECT_TRUE(clients[0]->cleanup().ok());
    EXPECT_EQ(racks.alive, 0);
}

TEST_F(LifeCycle, CleanupRacesWithCalls)
{
    racks.keepModels = false;
    racks.instances = {rack("r1"), rack("r2")};
    racks.inside = [&] { EXPECT_GE(racks.alive, 1); };
    Client& provider = client(rackProvider);
    Latch together(9);
    std::vector<std::thread> threads;
    for (int n = 0; n < 8; n++)
        threads.emplace_back(
            [&, n]
            {
                together.arriveAndWait();
                for (int i = 0; i < 200; i++)
                {
                    const Outcome outcome = n % 2 ? provider.enumerateInstances(classPath("Demo_Rack"))
                                                  : provider.enumerateInstanceNames(classPath("Demo_Rack"));
                    EXPECT_EQ(outcome.texts().size(), 2u) << outcome.message;
                }
            });
    together.arriveAndWait();
    for (int i = 0; i < 100; i++)
        EXPECT_TRUE(provider.cleanup().ok());
    for (std::thread& thread : threads)
        thread.join();
    for (const Ref<Instance>& instance : racks.instances)
        EXPECT_EQ(instance.count(), 1u);
}

// --- up-calls: the provider as a client of the server

class UpCalls : public AdapterTest
{
  protected:
    // Runs as a method of the lab, so with a context.
    Outcome asProvider(const std::function<void()>& body)
    {
        script<Demo_Lab>().method = [&](Instance*) { body(); };
        return client(labProvider).invokeMethod(classPath("Demo_Lab"), "Count");
    }
};

TEST_F(UpCalls, AllOperationsReachTheOtherProvider)
{
    Client& elements = client(elementProvider);
    Client& sensors = client(sensorProvider);
    broker.route("Demo_Element", elements.instances, elements.methods);
    broker.route("Demo_Sensor", sensors.instances, sensors.methods);
    script<Demo_Sensor>().method = [](Instance* object)
    {
        auto* method = static_cast<Demo_Sensor_Calibrate_method*>(object);
        method->Drift.set(static_cast<sint32>(method->Target.value) * 2);
        method->return_value.set(0);
    };
    const Outcome outcome = asProvider(
        [&]
        {
            Demo_Element* element = Demo_Element::create(true);
            const Ref<Instance> owned(static_cast<Instance*>(element));
            element->Id.set(7);
            element->Label.set("inlet");
            EXPECT_EQ(cimom::create_instance("root/demo", element), 0);
            EXPECT_EQ(cimom::create_instance("root/demo", element), -1); // it exists
            EXPECT_EQ(cimom::create_instance("root/demo", demo::element(8).ptr()), 0);
            element->Label.set("outlet");
            EXPECT_EQ(cimom::modify_instance("root/demo", element), 0);

            const Ref<Instance> found = cimom::get_instance("root/demo", element);
            ASSERT_TRUE(found);
            EXPECT_NE(demo::text_of(found.ptr()).find("outlet"), std::string::npos);

            size_t count = 0;
            Instance_Enumerator all;
            EXPECT_EQ(cimom::enum_instances("root/demo", element, all), 0);
            for (; all; all++)
            {
                EXPECT_EQ(all()->meta_class, &Demo_Element::static_meta_class);
                count++;
            }
            EXPECT_EQ(count, 2u);
            EXPECT_EQ(cimom::delete_instance("root/demo", element), 0);
            EXPECT_FALSE(cimom::get_instance("root/demo", element));

            const Ref<Instance> self = sensor(7);
            Demo_Sensor_Calibrate_method* method = Demo_Sensor_Calibrate_method::create();
            const Ref<Instance> ownedMethod(static_cast<Instance*>(method));
            method->Target.set(21);
            method->Where = static_cast<Demo_Rack*>(rack("r1").steal());
            EXPECT_EQ(cimom::invoke_method("root/demo", self.ptr(), method), 0);
            EXPECT_EQ(method->Drift.value, 42);
            EXPECT_TRUE(method->return_value.null == 0 && method->Target.null != 0);

            String user;
            EXPECT_TRUE(cimom::get_username(user));
            EXPECT_EQ(user, "operator");
        });
    EXPECT_TRUE(outcome.ok()) << outcome.message;
}

TEST_F(UpCalls, AFailureInTheMiddleOfAnEnumerationIsNoShortAnswer)
{
    Client& elements = client(elementProvider);
    broker.route("Demo_Element", elements.instances, nullptr);
    script<Demo_Element>().instances = {sensor(7)};
    script<Demo_Element>().status = ENUM_INSTANCES_FAILED; // after the first was handed over
    EXPECT_TRUE(asProvider(
                    []
                    {
                        const Ref<Instance> model(static_cast<Instance*>(Demo_Element::create(true)));
                        Instance_Enumerator all;
                        EXPECT_EQ(cimom::enum_instances("root/demo", model.ptr(), all), -1);
                        EXPECT_FALSE(all);
                    })
                    .ok());
}

TEST_F(UpCalls, ACallMayComeBackToTheSameProvider)
{
    Client& racks = client(rackProvider);
    broker.route("Demo_Rack", racks.instances, nullptr);
    script<Demo_Rack>().instances = {rack("r1")};
    bool nested = false;
    script<Demo_Rack>().inside = [&]
    {
        if (std::exchange(nested, true))
            return;
        EXPECT_TRUE(cimom::get_instance("root/demo", rack("r1").ptr()));
    };
    EXPECT_TRUE(racks.enumerateInstances(classPath("Demo_Rack")).ok());
    EXPECT_TRUE(nested);
}

TEST_F(UpCalls, ALoadMayComeBackToTheSameProvider)
{
    script<Demo_Rack>().load = LOAD_FAILED; // so that it is loaded by the first request
    Client& racks = client(rackProvider);
    broker.route("Demo_Rack", racks.instances, nullptr);
    script<Demo_Rack>().load = LOAD_OK;
    script<Demo_Rack>().insideLoad = [&]
    { EXPECT_FALSE(cimom::get_instance("root/demo", rack("r1").ptr())); };
    EXPECT_TRUE(racks.enumerateInstances(classPath("Demo_Rack")).ok());
    EXPECT_EQ(script<Demo_Rack>().loads, 3); // two interfaces, one request
}

} // namespace
} // namespace adapter_test
