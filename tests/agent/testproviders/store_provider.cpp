// A well-behaved provider: keeps whatever instances it is given, by path, and has methods of every shape.
#include "tests/agent/testproviders/test_provider.h"

#include <map>
#include <mutex>
#include <string>

using namespace testprovider;

namespace
{

const CMPIBroker* broker = nullptr;
void (*logSink)(int level, const char* text) = nullptr;
int logLevel = 0;
std::mutex storeMutex;
std::map<std::string, CMPIInstance*>& store() // clones, by text of the path
{
    static auto& instances = *new std::map<std::string, CMPIInstance*>;
    return instances;
}

std::string keyOf(const CMPIObjectPath* path)
{
    std::string text = className(path);
    const CMPICount count = CMGetKeyCount(path, nullptr);
    for (CMPICount i = 0; i < count; ++i)
    {
        CMPIString* name = nullptr;
        const CMPIData key = CMGetKeyAt(path, i, &name, nullptr);
        text += "|" + textOf(name) + "=" + textOf(key);
    }
    return text;
}

void put(CMPIObjectPath* path, CMPIInstance* instance)
{
    instance->ft->setObjectPath(instance, path);
    CMPIInstance*& place = store()[keyOf(path)];
    if (place)
        CMRelease(place);
    place = CMClone(instance, nullptr);
}

void seed(const char* className, const char* name)
{
    CMPIObjectPath* path = CMNewObjectPath(broker, "root/test", className, nullptr);
    addKey(path, "Name", name);
    CMPIInstance* instance = CMNewInstance(broker, path, nullptr);
    setText(instance, "Name", name);
    setText(instance, "Note", "seeded");
    put(path, instance);
}

CMPIStatus cleanup(CMPIInstanceMI*, const CMPIContext*, CMPIBoolean)
{
    const std::lock_guard lock(storeMutex);
    for (const auto& [key, instance] : store())
        CMRelease(instance);
    store().clear();
    return ok();
}

template <class Return>
CMPIStatus forEach(const CMPIResult* result, const CMPIObjectPath* classPath, Return returnOne)
{
    const std::lock_guard lock(storeMutex);
    const std::string prefix = className(classPath) + "|";
    for (const auto& [key, instance] : store())
    {
        if (key.compare(0, prefix.size(), prefix) != 0)
            continue;
        const CMPIStatus status = returnOne(instance);
        if (status.rc != CMPI_RC_OK)
            return status;
    }
    return CMReturnDone(result);
}

CMPIStatus
enumNames(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result, const CMPIObjectPath* classPath)
{
    return forEach(result,
                   classPath,
                   [&](CMPIInstance* instance)
                   { return CMReturnObjectPath(result, CMGetObjectPath(instance, nullptr)); });
}

CMPIStatus enumInstances(CMPIInstanceMI*,
                         const CMPIContext*,
                         const CMPIResult* result,
                         const CMPIObjectPath* classPath,
                         const char** properties)
{
    return forEach(result,
                   classPath,
                   [&](CMPIInstance* instance)
                   {
                       CMPIInstance* copy = CMClone(instance, nullptr);
                       copy->ft->setPropertyFilter(copy, properties, nullptr);
                       const CMPIStatus status = CMReturnInstance(result, copy);
                       CMRelease(copy);
                       return status;
                   });
}

CMPIStatus getInstance(
    CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result, const CMPIObjectPath* path, const char**)
{
    const std::lock_guard lock(storeMutex);
    const auto place = store().find(keyOf(path));
    if (place == store().end())
        return failed(broker, CMPI_RC_ERR_NOT_FOUND, ("nothing stored as " + keyOf(path)).c_str());
    CMReturnInstance(result, place->second);
    return CMReturnDone(result);
}

CMPIStatus createInstance(CMPIInstanceMI*,
                          const CMPIContext*,
                          const CMPIResult* result,
                          const CMPIObjectPath* classPath,
                          const CMPIInstance* instance)
{
    const std::lock_guard lock(storeMutex);
    CMPIObjectPath* path = CMGetObjectPath(instance, nullptr);
    path->ft->setNameSpaceFromObjectPath(path, classPath);
    if (store().count(keyOf(path)) != 0)
        return failed(broker, CMPI_RC_ERR_ALREADY_EXISTS, "stored already");
    CMPIInstance* copy = CMClone(instance, nullptr);
    put(path, copy);
    CMRelease(copy);
    CMReturnObjectPath(result, path);
    return CMReturnDone(result);
}

CMPIStatus modifyInstance(CMPIInstanceMI*,
                          const CMPIContext*,
                          const CMPIResult* result,
                          const CMPIObjectPath* path,
                          const CMPIInstance* change,
                          const char** properties)
{
    const std::lock_guard lock(storeMutex);
    const auto place = store().find(keyOf(path));
    if (place == store().end())
        return {CMPI_RC_ERR_NOT_FOUND, nullptr};
    const CMPICount count = CMGetPropertyCount(change, nullptr);
    for (CMPICount i = 0; i < count; ++i)
    {
        CMPIString* name = nullptr;
        const CMPIData data = CMGetPropertyAt(change, i, &name, nullptr);
        if (!isListed(properties, textOf(name)))
            continue;
        const bool isNull = CMIsNullValue(data);
        place->second->ft->setProperty(
            place->second, textOf(name).c_str(), isNull ? nullptr : &data.value, data.type);
    }
    return CMReturnDone(result);
}

CMPIStatus
deleteInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result, const CMPIObjectPath* path)
{
    const std::lock_guard lock(storeMutex);
    const auto place = store().find(keyOf(path));
    if (place == store().end())
        return {CMPI_RC_ERR_NOT_FOUND, nullptr};
    CMRelease(place->second);
    store().erase(place);
    return CMReturnDone(result);
}

