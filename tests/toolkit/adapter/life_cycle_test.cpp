// From the making of interfaces to cleanup: loading, unloading, and many threads at once.
#include <cimple/cimom.h>

#include <stdexcept>
#include <thread>

#include "adapter_fixture.h"

namespace adapter_test
{
namespace
{

const char kRacks[] = "root/demo:Demo_Rack";

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
    const auto cleanup = [&](auto* mi, auto function) { return provider.manage(mi, function, false).rc; };
    EXPECT_EQ(cleanup(provider.instances, &CMPIInstanceMIFT::cleanup), CMPI_RC_OK);
    EXPECT_EQ(racks.alive, 1);
    EXPECT_TRUE(provider.enumerateInstances(kRacks).ok());                          // brokers may go on
    EXPECT_EQ(cleanup(provider.instances, &CMPIInstanceMIFT::cleanup), CMPI_RC_OK); // and repeat themselves
    EXPECT_EQ(racks.alive, 1);
    EXPECT_EQ(cleanup(provider.methods, &CMPIMethodMIFT::cleanup), CMPI_RC_OK);
    EXPECT_EQ(racks.alive, 0);
    EXPECT_EQ(racks.unloads, 1);

    // Even then an interface works: the library is not unloaded yet.
    racks.instances = shared(rack("r1"));
    EXPECT_EQ(provider.enumerateInstances(kRacks).texts(), Texts{"Demo_Rack{Name=\"r1\"}"});
    EXPECT_EQ(racks.alive, 1);
    EXPECT_EQ(provider.cleanup().rc, CMPI_RC_OK);
    EXPECT_EQ(racks.alive, 0);
}

// The provider's operations load what they need, or say in their own way that they cannot.
TEST_F(LifeCycle, AFailedLoadLeavesTheAnswerToTheOperations)
{
    racks.instances = shared(rack("r1"));
    racks.load = LOAD_FAILED;
    racks.unload = UNLOAD_FAILED;
    const std::function<void()> loads[] = {
        nullptr, [] { throw std::runtime_error("no switch"); }, [] { throw 1; }};
    for (const auto& load : loads)
    {
        racks.insideLoad = load;
        racks.loads = racks.unloads = 0;
        Client provider(broker, rackProvider);
        racks.status = ENUM_INSTANCES_FAILED;
        racks.inside = [] { Error::set("no switch"); };
        EXPECT_EQ(provider.enumerateInstances(kRacks).texts(),
                  Texts{"1: Demo_Rack: enumerate instances failed (status 70): no switch"});
        racks.status = GET_INSTANCE_FAILED;
        EXPECT_EQ(provider.getInstance(rackPath("r1")).texts(),
                  Texts{"1: Demo_Rack: get instance failed (status 64): no switch"});
        racks.status = DELETE_INSTANCE_UNSUPPORTED;
        EXPECT_EQ(provider.deleteInstance(rackPath("r1")).rc, CMPI_RC_ERR_NOT_SUPPORTED);
        racks.status = 0;
        EXPECT_EQ(provider.getInstance(rackPath("r1")).texts(), Texts{"Demo_Rack{Name=\"r1\"}"});
        EXPECT_EQ(racks.loads, 1);
        // An operation may have loaded it.
        EXPECT_EQ(provider.cleanup().texts(), Texts{"1: Demo_Rack: cleanup: unload failed (status 40)"});
        EXPECT_EQ(racks.unloads, 1);
        EXPECT_EQ(racks.alive, 0);
    }
}

TEST_F(LifeCycle, AProviderMayRefuseToBeMadeOrToBeUnloaded)
{
    racks.insideCreate = [] { throw std::runtime_error("no memory"); };
    Client none(broker, rackProvider);
    EXPECT_TRUE(!none.instances && !none.methods);
    racks.insideCreate = nullptr;

    Client& provider = client(rackProvider);
    racks.inside = [] { cimom::allow_unload(false); };
    provider.enumerateInstances(kRacks);
    EXPECT_EQ(provider.cleanup().rc, CMPI_RC_DO_NOT_UNLOAD);
    EXPECT_EQ(racks.alive, 1);
    CMPIrc rc = CMPI_RC_OK; // of a cleanup from inside a call
    racks.inside = [&]
    {
        cimom::allow_unload(true);
        rc = provider.cleanup(true).rc;
    };
    EXPECT_TRUE(provider.enumerateInstances(kRacks).ok());
    EXPECT_EQ(rc, CMPI_RC_DO_NOT_UNLOAD);
    EXPECT_TRUE(provider.cleanup().ok());
    EXPECT_EQ(racks.alive, 0);
}

TEST_F(LifeCycle, CallsOfOneProviderRunInParallel)
{
    racks.keepModels = false;
    Latch together{2};
    racks.inside = [&] { together.arriveAndWait(); };
    Client& provider = client(rackProvider);
    std::thread other([&] { EXPECT_TRUE(provider.enumerateInstances(kRacks).ok()); });
    EXPECT_EQ(provider.getInstance(rackPath("r1")).rc, CMPI_RC_ERR_NOT_FOUND);
    other.join();
}

TEST_F(LifeCycle, CleanupWaitsForCallsInFlight)
{
    racks.keepModels = false;
    Latch inside;
    Latch cleaning;
    std::atomic<bool> finished{false};
    bool nested = false;
    racks.inside = [&]
    {
        if (std::exchange(nested, true))
            return;
        inside.arrive();
        cleaning.wait();
        for (int i = 0; i < 1000; i++)
            std::this_thread::yield();
        EXPECT_EQ(racks.alive, 1);
        // A call that comes back is let in although the provider is being taken down.
        EXPECT_TRUE(cimom::get_instance("root/demo", rack("r1").ptr()));
        finished = true;
    };
    Client provider(broker, rackProvider);
    racks.instances = shared(rack("r1"));
    broker.upCalls = [&](const std::string&) { return provider.getInstance(rackPath("r1")); };
    std::thread caller([&] { EXPECT_TRUE(provider.enumerateInstances(kRacks).ok()); });
    inside.wait();
    cleaning.arrive();
    EXPECT_TRUE(provider.cleanup().ok());
    EXPECT_TRUE(finished);
    EXPECT_EQ(racks.alive, 0);
    caller.join();
}

TEST_F(LifeCycle, ManyThreadsMakeInterfacesAndCallWhileOthersCleanUp)
{
    racks.keepModels = false;
    racks.instances = shared(rack("r1"), rack("r2"));
    racks.inside = [&] { EXPECT_GE(racks.alive, 1); };
    Latch made{8};
    Latch cleaning;
    std::vector<std::thread> threads;
    for (int n = 0; n < 8; n++)
        threads.emplace_back(
            [&, n]
            {
                Client provider(broker, rackProvider);
                made.arrive();
                cleaning.wait();
                for (int i = 0; i < 200; i++)
                {
                    const Outcome outcome =
                        n % 2 ? provider.enumerateInstances(kRacks) : provider.enumerateInstanceNames(kRacks);
                    EXPECT_EQ(outcome.texts().size(), 2u) << outcome.message;
                }
            });
    made.wait();
    Client& provider = client(rackProvider);
    EXPECT_EQ(racks.alive, 1);
    EXPECT_EQ(racks.loads, 1);
    cleaning.arrive();
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
    void asProvider(const std::function<void()>& body)
    {
        script<Demo_Lab>().method = [&](Instance*) { body(); };
        EXPECT_EQ(client(labProvider).invokeMethod("root/demo:Demo_Lab.Name=\"lab\"", "Measure").message, "");
    }
};

TEST_F(UpCalls, EachOperationSaysWhatIsWantedAndTakesTheAnswer)
{
    Ref<Demo_Element> owned = demo::element(7);
    Demo_Element* const element = owned.ptr();
    element->Label.set("inlet");
    Texts requests;
    Outcome answer;
    broker.upCalls = [&](const std::string& request)
    {
        requests.push_back(request);
        return answer;
    };
    Demo_Sensor_Calibrate_method* method = Demo_Sensor_Calibrate_method::create();
    const Ref<Instance> ownedMethod(static_cast<Instance*>(method));
    method->Target.set(21);
    method->Where = rack("r1").steal();
    Instance_Enumerator all;
    asProvider(
        [&]
        {
            const auto everything = [&](int result)
            {
                EXPECT_EQ(cimom::create_instance("root/demo", element), result);
                EXPECT_EQ(cimom::modify_instance("root/demo", element), result);
                EXPECT_EQ(cimom::delete_instance("root/demo", element), result);
                EXPECT_EQ(cimom::enum_instances("root/demo", element, all), result);
                EXPECT_EQ(cimom::invoke_method("root/demo", sensor(7).ptr(), method), result);
            };
            everything(-1);
            EXPECT_FALSE(cimom::get_instance("root/demo", element));
            EXPECT_FALSE(all);
            answer.rc = CMPI_RC_OK;
            answer.instances.assign(2, "Demo_Element{Id=u32:8,NewerState=true}");
            answer.out = "Drift=s32:42";
            answer.data = {"u32:0"};
            requests.clear();
            everything(0);
            Ref<Instance> got = cimom::get_instance("root/demo", element);
            ASSERT_TRUE(got);
            EXPECT_EQ(static_cast<Demo_Element*>(got.ptr())->Id.value, 8u);
            String user;
            EXPECT_TRUE(cimom::get_username(user));
            EXPECT_EQ(user, "operator");
        });
    const std::string path = "root/demo:Demo_Element.Id=u32:7";
    const std::string instance = " Demo_Element{Id=u32:7,Label=\"inlet\"}";
    EXPECT_EQ(requests,
              Texts({"create " + path + instance,
                     "modify " + path + instance,
                     "delete " + path,
                     "enumerate " + path,
                     "invoke root/demo:Demo_Sensor.Id=u32:7 "
                     "Calibrate{Target=u32:21,Where=<root/demo:Demo_Rack.Name=\"r1\">}",
                     "get " + path}));
    EXPECT_EQ(method->Drift.value, 42);
    EXPECT_TRUE(method->return_value.null == 0 && method->Target.null != 0);
    size_t count = 0;
    for (; all; all++)
        count += all()->meta_class == &Demo_Element::static_meta_class;
    EXPECT_EQ(count, 2u);
}

TEST_F(UpCalls, ACallOrALoadMayComeBackToTheSameProvider)
{
    Script& racks = script<Demo_Rack>();
    racks.instances = shared(rack("r1"));
    int nested = 0;
    const auto comeBack = [&]
    {
        if (nested++ == 0)
            EXPECT_TRUE(cimom::get_instance("root/demo", rack("r1").ptr()));
    };
    Client& provider = client(rackProvider);
    broker.upCalls = [&](const std::string&) { return provider.getInstance(rackPath("r1")); };
    racks.inside = comeBack;
    EXPECT_TRUE(provider.enumerateInstances(kRacks).ok());
    EXPECT_EQ(nested, 2);

    racks.inside = nullptr;
    provider.cleanup();
    nested = racks.loads = 0;
    racks.insideLoad = comeBack;
    EXPECT_TRUE(provider.enumerateInstances(kRacks).ok());
    EXPECT_EQ(nested, 1);
    EXPECT_EQ(racks.loads, 1);
}

} // namespace
} // namespace adapter_test
