// What the test broker does for providers: factories, threads, indications, and up-calls to routed
// interfaces.
#include "test_broker.h"

#include <strings.h>

namespace test_broker
{

namespace
{

Broker& brokerOf(const CMPIBroker* mb)
{
    return *static_cast<Broker*>(const_cast<void*>(mb->hdl));
}

Journal& journalOf(const CMPIBroker* mb)
{
    return brokerOf(mb).journal();
}

// --- factories

bool fails(const CMPIBroker* mb, const char* factory, CMPIStatus* rc)
{
    const bool failing = brokerOf(mb).failing(factory);
    done(rc, failing ? CMPI_RC_ERR_FAILED : CMPI_RC_OK);
    return failing;
}

CMPIInstance* makeInstance(const CMPIBroker* mb, const CMPIObjectPath* path, CMPIStatus* rc)
{
    if (fails(mb, "newInstance", rc))
        return nullptr;
    return make<CMPIInstance>(journalOf(mb), {contentOf(path), {}});
}

CMPIObjectPath* makePath(const CMPIBroker* mb, const char* ns, const char* className, CMPIStatus* rc)
{
    if (fails(mb, "newObjectPath", rc))
        return nullptr;
    if (!ns || !*ns || !className || !*className)
        journalOf(mb).violation("an object path needs a namespace and a class");
    return make<CMPIObjectPath>(journalOf(mb), {ns, className, {}});
}

CMPIArgs* makeArgs(const CMPIBroker* mb, CMPIStatus* rc)
{
    return fails(mb, "newArgs", rc) ? nullptr : make<CMPIArgs>(journalOf(mb), {});
}

CMPIString* makeString(const CMPIBroker* mb, const char* text, CMPIStatus* rc)
{
    return fails(mb, "newString", rc) ? nullptr : make<CMPIString>(journalOf(mb), text);
}

CMPIArray* makeArray(const CMPIBroker* mb, CMPICount size, CMPIType type, CMPIStatus* rc)
{
    if (type & CMPI_ARRAY)
        journalOf(mb).violation("newArray takes the type of the elements");
    if (fails(mb, "newArray", rc))
        return nullptr;
    return make<CMPIArray>(journalOf(mb), Value::array(type, {size, Value::nullOf(type)}));
}

CMPIDateTime* makeDateTime(const CMPIBroker* mb, const char* text, CMPIStatus* rc)
{
    if (fails(mb, "newDateTimeFromChars", rc))
        return nullptr;
    const std::string value = text;
    if (value.size() == 25 && value[14] == '.')
        return make<CMPIDateTime>(journalOf(mb), value);
    done(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return nullptr;
}

// --- threads and indications

thread_local Session* attached = nullptr;

CMPIContext* prepareAttachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    auto* context = new Made<CMPIContext>(journalOf(mb), contentOf(ctx));
    context->movable = true;
    return context; // until the thread is detached
}

CMPIStatus attachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    if (Session::current())
        journalOf(mb).violation("a thread was attached that is in a call or attached already");
    attached = new Session(ctx);
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus detachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    if (!attached || attached->context() != ctx)
        journalOf(mb).violation("a thread was detached with a context that it was not attached with");
    delete attached;
    attached = nullptr;
    delete &self(ctx);
    return {CMPI_RC_OK, nullptr};
}

void checkContext(const CMPIBroker* mb, const CMPIContext* ctx)
{
    if (!Session::current() || Session::current()->context() != ctx)
        journalOf(mb).violation("an up-call came with a context that is not its thread's");
}

CMPIStatus deliverIndication(const CMPIBroker* mb,
                             const CMPIContext* ctx,
                             const char* ns,
                             const CMPIInstance* indication)
{
    checkContext(mb, ctx);
    brokerOf(mb).deliver(ns, indication);
    return {CMPI_RC_OK, nullptr};
}

// --- up-calls

// Calls a function of an interface that serves the path's class and returns its results.
template <class Mi, class Function, class... Args>
Outcome upCall(const CMPIBroker* mb,
               const CMPIContext* ctx,
               const CMPIObjectPath* path,
               CMPIStatus* rc,
               Mi* Broker::Route::*interface,
               Function function,
               Args... args)
{
    checkContext(mb, ctx);
    Outcome outcome;
    outcome.rc = CMPI_RC_ERR_INVALID_CLASS;
    // The callee works on objects of its own session.
    const Path copy = contentOf(path);
    if (const Broker::Route* route = brokerOf(mb).routeTo(path))
        outcome = brokerOf(mb).call(
            [&](const CMPIContext* c, const CMPIResult* r)
            {
                Mi* mi = route->*interface;
                return (mi->ft->*function)(mi, c, r, make<CMPIObjectPath>(journalOf(mb), copy), args...);
            });
    done(rc, outcome.rc);
    if (rc && !outcome.ok())
        rc->msg = make<CMPIString>(journalOf(mb), outcome.message);
    return outcome;
}

constexpr auto kInstances = &Broker::Route::instances;

CMPIEnumeration* enumerateInstances(const CMPIBroker* mb,
                                    const CMPIContext* ctx,
                                    const CMPIObjectPath* path,
                                    const char** list,
                                    CMPIStatus* rc)
{
    const Outcome outcome =
        upCall(mb, ctx, path, rc, kInstances, &CMPIInstanceMIFT::enumerateInstances, list);
    Items items;
    for (const Inst& inst : outcome.instances)
        items.values.push_back(Value::instance(inst));
    return outcome.ok() ? make<CMPIEnumeration>(journalOf(mb), items) : nullptr;
}

CMPIInstance* getInstance(const CMPIBroker* mb,
                          const CMPIContext* ctx,
                          const CMPIObjectPath* path,
                          const char** list,
                          CMPIStatus* rc)
{
    const Outcome outcome = upCall(mb, ctx, path, rc, kInstances, &CMPIInstanceMIFT::getInstance, list);
    return outcome.ok() ? make<CMPIInstance>(journalOf(mb), outcome.instances.at(0)) : nullptr;
}

CMPIObjectPath* createInstance(const CMPIBroker* mb,
                               const CMPIContext* ctx,
                               const CMPIObjectPath* path,
                               const CMPIInstance* inst,
                               CMPIStatus* rc)
{
    const Outcome outcome = upCall(mb, ctx, path, rc, kInstances, &CMPIInstanceMIFT::createInstance, inst);
    return outcome.ok() ? make<CMPIObjectPath>(journalOf(mb), outcome.paths.at(0)) : nullptr;
}

CMPIStatus modifyInstance(const CMPIBroker* mb,
                          const CMPIContext* ctx,
                          const CMPIObjectPath* path,
                          const CMPIInstance* inst,
                          const char** list)
{
    CMPIStatus status;
    upCall(mb, ctx, path, &status, kInstances, &CMPIInstanceMIFT::modifyInstance, inst, list);
    return status;
}

CMPIStatus deleteInstance(const CMPIBroker* mb, const CMPIContext* ctx, const CMPIObjectPath* path)
{
    CMPIStatus status;
    upCall(mb, ctx, path, &status, kInstances, &CMPIInstanceMIFT::deleteInstance);
    return status;
}

CMPIData invokeMethod(const CMPIBroker* mb,
                      const CMPIContext* ctx,
                      const CMPIObjectPath* path,
                      const char* method,
                      const CMPIArgs* in,
                      CMPIArgs* out,
                      CMPIStatus* rc)
{
    const Outcome outcome =
        upCall(mb, ctx, path, rc, &Broker::Route::methods, &CMPIMethodMIFT::invokeMethod, method, in, out);
    return dataOf(journalOf(mb), outcome.data.empty() ? Value() : outcome.data[0]);
}

CMPIBrokerFT operations()
{
    CMPIBrokerFT table = {};
    table.brokerCapabilities =
        CMPI_MB_InstanceManipulation | CMPI_MB_AssociationTraversal | CMPI_MB_Indications;
    table.brokerVersion = CMPIVersion200;
    table.brokerName = "TestBroker";
    table.prepareAttachThread = prepareAttachThread;
    table.attachThread = attachThread;
    table.detachThread = detachThread;
    table.deliverIndication = deliverIndication;
    table.getInstance = getInstance;
    table.createInstance = createInstance;
    table.modifyInstance = modifyInstance;
    table.deleteInstance = deleteInstance;
    table.enumerateInstances = enumerateInstances;
    table.invokeMethod = invokeMethod;
    return table;
}

// What is not in these tables no provider may need: other brokers leave it out, too.
CMPIBrokerEncFT factories()
{
    CMPIBrokerEncFT table = {};
    table.ftVersion = CMPIVersion200;
    table.newInstance = makeInstance;
    table.newObjectPath = makePath;
    table.newArgs = makeArgs;
    table.newString = makeString;
    table.newArray = makeArray;
    table.newDateTimeFromChars = makeDateTime;
    return table;
}

const CMPIBrokerFT brokerFT = operations();
const CMPIBrokerEncFT encFT = factories();
const CMPIBrokerExtFT extFT = {};

} // namespace

CMPIBroker services()
{
    return {nullptr, &brokerFT, &encFT, &extFT, nullptr};
}

} // namespace test_broker
