// What the test broker does for providers: factories, threads, indications, and up-calls to routed
// interfaces.
#include "test_broker_services.h"

#include "test_broker.h"
#include "test_object_types.h"

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
    return newInstance(journalOf(mb), {pathOf(path), {}});
}

CMPIObjectPath* makePath(const CMPIBroker* mb, const char* ns, const char* className, CMPIStatus* rc)
{
    if (fails(mb, "newObjectPath", rc))
        return nullptr;
    if (!ns || !*ns || !className || !*className)
        journalOf(mb).violation("an object path needs a namespace and a class");
    return newPath(journalOf(mb), {ns, className, {}});
}

CMPIArgs* makeArgs(const CMPIBroker* mb, CMPIStatus* rc)
{
    return fails(mb, "newArgs", rc) ? nullptr : newArgs(journalOf(mb), {});
}

CMPIString* makeString(const CMPIBroker* mb, const char* text, CMPIStatus* rc)
{
    return fails(mb, "newString", rc) ? nullptr : newString(journalOf(mb), text);
}

CMPIArray* makeArray(const CMPIBroker* mb, CMPICount size, CMPIType type, CMPIStatus* rc)
{
    if (type & CMPI_ARRAY)
        journalOf(mb).violation("newArray takes the type of the elements");
    if (fails(mb, "newArray", rc))
        return nullptr;
    return newArray(journalOf(mb), Value::array(type, {size, Value::nullOf(type)}));
}

