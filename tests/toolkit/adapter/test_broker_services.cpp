// What the test broker does for providers: factories, threads, indications and up-calls.
#include "test_broker.h"

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
    const bool failing = brokerOf(mb).failing.count(factory) != 0;
    done(rc, failing ? CMPI_RC_ERR_FAILED : CMPI_RC_OK);
    return failing;
}

CMPIInstance* makeInstance(const CMPIBroker* mb, const CMPIObjectPath* path, CMPIStatus* rc)
{
    if (fails(mb, "newInstance", rc))
        return nullptr;
    CMPIInstance* const inst = make<CMPIInstance>(journalOf(mb), self(path).text + "{}");
    self(inst).path = textOf(path);
    if (brokerOf(mb).schema)
        self(inst).items = self(path).items;
    brokerOf(mb).fill(inst);
    return inst;
}

CMPIObjectPath* makePath(const CMPIBroker* mb, const char* ns, const char* className, CMPIStatus* rc)
{
    if (!ns || !*ns || !className || !*className)
        journalOf(mb).violation("an object path needs a namespace and a class");
    return fails(mb, "newObjectPath", rc)
               ? nullptr
               : make<CMPIObjectPath>(journalOf(mb), ns + std::string(":") + className);
}

CMPIArgs* makeArgs(const CMPIBroker* mb, CMPIStatus* rc)
{
    return fails(mb, "newArgs", rc) ? nullptr : make<CMPIArgs>(journalOf(mb), "");
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
    CMPIArray* const array = make<CMPIArray>(journalOf(mb), typeName(type) + "[]");
    self(array).items.assign(size, {"", nullOf(type)});
    return array;
}

CMPIDateTime* makeDateTime(const CMPIBroker* mb, const char* text, CMPIStatus* rc)
{
    const std::string value = text;
    if (value.size() != 25 || value[14] != '.')
        journalOf(mb).violation("no datetime: " + value);
    return fails(mb, "newDateTimeFromChars", rc) ? nullptr : make<CMPIDateTime>(journalOf(mb), "d:" + value);
}

// --- threads and indications

thread_local Session* attached = nullptr;

CMPIContext* prepareAttachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    auto* context = new Made<CMPIContext>(journalOf(mb), listOf(self(ctx).items));
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
    if (!attached || attached->context != ctx)
        journalOf(mb).violation("a thread was detached with a context that it was not attached with");
    delete attached;
    attached = nullptr;
    delete &self(ctx);
    return {CMPI_RC_OK, nullptr};
}

void checkContext(const CMPIBroker* mb, const CMPIContext* ctx)
{
    if (!Session::current() || Session::current()->context != ctx)
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

Outcome
upCall(const CMPIBroker* mb, const CMPIContext* ctx, CMPIStatus* rc, const char* operation, std::string about)
{
    checkContext(mb, ctx);
    const Outcome outcome = brokerOf(mb).upCalls(operation + std::string(" ") + about);
    done(rc, outcome.rc);
    return outcome;
}

const CMPIBrokerFT kOperations = []
{
    CMPIBrokerFT t = {};
    t.brokerCapabilities = CMPI_MB_InstanceManipulation | CMPI_MB_AssociationTraversal | CMPI_MB_Indications;
    t.brokerVersion = CMPIVersion200;
    t.brokerName = "TestBroker";
    t.prepareAttachThread = prepareAttachThread;
    t.attachThread = attachThread;
    t.detachThread = detachThread;
    t.deliverIndication = deliverIndication;
    t.getInstance = [](auto* mb, auto* ctx, auto* path, auto**, auto* rc)
    {
        const Outcome outcome = upCall(mb, ctx, rc, "get", textOf(path));
        return outcome.ok() ? make<CMPIInstance>(journalOf(mb), outcome.instances.at(0)) : nullptr;
    };
    t.createInstance = [](auto* mb, auto* ctx, auto* path, auto* inst, auto* rc)
    {
        const Outcome outcome = upCall(mb, ctx, rc, "create", textOf(path) + " " + textOf(inst));
        return outcome.ok() ? make<CMPIObjectPath>(journalOf(mb), textOf(path)) : nullptr;
    };
    t.modifyInstance = [](auto* mb, auto* ctx, auto* path, auto* inst, auto**) {
        return CMPIStatus{upCall(mb, ctx, nullptr, "modify", textOf(path) + " " + textOf(inst)).rc, nullptr};
    };
    t.deleteInstance = [](auto* mb, auto* ctx, auto* path) {
        return CMPIStatus{upCall(mb, ctx, nullptr, "delete", textOf(path)).rc, nullptr};
    };
    t.enumerateInstances = [](auto* mb, auto* ctx, auto* path, auto**, auto* rc)
    {
        const Outcome outcome = upCall(mb, ctx, rc, "enumerate", textOf(path));
        std::string list;
        for (const std::string& inst : outcome.instances)
            list += (list.empty() ? "" : ",") + inst;
        return outcome.ok() ? make<CMPIEnumeration>(journalOf(mb), list) : nullptr;
    };
    t.invokeMethod = [](auto* mb, auto* ctx, auto* path, auto* method, auto* in, auto* out, auto* rc)
    {
        const std::string arguments = std::string(" ") + method + "{" + listOf(self(in).items) + "}";
        const Outcome outcome = upCall(mb, ctx, rc, "invoke", textOf(path) + arguments);
        self(out).items = named(outcome.out);
        return dataOf(journalOf(mb), outcome.data.empty() ? "null" : outcome.data[0]);
    };
    return t;
}();

// What is not in these tables no provider may need: other brokers leave it out, too.
const CMPIBrokerEncFT kFactories = []
{
    CMPIBrokerEncFT t = {};
    t.ftVersion = CMPIVersion200;
    t.newInstance = makeInstance;
    t.newObjectPath = makePath;
    t.newArgs = makeArgs;
    t.newString = makeString;
    t.newArray = makeArray;
    t.newDateTimeFromChars = makeDateTime;
    return t;
}();

const CMPIBrokerExtFT kSystem = {};

} // namespace

CMPIBroker services()
{
    return {nullptr, &kOperations, &kFactories, &kSystem, nullptr};
}

} // namespace test_broker
