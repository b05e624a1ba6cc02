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

// Of keys; other types only need to differ.
std::string keyValue(const CMPIData& data)
{
    switch (data.type)
    {
    case CMPI_string:
        return textOf(data.value.string);
    case CMPI_boolean:
        return data.value.boolean ? "true" : "false";
    case CMPI_uint32:
        return std::to_string(data.value.uint32);
    default:
        return textOf(CMGetStringFormat(data.value.dateTime, nullptr));
    }
}

std::string keyOf(const CMPIObjectPath* path)
{
    std::string text = className(path);
    const CMPICount count = CMGetKeyCount(path, nullptr);
    for (CMPICount i = 0; i < count; ++i)
    {
        CMPIString* name = nullptr;
        const CMPIData key = CMGetKeyAt(path, i, &name, nullptr);
        text += "|" + textOf(name) + "=" + keyValue(key);
    }
    return text;
}

void put(CMPIObjectPath* path, const CMPIInstance* instance)
{
    CMPIInstance* copy = CMClone(instance, nullptr);
    copy->ft->setObjectPath(copy, path);
    store()[keyOf(path)] = copy;
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
CMPIStatus forEach(const Call& call, Return returnOne)
{
    const std::lock_guard lock(storeMutex);
    const std::string prefix = className(call.path) + "|";
    for (const auto& [key, instance] : store())
    {
        if (key.compare(0, prefix.size(), prefix) != 0)
            continue;
        const CMPIStatus status = returnOne(instance);
        if (status.rc != CMPI_RC_OK)
            return status;
    }
    return CMReturnDone(call.result);
}

CMPIStatus enumNames(const Call& call)
{
    return forEach(call,
                   [&](CMPIInstance* instance)
                   { return CMReturnObjectPath(call.result, CMGetObjectPath(instance, nullptr)); });
}

CMPIStatus enumInstances(const Call& call)
{
    return forEach(call,
                   [&](CMPIInstance* instance)
                   {
                       CMPIInstance* copy = CMClone(instance, nullptr);
                       copy->ft->setPropertyFilter(copy, call.properties, nullptr);
                       const CMPIStatus status = CMReturnInstance(call.result, copy);
                       CMRelease(copy);
                       return status;
                   });
}

// Does something with the stored instance of the path.
template <class Use>
CMPIStatus withStored(const Call& call, Use use)
{
    const std::lock_guard lock(storeMutex);
    const auto place = store().find(keyOf(call.path));
    if (place == store().end())
        return {CMPI_RC_ERR_NOT_FOUND, nullptr};
    use(place);
    return CMReturnDone(call.result);
}

CMPIStatus getInstance(const Call& call)
{
    const CMPIStatus status =
        withStored(call, [&](auto place) { CMReturnInstance(call.result, place->second); });
    return status.rc == CMPI_RC_OK
               ? status
               : failed(broker, status.rc, ("nothing stored as " + keyOf(call.path)).c_str());
}

CMPIStatus createInstance(const Call& call)
{
    const std::lock_guard lock(storeMutex);
    CMPIObjectPath* path = CMGetObjectPath(call.instance, nullptr);
    path->ft->setNameSpaceFromObjectPath(path, call.path);
    if (store().count(keyOf(path)) != 0)
        return failed(broker, CMPI_RC_ERR_ALREADY_EXISTS, "stored already");
    put(path, call.instance);
    CMReturnObjectPath(call.result, path);
    return CMReturnDone(call.result);
}

bool isListed(const char** list, const std::string& name)
{
    if (!list)
        return true;
    while (*list && strcasecmp(*list, name.c_str()) != 0)
        ++list;
    return *list != nullptr;
}

CMPIStatus modifyInstance(const Call& call)
{
    return withStored(call,
                      [&](auto place)
                      {
                          CMPIInstance* stored = place->second;
                          const CMPICount count = CMGetPropertyCount(call.instance, nullptr);
                          for (CMPICount i = 0; i < count; ++i)
                          {
                              CMPIString* name = nullptr;
                              const CMPIData data = CMGetPropertyAt(call.instance, i, &name, nullptr);
                              const CMPIValue* value = CMIsNullValue(data) ? nullptr : &data.value;
                              if (isListed(call.properties, textOf(name)))
                                  stored->ft->setProperty(stored, textOf(name).c_str(), value, data.type);
                          }
                      });
}

CMPIStatus deleteInstance(const Call& call)
{
    return withStored(call,
                      [&](auto place)
                      {
                          CMRelease(place->second);
                          store().erase(place);
                      });
}

CMPIStatus returnNumber(const CMPIResult* result, CMPIUint32 value)
{
    CMReturnData(result, &value, CMPI_uint32);
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
    CMPIObjectPath* path = CMNewObjectPath(broker, "root/test", "Test_Part", nullptr);
    CMPIInstance* part = CMNewInstance(broker, path, nullptr);
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
        CMReturnData(result, &number, CMPI_uint32);
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
        return misbehave(result, textOf(CMGetArg(in, "How", nullptr).value.string), out);
    if (name == "Total")
    {
        const CMPIUint64 keys = CMGetKeyCount(path, nullptr); // a static method is called without an instance
        CMReturnData(result, &keys, CMPI_uint64);
        return CMReturnDone(result);
    }
    return failed(broker, CMPI_RC_ERR_METHOD_NOT_AVAILABLE, "not implemented");
}

CMPIInstanceMIFT operations()
{
    CMPIInstanceMIFT functions = nothingSupported("Store");
    functions.cleanup = cleanup;
    functions.enumerateInstanceNames = operation<enumNames>;
    functions.enumerateInstances = operation<enumInstances>;
    functions.getInstance = operation<getInstance>;
    functions.createInstance = operation<createInstance>;
    functions.modifyInstance = operation<modifyInstance>;
    functions.deleteInstance = operation<deleteInstance>;
    return functions;
}

const CMPIInstanceMIFT instanceTable = operations();
const CMPIMethodMIFT methodTable{CMPIVersion200, 1, "Store", nothingToClean, invokeMethod};

} // namespace

PROVIDER_INTERFACE(Store, Method, methodTable)

CMPI_EXTERN_C CMPIInstanceMI*
Store_Create_InstanceMI(const CMPIBroker* mb, const CMPIContext*, CMPIStatus* rc)
{
    static CMPIInstanceMI mi{&broker, &instanceTable};
    broker = mb;
    const std::lock_guard lock(storeMutex);
    seed("Test_Widget", "w1");
    seed("Test_Widget", "w2");
    seed("Test_Gadget", "g1");
    seed("Test_Sprocket", "s1");
    if (logSink && logLevel <= 2)
        logSink(2, "store seeded");
    *rc = ok();
    return &mi;
}

// The agent gives this library its log.
CMPI_EXTERN_C void cim_log_configure(int level, void (*sink)(int level, const char* text))
{
    logLevel = level;
    logSink = sink;
}