CMPIDateTime* makeDateTime(const CMPIBroker* mb, const char* text, CMPIStatus* rc)
{
    if (fails(mb, "newDateTimeFromChars", rc))
        return nullptr;
    const std::string value = text;
    if (value.size() == 25 && value[14] == '.')
        return newDateTime(journalOf(mb), value);
    done(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return nullptr;
}

CMPIBoolean classPathIsA(const CMPIBroker*, const CMPIObjectPath* path, const char* className, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return strcasecmp(pathOf(path).className.c_str(), className) == 0;
}

// --- threads and indications

thread_local Session* attached = nullptr;

CMPIContext* prepareAttachThread(const CMPIBroker* mb, const CMPIContext* ctx)
{
    return detachedContext(journalOf(mb), entriesOf(ctx));
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
    endContext(ctx);
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

// Runs a function of the interfaces that serve the path's class and returns its results.
template <class Call>
Outcome upCall(const CMPIBroker* mb,
               const CMPIContext* ctx,
               const CMPIObjectPath* path,
               CMPIStatus* rc,
               Call callInterface)
{
    checkContext(mb, ctx);
    Outcome outcome;
    outcome.rc = CMPI_RC_ERR_INVALID_CLASS;
    // The callee works on objects of its own session.
    const Path copy = pathOf(path);
    if (const Broker::Route* route = brokerOf(mb).routeTo(path))
        outcome = brokerOf(mb).call([&](const CMPIContext* c, const CMPIResult* r)
                                    { return callInterface(*route, c, r, newPath(journalOf(mb), copy)); });
    done(rc, outcome.rc);
    if (rc && !outcome.ok())
        rc->msg = newString(journalOf(mb), outcome.message);
    return outcome;
}

CMPIEnumeration* enumerateInstances(const CMPIBroker* mb,
                                    const CMPIContext* ctx,
                                    const CMPIObjectPath* path,
                                    const char** properties,
                                    CMPIStatus* rc)
{
    const Outcome outcome =
        upCall(mb,
               ctx,
               path,
               rc,
               [&](auto& route, auto* c, auto* r, auto* p)
               { return route.instances->ft->enumerateInstances(route.instances, c, r, p, properties); });
    std::vector<Value> items;
    for (const Inst& inst : outcome.instances)
        items.push_back(Value::instance(inst));
    return outcome.ok() ? newEnumeration(journalOf(mb), items) : nullptr;
}

CMPIEnumeration* enumerateInstanceNames(const CMPIBroker* mb,
                                        const CMPIContext* ctx,
                                        const CMPIObjectPath* path,
                                        CMPIStatus* rc)
{
    const Outcome outcome =
        upCall(mb,
               ctx,
               path,
               rc,
               [&](auto& route, auto* c, auto* r, auto* p)
               { return route.instances->ft->enumerateInstanceNames(route.instances, c, r, p); });
    std::vector<Value> items;
    for (const Path& name : outcome.paths)
        items.push_back(Value::ref(name));
    return outcome.ok() ? newEnumeration(journalOf(mb), items) : nullptr;
}

CMPIInstance* getInstance(const CMPIBroker* mb,
                          const CMPIContext* ctx,
                          const CMPIObjectPath* path,
                          const char** properties,
                          CMPIStatus* rc)
{
    const Outcome outcome =
        upCall(mb,
               ctx,
               path,
               rc,
               [&](auto& route, auto* c, auto* r, auto* p)
               { return route.instances->ft->getInstance(route.instances, c, r, p, properties); });
    return outcome.ok() ? newInstance(journalOf(mb), outcome.instances.at(0)) : nullptr;
}

CMPIObjectPath* createInstance(const CMPIBroker* mb,
                               const CMPIContext* ctx,
                               const CMPIObjectPath* path,
                               const CMPIInstance* inst,
                               CMPIStatus* rc)
{
    const Outcome outcome =
        upCall(mb,
               ctx,
               path,
               rc,
               [&](auto& route, auto* c, auto* r, auto* p)
               { return route.instances->ft->createInstance(route.instances, c, r, p, inst); });
    return outcome.ok() ? newPath(journalOf(mb), outcome.paths.at(0)) : nullptr;
}

CMPIStatus modifyInstance(const CMPIBroker* mb,
                          const CMPIContext* ctx,
                          const CMPIObjectPath* path,
                          const CMPIInstance* inst,
                          const char** properties)
{
    CMPIStatus status;
    upCall(mb,
           ctx,
           path,
           &status,
           [&](auto& route, auto* c, auto* r, auto* p)
           { return route.instances->ft->modifyInstance(route.instances, c, r, p, inst, properties); });
    return status;
}

CMPIStatus deleteInstance(const CMPIBroker* mb, const CMPIContext* ctx, const CMPIObjectPath* path)
{
    CMPIStatus status;
    upCall(mb,
           ctx,
           path,
           &status,
           [&](auto& route, auto* c, auto* r, auto* p)
           { return route.instances->ft->deleteInstance(route.instances, c, r, p); });
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
        upCall(mb,
               ctx,
               path,
               rc,
               [&](auto& route, auto* c, auto* r, auto* p)
               { return route.methods->ft->invokeMethod(route.methods, c, r, p, method, in, out); });
    return dataOf(journalOf(mb), outcome.data.empty() ? Value() : outcome.data[0]);
}

const CMPIBrokerFT brokerFT = {
    CMPI_MB_InstanceManipulation | CMPI_MB_AssociationTraversal | CMPI_MB_Indications,
    CMPIVersion200,
    "TestBroker",
    prepareAttachThread,
    attachThread,
    detachThread,
    deliverIndication,
    enumerateInstanceNames,
    getInstance,
    createInstance,
    modifyInstance,
    deleteInstance,
    nullptr, // execQuery
    enumerateInstances,
    nullptr, // associators
    nullptr, // associatorNames
    nullptr, // references
    nullptr, // referenceNames
    invokeMethod,
    nullptr, // setProperty
    nullptr, // getProperty
};

// What is not in these tables no provider may need: other brokers leave it out, too.
const CMPIBrokerEncFT encFT = {CMPIVersion200, makeInstance, makePath, makeArgs, makeString, makeArray,
                               nullptr, // newDateTime
                               nullptr, // newDateTimeFromBinary
                               makeDateTime,
                               nullptr, // newSelectExp
                               classPathIsA,
                               nullptr, // toString
                               nullptr, // isOfType
                               nullptr, // getType
                               nullptr, // getMessage
                               nullptr, // logMessage
                               nullptr, // trace
                               nullptr, // newCMPIError
                               nullptr, // openMessageFile
                               nullptr, // closeMessageFile
                               nullptr};

const CMPIBrokerExtFT extFT = {CMPIVersion200, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr,        nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                               nullptr,        nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};

} // namespace

CMPIBroker services()
{
    return {nullptr, &brokerFT, &encFT, &extFT, nullptr};
}

} // namespace test_broker
