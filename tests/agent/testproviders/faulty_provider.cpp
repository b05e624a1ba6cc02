// A provider that is wrong in one known way per instance: the key Mode says which.
#include "tests/agent/testproviders/test_provider.h"

#include <atomic>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>

using namespace testprovider;

namespace
{

const CMPIBroker* broker = nullptr;
std::atomic<bool> enumerationFails{false};

CMPIInstance* newInstance(const char* className, const char* mode)
{
    CMPIObjectPath* path = CMNewObjectPath(broker, "root/test", className, nullptr);
    addKey(path, "Mode", mode);
    return CMNewInstance(broker, path, nullptr);
}

CMPIInstance* good(const Call& call)
{
    return newInstance("Test_Faulty", keyText(call.path, "Mode").c_str());
}

CMPIStatus wrongType(const Call& call)
{
    CMPIInstance* instance = good(call);
    setText(instance, "Number", "seven"); // the status is ignored, as careless providers do
    CMReturnInstance(call.result, instance);
    return CMReturnDone(call.result);
}

CMPIStatus garbageType(const Call& call)
{
    const CMPIUint32 number = 7;
    CMPIInstance* instance = good(call);
    instance->ft->setProperty(
        instance, "Number", reinterpret_cast<const CMPIValue*>(&number), static_cast<CMPIType>(0x0777));
    return call.returnOne(instance);
}

CMPIStatus unknownProperty(const Call& call)
{
    CMPIInstance* instance = good(call);
    setText(instance, "Extra", "value");
    return call.returnOne(instance);
}

CMPIStatus missingKey(const Call& call)
{
    CMPIObjectPath* path = CMNewObjectPath(broker, "root/test", "Test_Faulty", nullptr);
    return call.returnOne(CMNewInstance(broker, path, nullptr));
}

CMPIStatus keyDiffers(const Call& call)
{
    CMPIInstance* instance = good(call);
    setText(instance, "Mode", "another");
    return call.returnOne(instance);
}

CMPIStatus foreignObject(const Call& call)
{
    static const CMPIInstanceFT noTable{};
    const CMPIInstance stranger{&noTable, &noTable};
    return CMReturnInstance(call.result, &stranger);
}

CMPIStatus tooDeep(const Call& call)
{
    CMPIStatus status = ok();
    CMPIInstance* instance = CBGetInstance(broker, call.context, call.path, nullptr, &status);
    return instance ? call.returnOne(instance) : status;
}

// A thread of the provider makes a request of its own.
CMPIStatus fromThread(const Call& call)
{
    CMPIContext* context = CBPrepareAttachThread(broker, call.context);
    CMPIUint32 names = 0;
    CMPIrc unattached = CMPI_RC_OK;
    std::thread worker(
        [&]
        {
            CMPIStatus status = ok();
            CMNewString(broker, "too early", &status);
            unattached = status.rc;
            CBAttachThread(broker, context);
            CMPIObjectPath* path = CMNewObjectPath(broker, "root/test", "Test_Base", nullptr);
            CMPIEnumeration* found = CBEnumInstanceNames(broker, context, path, nullptr);
            while (found && CMHasNext(found, nullptr))
                names += CMGetNext(found, nullptr).type == CMPI_ref ? 1U : 0U;
            CBDetachThread(broker, context);
        });
    worker.join();
    if (unattached != CMPI_RC_ERR_INVALID_HANDLE)
        return failed(broker, CMPI_RC_ERR_FAILED, "a thread that was not attached got an object");
    CMPIInstance* instance = good(call);
    setNumber(instance, "Number", names);
    return call.returnOne(instance);
}

// The number of strings that marked levels left behind, by the state of the objects around them.
CMPIStatus manyObjects(const Call& call)
{
    CMPIInstance* instance = good(call);
    for (int i = 0; i < 1000; ++i)
    {
        CMPIGcStat* level = broker->mft->mark(broker, nullptr);
        CMNewString(broker, "short-lived", nullptr);
        CMPIGcStat* inner = broker->mft->mark(broker, nullptr);
        CMNewString(broker, "shorter-lived", nullptr);
        if (broker->mft->release(broker, level).rc != CMPI_RC_OK)
            return failed(broker, CMPI_RC_ERR_FAILED, "a level could not be released");
        if (broker->mft->release(broker, inner).rc == CMPI_RC_OK)
            return failed(broker, CMPI_RC_ERR_FAILED, "a level was released twice");
    }
    return call.returnOne(instance);
}

using Behaviour = std::function<CMPIStatus(const Call&)>;

const std::map<std::string, Behaviour>& behaviours()
{
    static const auto& table = *new std::map<std::string, Behaviour>{
        {"good", [](const Call& call) { return call.returnOne(good(call)); }},
        {"wrong type", wrongType},
        {"garbage type", garbageType},
        {"unknown property", unknownProperty},
        {"another instance",
         [](const Call& call) { return call.returnOne(newInstance("Test_Faulty", "good")); }},
        {"unknown class",
         [](const Call& call) { return call.returnOne(newInstance("Test_Nowhere", "unknown class")); }},
        {"missing key", missingKey},
        {"key differs", keyDiffers},
        {"foreign object", foreignObject},
        {"path instead",
         [](const Call& call)
         {
             CMReturnObjectPath(call.result, call.path);
             return CMReturnDone(call.result);
         }},
        {"two instances",
         [](const Call& call)
         {
             CMReturnInstance(call.result, good(call));
             return call.returnOne(good(call));
         }},
        {"no done", [](const Call& call) { return CMReturnInstance(call.result, good(call)); }},
        {"after done",
         [](const Call& call)
         {
             call.returnOne(good(call));
             CMReturnInstance(call.result, good(call));
             return ok();
         }},
        {"nothing", [](const Call& call) { return CMReturnDone(call.result); }},
        {"reason",
         [](const Call&) { return failed(broker, CMPI_RC_ERR_FAILED, "the switch did not answer"); }},
        {"no reason",
         [](const Call&) {
             return CMPIStatus{CMPI_RC_ERR_ACCESS_DENIED, nullptr};
         }},
        {"odd code",
         [](const Call&) {
             return CMPIStatus{CMPI_RC_ERROR_SYSTEM, nullptr};
         }},
        {"context",
         [](const Call& call)
         {
             const std::string language =
                 textOf(CMGetContextEntry(call.context, CMPIAcceptLanguage, nullptr).value.string);
             return failed(broker, CMPI_RC_ERR_FAILED, ("answers may be in \"" + language + '"').c_str());
         }},
        {"throws", [](const Call&) -> CMPIStatus { throw std::runtime_error("out of luck"); }},
        {"throws anything", [](const Call&) -> CMPIStatus { throw 42; }},
        {"too deep", tooDeep},
        {"from a thread", fromThread},
        {"many objects", manyObjects},
    };
    return table;
}

CMPIStatus getInstance(const Call& call)
{
    const auto place = behaviours().find(keyText(call.path, "Mode"));
    return place != behaviours().end() ? place->second(call) : CMPIStatus{CMPI_RC_ERR_NOT_FOUND, nullptr};
}

// Fails when modifyInstance has switched that on.
CMPIStatus enumNames(const Call& call)
{
    if (enumerationFails)
        return failed(broker, CMPI_RC_ERR_FAILED, "half of the answer is missing");
    return CMReturnDone(call.result);
}

CMPIStatus enumInstances(const Call& call)
{
    CMReturnInstance(call.result, newInstance("Test_Faulty", "good"));
    return enumNames(call);
}

CMPIStatus createInstance(const Call& call)
{
    return CMReturnDone(call.result); // without the path it owes
}

CMPIStatus modifyInstance(const Call& call)
{
    enumerationFails = numberOf(call.instance, "Number") != 0;
    return CMReturnDone(call.result);
}

CMPIStatus cleanup(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean)
{
    return {CMPI_RC_NEVER_UNLOAD, nullptr};
}

CMPIInstanceMIFT operations()
{
    CMPIInstanceMIFT functions = nothingSupported("Faulty");
    functions.cleanup = cleanup;
    functions.enumerateInstanceNames = operation<enumNames>;
    functions.enumerateInstances = operation<enumInstances>;
    functions.getInstance = operation<getInstance>;
    functions.createInstance = operation<createInstance>;
    functions.modifyInstance = operation<modifyInstance>;
    return functions;
}

const CMPIInstanceMIFT table = operations();

} // namespace

PROVIDER_INTERFACE(Faulty, Instance, table)

// Forgets a function.
CMPI_EXTERN_C CMPIAssociationMI*
Faulty_Create_AssociationMI(const CMPIBroker*, const CMPIContext*, CMPIStatus* rc)
{
    static const CMPIAssociationMIFT table{};
    static CMPIAssociationMI mi{&table, &table};
    *rc = ok();
    return &mi;
}

// Cannot be had; counts the attempts.
CMPI_EXTERN_C CMPIMethodMI* Faulty_Create_MethodMI(const CMPIBroker* mb, const CMPIContext*, CMPIStatus* rc)
{
    static std::atomic<int> attempts{0};
    *rc = failed(mb, CMPI_RC_ERR_FAILED, ("not ready, attempt " + std::to_string(++attempts)).c_str());
    return nullptr;
}
