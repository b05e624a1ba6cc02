// A provider that ends the process it runs in, does not come back, or does not stop giving: the key Mode says
// which.
#include "tests/agent/testproviders/test_provider.h"

#include <condition_variable>
#include <cstdlib>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>

using namespace testprovider;

namespace
{

constexpr int kOddExit = 7;

const CMPIBroker* broker = nullptr;

// Requests that wait, and the one that lets them go.
std::mutex gate;
std::condition_variable changed;
unsigned waiting = 0;
bool isOpen = false;

CMPIUint32 count = 1; // of instances in an enumeration; modifyInstance sets it

CMPIInstance* newInstance(const std::string& mode, CMPIUint32 number)
{
    CMPIObjectPath* path = CMNewObjectPath(broker, "root/test", "Test_Wild", nullptr);
    addKey(path, "Mode", mode.c_str());
    CMPIInstance* instance = CMNewInstance(broker, path, nullptr);
    setNumber(instance, "Count", number);
    return instance;
}

void touchForbiddenMemory()
{
    void* const page = mmap(nullptr, 1, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    *static_cast<volatile char*>(page) = 1;
}

void waitForGate()
{
    std::unique_lock<std::mutex> lock(gate);
    ++waiting;
    changed.notify_all();
    changed.wait(lock, [] { return isOpen; });
    --waiting;
}

void waitForWaiting()
{
    std::unique_lock<std::mutex> lock(gate);
    changed.wait(lock, [] { return waiting > 0; });
}

void openGate()
{
    const std::lock_guard<std::mutex> lock(gate);
    isOpen = true;
    changed.notify_all();
}

const std::map<std::string, std::function<void()>>& behaviours()
{
    static const auto& table = *new std::map<std::string, std::function<void()>>{
        {"good", [] {}},
        {"segv", touchForbiddenMemory},
        {"abort", [] { std::abort(); }},
        {"exit", [] { _exit(kOddExit); }},
        {"thread throws", [] { std::thread([] { throw kOddExit; }).join(); }},
        {"waits", waitForGate}, // until the gate is opened
        {"sees one wait", waitForWaiting},
        {"opens the gate", openGate},
    };
    return table;
}

CMPIStatus getInstance(const Call& call)
{
    const std::string mode = keyText(call.path, "Mode");
    const auto place = behaviours().find(mode);
    if (place == behaviours().end())
        return {CMPI_RC_ERR_NOT_FOUND, nullptr};
    place->second();
    return call.returnOne(newInstance(mode, 0));
}

CMPIStatus enumInstances(const Call& call)
{
    for (CMPIUint32 i = 0; i < count; ++i)
    {
        CMPIGcStat* level = broker->mft->mark(broker, nullptr); // the agent copies results
        const CMPIStatus status = CMReturnInstance(call.result, newInstance(std::to_string(i), i));
        broker->mft->release(broker, level);
        if (status.rc != CMPI_RC_OK)
            return status;
    }
    return CMReturnDone(call.result);
}

CMPIStatus modifyInstance(const Call& call)
{
    count = numberOf(call.instance, "Count");
    return CMReturnDone(call.result);
}

CMPIInstanceMIFT operations()
{
    CMPIInstanceMIFT functions = nothingSupported("Wild");
    functions.enumerateInstances = operation<enumInstances>;
    functions.getInstance = operation<getInstance>;
    functions.modifyInstance = operation<modifyInstance>;
    return functions;
}

const CMPIInstanceMIFT table = operations();

} // namespace

PROVIDER_INTERFACE(Wild, Instance, table)
