// Tests of the dispatch of operation codes to provider classes of the three kinds.
#include "common/dispatch.h"

#include "tests/common/testing/Fake_Providers.h"
#include "tests/support/Manual_Clock.h"

#include "VRAX_NamespaceInManager_Methods.h"
#include "VRAX_ObjectManager_Methods.h"
#include "VRAX_StatisticsCollection_Methods.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

// An object manager whose methods can be told apart.
class Service_Provider : public Instance_Provider_Base<Service_Provider, VRAX_ObjectManager>,
                         public VRAX_ObjectManager_Methods<Service_Provider>
{
  public:
    static constexpr const char* kSource = "testProviders/Service_Provider";
    void build(Map_Writer<VRAX_ObjectManager>&) {}

    static inline std::string called;
    static Invoke_Method_Status unsupported_method(const char* method)
    {
        called = method;
        return INVOKE_METHOD_UNSUPPORTED;
    }
    Invoke_Method_Status RequestStateChange(const VRAX_ObjectManager*,
                                            const Property<uint16>& requested,
                                            CIM_ConcreteJob*&,
                                            const Property<Datetime>& timeout,
                                            Property<uint32>& result)
    {
        called = "RequestStateChange";
        EXPECT_TRUE(timeout.null);
        result.set(requested.value + 100u);
        return INVOKE_METHOD_OK;
    }
};

class Alert_Provider
{
  public:
    typedef VRAX_StatisticsCollection Class;
    static inline Indication_Handler<Class>* handler = nullptr;

    Load_Status load() { return LOAD_OK; }
    Unload_Status unload() { return UNLOAD_OK; }
    Enable_Indications_Status enable_indications(Indication_Handler<Class>* newHandler)
    {
        handler = newHandler;
        return ENABLE_INDICATIONS_OK;
    }
    Disable_Indications_Status disable_indications()
    {
        delete handler;
        handler = nullptr;
        return DISABLE_INDICATIONS_OK;
    }
};

class Unconstructible_Provider : public Alert_Provider
{
  public:
    Unconstructible_Provider() { throw std::bad_alloc(); }
};

typedef Dispatch<Ports_Provider, Instance_Provider_Proc_T<Ports_Provider>> Instance_Proc;
typedef Dispatch<Service_Provider, Instance_Provider_Proc_T<Service_Provider>> Service_Proc;
typedef Dispatch<Pairs_Provider, Association_Provider_Proc_T<Pairs_Provider>> Association_Proc;
typedef Dispatch<Alert_Provider, Indication_Provider_Proc_T<Alert_Provider>> Alert_Proc;
typedef Dispatch<Unconstructible_Provider, Indication_Provider_Proc_T<Unconstructible_Provider>> Failing_Proc;

int call(Provider_Proc proc,
         int operation,
         void* arg0 = nullptr,
         void* arg1 = nullptr,
         void* arg2 = nullptr,
         void* arg3 = nullptr,
         void* arg4 = nullptr,
         void* arg5 = nullptr,
         void* arg6 = nullptr)
{
    return proc(nullptr, operation, arg0, arg1, arg2, arg3, arg4, arg5, arg6, nullptr);
}

// What a callback received: instances, then closing calls with their status.
struct Callback
{
    int instances = 0;
    std::vector<int> closings;

    template <class INSTANCE, class STATUS>
    static bool receive(INSTANCE* instance, STATUS status, void* data)
    {
        Callback& self = *static_cast<Callback*>(data);
        if (instance == nullptr)
        {
            self.closings.push_back(status);
            return false;
        }
        EXPECT_TRUE(self.closings.empty());
        ++self.instances;
        unref(instance);
        return true;
    }
    static void* instancesProc()
    {
        Enum_Instances_Proc proc = receive<Instance, Enum_Instances_Status>;
        return reinterpret_cast<void*>(proc);
    }
    static void* namesProc()
    {
        Enum_Associator_Names_Proc proc = receive<const Instance, Enum_Associator_Names_Status>;
        return reinterpret_cast<void*>(proc);
    }
    static void* referencesProc()
    {
        Enum_References_Proc proc = receive<Instance, Enum_References_Status>;
        return reinterpret_cast<void*>(proc);
    }
    static void* associatorsProc()
    {
        Enum_Associators_Proc proc = receive<const Instance, Enum_Associators_Status>;
        return reinterpret_cast<void*>(proc);
    }
};

class Dispatching : public testing::Test
{
  protected:
    void SetUp() override { resetFakeProviders(); }
    void TearDown() override { resetFakeProviders(); }

    Manual_Clock clock;
    String none;
};

