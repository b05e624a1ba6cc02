// Tests of the dispatch of operation codes and method names to provider classes.
#include "common/Dispatch.h"

#include "tests/common/testing/fake_providers.h"

#include "VRAX_NamespaceInManager_Methods.h"
#include "VRAX_ObjectManager_Methods.h"

#include <string>

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

typedef Dispatch<Ports_Provider, Instance_Provider_Proc_T<Ports_Provider>> Instance_Proc;
typedef Dispatch<Service_Provider, Instance_Provider_Proc_T<Service_Provider>> Service_Proc;
typedef Dispatch<Pairs_Provider, Association_Provider_Proc_T<Pairs_Provider>> Association_Proc;

int call(Provider_Proc proc, int operation, void* arg0 = nullptr, void* arg1 = nullptr, void* arg2 = nullptr)
{
    return proc(nullptr, operation, arg0, arg1, arg2, nullptr, nullptr, nullptr, nullptr, nullptr);
}

class Dispatching : public testing::Test
{
  protected:
    void SetUp() override { resetFakeProviders(); }
    void TearDown() override { resetFakeProviders(); }
};

TEST_F(Dispatching, LeavesOtherCodesToTheKind)
{
    Ports_Provider provider;
    const Meta_Class* metaClass = nullptr;
    EXPECT_EQ(call(Instance_Proc::proc, OPERATION_GET_META_CLASS, &metaClass), 0);
    EXPECT_EQ(metaClass, &VRAX_FCPortStatistics::static_meta_class);
    const Owned<VRAX_FCPortStatistics> model = makeNull<VRAX_FCPortStatistics>();
    model->InstanceID.set("3");
    VRAX_FCPortStatistics* found = nullptr;
    EXPECT_EQ(call(Instance_Proc::proc, OPERATION_GET_INSTANCE, &provider, model.get(), &found), 0);
    const Owned<VRAX_FCPortStatistics> owner(found);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->InstanceID.value, "3");
    for (const int unknown : {11, 12, 99, -1})
    {
        EXPECT_EQ(call(Instance_Proc::proc, unknown, &provider), -1) << unknown;
        EXPECT_EQ(call(Association_Proc::proc, unknown), -1) << unknown;
    }
    EXPECT_EQ(call(Instance_Proc::proc, OPERATION_ENUM_ASSOCIATORS, &provider), -1);
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
