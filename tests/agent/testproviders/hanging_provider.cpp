// A provider that does not come back as long as there is a file with the name that CIMD_TEST_HANGS says.
#include "tests/agent/testproviders/test_provider.h"

#include <chrono>
#include <cstdlib>
#include <thread>
#include <unistd.h>

using namespace testprovider;

namespace
{

const CMPIBroker* broker = nullptr;

CMPIStatus enumInstances(const Call& call)
{
    const char* const file = std::getenv("CIMD_TEST_HANGS");
    while (file != nullptr && access(file, F_OK) == 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    // Who has waited in vain must not take it.
    CMPIObjectPath* path = CMNewObjectPath(broker, "root/interop", "VRAX_VoltageSensor", nullptr);
    for (const char* key : {"SystemCreationClassName", "SystemName", "CreationClassName", "DeviceID"})
        addKey(path, key, "1");
    const CMPIStatus status = CMReturnInstance(call.result, CMNewInstance(broker, path, nullptr));
    return status.rc == CMPI_RC_OK ? CMReturnDone(call.result) : status;
}

CMPIInstanceMIFT operations()
{
    CMPIInstanceMIFT functions = nothingSupported("Hanging");
    functions.enumerateInstances = operation<enumInstances>;
    return functions;
}

const CMPIInstanceMIFT table = operations();

} // namespace

PROVIDER_INTERFACE(Hanging, Instance, table)