TEST_F(Dispatching, CodesThatAKindDoesNotKnowAreMinusOne)
{
    struct Row
    {
        const char* kind;
        Provider_Proc proc;
        std::vector<int> unknown;
    };
    const Row rows[] = {
        {"instance", Instance_Proc::proc, {11, 12, 14, 15, 16, 17, 99, -1}},
        {"association", Association_Proc::proc, {11, 12, 17, 99, -1}},
        {"indication", Alert_Proc::proc, {5, 6, 7, 8, 9, 14, 15, 16, 17, 99, -1}},
    };
    Callback callback;
    for (const Row& row : rows)
    {
        for (const int code : row.unknown)
        {
            EXPECT_EQ(call(row.proc, code, &callback, &callback, &callback, &callback), -1)
                << row.kind << " code " << code;
        }
    }
}

TEST_F(Dispatching, EveryKindLivesAndDescribesItself)
{
    struct Row
    {
        Provider_Proc proc;
        const Meta_Class* metaClass;
    };
    const Row rows[] = {
        {Instance_Proc::proc, &VRAX_FCPortStatistics::static_meta_class},
        {Association_Proc::proc, &VRAX_NamespaceInManager::static_meta_class},
        {Alert_Proc::proc, &VRAX_StatisticsCollection::static_meta_class},
    };
    for (const Row& row : rows)
    {
        const Meta_Class* metaClass = nullptr;
        EXPECT_EQ(call(row.proc, OPERATION_GET_META_CLASS, &metaClass), 0);
        EXPECT_EQ(metaClass, row.metaClass);
        const Meta_Repository* repository = nullptr;
        EXPECT_EQ(call(row.proc, OPERATION_GET_REPOSITORY, &repository), 0);
        EXPECT_EQ(repository, row.metaClass->meta_repository);
        EXPECT_NE(repository, nullptr);

        void* provider = nullptr;
        EXPECT_EQ(call(row.proc, OPERATION_CREATE_PROVIDER, &provider), 0);
        EXPECT_NE(provider, nullptr);
        EXPECT_EQ(call(row.proc, OPERATION_LOAD, provider), 0);
        EXPECT_EQ(call(row.proc, OPERATION_UNLOAD, provider), 0);
        EXPECT_EQ(call(row.proc, OPERATION_DESTROY_PROVIDER, provider), 0);
        EXPECT_EQ(call(row.proc, OPERATION_DESTROY_PROVIDER, nullptr), 0);
    }
}

TEST_F(Dispatching, AProviderThatCannotBeMadeThrows)
{
    void* provider = nullptr;
    EXPECT_THROW(call(Failing_Proc::proc, OPERATION_CREATE_PROVIDER, &provider), std::bad_alloc);
}

TEST_F(Dispatching, InstanceOperations)
{
    Ports_Provider provider;
    const Owned<VRAX_FCPortStatistics> model = makeNull<VRAX_FCPortStatistics>();
    model->InstanceID.set("3");
    VRAX_FCPortStatistics* found = nullptr;
    EXPECT_EQ(call(Instance_Proc::proc, OPERATION_GET_INSTANCE, &provider, model.get(), &found), 0);
    const Owned<VRAX_FCPortStatistics> owner(found);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->InstanceID.value, "3");
    model->InstanceID.set("9");
    EXPECT_EQ(call(Instance_Proc::proc, OPERATION_GET_INSTANCE, &provider, model.get(), &found), 60);

    EXPECT_EQ(call(Instance_Proc::proc, OPERATION_CREATE_INSTANCE, &provider, model.get()), 81);
    EXPECT_EQ(call(Instance_Proc::proc, OPERATION_DELETE_INSTANCE, &provider, model.get()), 91);
    EXPECT_EQ(call(Instance_Proc::proc, OPERATION_MODIFY_INSTANCE, &provider, model.get(), model.get()), 101);
}

TEST_F(Dispatching, AnEnumerationEndsWithOneClosingCallAlsoWhenItFails)
{
    Ports_Provider provider;
    Callback callback;
    const auto enumerate = [&]
    {
        callback = Callback();
        return call(Instance_Proc::proc,
                    OPERATION_ENUM_INSTANCES,
                    &provider,
                    nullptr,
                    Callback::instancesProc(),
                    &callback);
    };
    EXPECT_EQ(enumerate(), 0);
    EXPECT_EQ(callback.instances, 4);
    EXPECT_EQ(callback.closings, std::vector<int>{0});

    clock.outlive();
    Script<VRAX_FCPortStatistics>::instead = [](Map_Writer<VRAX_FCPortStatistics>&) { throw Load_Failed(); };
    EXPECT_EQ(enumerate(), 70);
    EXPECT_EQ(callback.instances, 0);
    EXPECT_EQ(callback.closings, std::vector<int>{70});
    EXPECT_EQ(call(Instance_Proc::proc, OPERATION_LOAD, &provider), 30);
}

