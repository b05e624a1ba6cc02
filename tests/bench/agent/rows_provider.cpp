// A provider of as many instances as the name of the class says, a kilobyte of XML each: the agent's cost
// alone.
#include "tests/agent/testproviders/test_provider.h"

#include <cstdio>
#include <cstdlib>

using namespace testprovider;

namespace
{

constexpr int kTexts = 8;   // Text1 and so on, of the superclass Bench_Rows
constexpr int kNumbers = 4; // Number1 and so on

const CMPIBroker* broker = nullptr;

// Bench_Rows10000 has ten thousand.
CMPIUint32 rowsOf(const CMPIObjectPath* path)
{
    const std::string name = className(path);
    return static_cast<CMPIUint32>(
        std::strtoul(name.c_str() + name.find_first_of("0123456789"), nullptr, 10));
}

CMPIInstance* newRow(const std::string& name, CMPIUint32 number)
{
    char id[16];
    std::snprintf(id, sizeof(id), "row-%08u", number);
    CMPIObjectPath* path = CMNewObjectPath(broker, "root/interop", name.c_str(), nullptr);
    addKey(path, "InstanceID", id);
    CMPIInstance* row = CMNewInstance(broker, path, nullptr);
    setText(row, "InstanceID", id);
    for (int i = 1; i <= kTexts; ++i)
    {
        const char property[] = {'T', 'e', 'x', 't', static_cast<char>('0' + i), '\0'};
        setText(row, property, "sixteen letters.");
    }
    for (int i = 1; i <= kNumbers; ++i)
    {
        const char property[] = {'N', 'u', 'm', 'b', 'e', 'r', static_cast<char>('0' + i), '\0'};
        const CMPIUint64 value = CMPIUint64{number} * 1000003U;
        row->ft->setProperty(row, property, reinterpret_cast<const CMPIValue*>(&value), CMPI_uint64);
    }
    return row;
}

CMPIStatus enumInstances(
    CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result, const CMPIObjectPath* path, const char**)
{
    const std::string name = className(path);
    const CMPIUint32 rows = rowsOf(path);
    for (CMPIUint32 i = 0; i < rows; ++i)
    {
        CMPIGcStat* level = broker->mft->mark(broker, nullptr); // the agent copies results
        const CMPIStatus status = CMReturnInstance(result, newRow(name, i));
        broker->mft->release(broker, level);
        if (status.rc != CMPI_RC_OK)
            return status;
    }
    return CMReturnDone(result);
}

CMPIStatus getInstance(
    CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result, const CMPIObjectPath* path, const char**)
{
    CMReturnInstance(result, newRow(className(path), 0));
    return CMReturnDone(result);
}

CMPIInstanceMIFT operations()
{
    CMPIInstanceMIFT table = nothingSupported("Rows");
    table.enumerateInstances = enumInstances;
    table.getInstance = getInstance;
    return table;
}

const CMPIInstanceMIFT instanceTable = operations();
CMPIInstanceMI instanceMi{&broker, &instanceTable};

} // namespace

CMPI_EXTERN_C CMPIInstanceMI* Rows_Create_InstanceMI(const CMPIBroker* mb, const CMPIContext*, CMPIStatus* rc)
{
    broker = mb;
    *rc = ok();
    return &instanceMi;
}