CMPIStatus echo(const CMPIResult* result, const CMPIArgs* in, CMPIArgs* out)
{
    const CMPICount count = CMGetArgCount(in, nullptr);
    for (CMPICount i = 0; i < count; ++i)
    {
        CMPIString* name = nullptr;
        const CMPIData data = CMGetArgAt(in, i, &name, nullptr);
        CMAddArg(out, textOf(name).c_str(), CMIsNullValue(data) ? nullptr : &data.value, data.type);
    }
    CMAddArg(out, "Count", &count, CMPI_uint32);
    return returnNumber(result, 0);
}

CMPIStatus makePart(const CMPIResult* result)
{
    CMPIInstance* part =
        CMNewInstance(broker, CMNewObjectPath(broker, "root/test", "Test_Part", nullptr), nullptr);
    setText(part, "Label", "made");
    CMReturnInstance(result, part);
    return CMReturnDone(result);
}

CMPIStatus misbehave(const CMPIResult* result, const std::string& how, CMPIArgs* out)
{
    const CMPIUint32 number = 1;
    if (how == "unknown out")
        CMAddArg(out, "Surprise", &number, CMPI_uint32);
    else if (how == "out type")
        CMAddArg(out, "Result", "text", CMPI_chars);
    else if (how == "return type")
        return CMReturnData(result, "text", CMPI_chars);
    else if (how == "return twice")
        returnNumber(result, 1);
    else if (how == "no value")
        return CMReturnDone(result);
    else if (how == "unavailable")
        return {CMPI_RC_ERR_METHOD_NOT_AVAILABLE, nullptr};
    return returnNumber(result, 1);
}

CMPIStatus invokeMethod(CMPIMethodMI*,
                        const CMPIContext*,
                        const CMPIResult* result,
                        const CMPIObjectPath* path,
                        const char* method,
                        const CMPIArgs* in,
                        CMPIArgs* out)
{
    const std::string name = method;
    if (name == "Echo")
        return echo(result, in, out);
    if (name == "MakePart")
        return makePart(result);
    if (name == "Misbehave")
        return misbehave(result, textOf(CMGetArg(in, "How", nullptr)), out);
    if (name == "Total")
    {
        const CMPIUint64 keys = CMGetKeyCount(path, nullptr); // a static method is called without an instance
        CMReturnData(result, &keys, CMPI_uint64);
        return CMReturnDone(result);
    }
    return failed(broker, CMPI_RC_ERR_METHOD_NOT_AVAILABLE, "not implemented");
}

CMPIStatus methodCleanup(CMPIMethodMI*, const CMPIContext*, CMPIBoolean)
{
    return ok();
}

CMPIInstanceMIFT operations()
{
    CMPIInstanceMIFT table = nothingSupported("Store");
    table.cleanup = cleanup;
    table.enumerateInstanceNames = enumNames;
    table.enumerateInstances = enumInstances;
    table.getInstance = getInstance;
    table.createInstance = createInstance;
    table.modifyInstance = modifyInstance;
    table.deleteInstance = deleteInstance;
    return table;
}

const CMPIInstanceMIFT instanceTable = operations();
const CMPIMethodMIFT methodTable{CMPIVersion200, 1, "Store", methodCleanup, invokeMethod};
CMPIInstanceMI instanceMi{&broker, &instanceTable};
CMPIMethodMI methodMi{&broker, &methodTable};

} // namespace

CMPI_EXTERN_C CMPIInstanceMI*
Store_Create_InstanceMI(const CMPIBroker* mb, const CMPIContext*, CMPIStatus* rc)
{
    broker = mb;
    const std::lock_guard lock(storeMutex);
    seed("Test_Widget", "w1");
    seed("Test_Widget", "w2");
    seed("Test_Gadget", "g1");
    seed("Test_Sprocket", "s1");
    if (logSink && logLevel <= 2)
        logSink(2, "store seeded");
    *rc = ok();
    return &instanceMi;
}

// The agent gives this library its log.
CMPI_EXTERN_C void cim_log_configure(int level, void (*sink)(int level, const char* text))
{
    logLevel = level;
    logSink = sink;
}

CMPI_EXTERN_C CMPIMethodMI* Store_Create_MethodMI(const CMPIBroker* mb, const CMPIContext*, CMPIStatus* rc)
{
    broker = mb;
    *rc = ok();
    return &methodMi;
}