TEST_F(Dispatching, AssociationRequestsAreLeftToTheAdapterWithoutAnyCall)
{
    Pairs_Provider provider;
    const Owned<VRAX_ObjectManager> source = makeNull<VRAX_ObjectManager>();
    Callback callback;
    EXPECT_EQ(call(Association_Proc::proc,
                   OPERATION_ENUM_ASSOCIATOR_NAMES,
                   &provider,
                   source.get(),
                   &none,
                   &none,
                   &none,
                   Callback::namesProc(),
                   &callback),
              111);
    EXPECT_EQ(call(Association_Proc::proc,
                   OPERATION_ENUM_REFERENCES,
                   &provider,
                   source.get(),
                   nullptr,
                   &none,
                   Callback::referencesProc(),
                   &callback),
              121);
    EXPECT_EQ(call(Association_Proc::proc,
                   OPERATION_ENUM_ASSOCIATORS,
                   &provider,
                   source.get(),
                   &none,
                   &none,
                   &none,
                   Callback::associatorsProc(),
                   &callback),
              171);
    EXPECT_EQ(callback.instances, 0);
    EXPECT_TRUE(callback.closings.empty());
    EXPECT_EQ(Script<VRAX_NamespaceInManager>::builds, 0);
}

TEST_F(Dispatching, IndicationsAreEnabledAndDisabled)
{
    Alert_Provider provider;
    int closings = 0;
    Indication_Proc callback = [](Instance* instance, void* data)
    {
        EXPECT_EQ(instance, nullptr);
        ++*static_cast<int*>(data);
        return false;
    };
    EXPECT_EQ(call(Alert_Proc::proc,
                   OPERATION_ENABLE_INDICATIONS,
                   &provider,
                   reinterpret_cast<void*>(callback),
                   &closings),
              0);
    EXPECT_NE(Alert_Provider::handler, nullptr);
    EXPECT_EQ(closings, 0);
    EXPECT_EQ(call(Alert_Proc::proc, OPERATION_DISABLE_INDICATIONS, &provider), 0);
    EXPECT_EQ(closings, 1);
}

// The name of a method as the caller writes it, by way of a record that carries that name.
template <class METHOD>
int invoke(Provider_Proc proc, void* provider, const char* name, METHOD* method)
{
    const Meta_Method& original = METHOD::static_meta_class;
    const Meta_Method renamed = {CIMPLE_ATOMIC_INITIALIZER,
                                 original.flags,
                                 name,
                                 original.meta_qualifiers,
                                 original.num_meta_qualifiers,
                                 original.meta_features,
                                 original.num_meta_features,
                                 original.size,
                                 original.return_type};
    method->meta_class = reinterpret_cast<const Meta_Class*>(&renamed);
    const int status = call(proc, OPERATION_INVOKE_METHOD, provider, nullptr, method);
    method->meta_class = reinterpret_cast<const Meta_Class*>(&original);
    return status;
}

TEST_F(Dispatching, MethodsAreFoundByNameWithoutRegardToCase)
{
    Service_Provider provider;
    const Owned<VRAX_ObjectManager_StartService_method> start(
        VRAX_ObjectManager_StartService_method::create());
    EXPECT_EQ(invoke(Service_Proc::proc, &provider, "startservice", start.get()), 131);
    EXPECT_EQ(Service_Provider::called, "StartService");
    EXPECT_EQ(invoke(Service_Proc::proc, &provider, "STOPSERVICE", start.get()), 131);
    EXPECT_EQ(Service_Provider::called, "StopService");

    Service_Provider::called.clear();
    for (const char* unknown : {"", "Start", "StartServices", "ResetSelectedStats"})
        EXPECT_EQ(invoke(Service_Proc::proc, &provider, unknown, start.get()), -1) << unknown;
    EXPECT_EQ(Service_Provider::called, "");

    const Owned<VRAX_ObjectManager_RequestStateChange_method> change(
        VRAX_ObjectManager_RequestStateChange_method::create());
    __set_null_flags(change.get(), true, true, 1);
    change->RequestedState.set(11);
    EXPECT_EQ(invoke(Service_Proc::proc, &provider, "requestStateChange", change.get()), 0);
    EXPECT_EQ(change->return_value.value, 111u);
    EXPECT_EQ(change->return_value.null, 0);
}

TEST_F(Dispatching, AClassWithoutMethodsHasNone)
{
    Pairs_Provider provider;
    const Owned<VRAX_ObjectManager_StartService_method> start(
        VRAX_ObjectManager_StartService_method::create());
    EXPECT_EQ(invoke(Association_Proc::proc, &provider, "StartService", start.get()), -1);
}

} // namespace
} // namespace cimple
