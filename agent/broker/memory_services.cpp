// Memory services of the broker: nested object life times and plain memory.
#include "agent/broker/Broker.h"
#include "agent/broker/tables.h"

#include <cstdlib>
#include <cstring>

namespace cimd
{
namespace
{

CMPIGcStat* mark(const CMPIBroker*, CMPIStatus* rc)
{
    return answer(rc, [] { return const_cast<CMPIGcStat*>(currentScope().mark()); });
}

CMPIStatus release(const CMPIBroker*, const CMPIGcStat* level)
{
    return answer(
        [&]
        {
            if (!currentScope().release(level))
                throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "not an open level of this call");
        });
}

// Plain memory is the provider's to free, from whatever thread; libraries stay loaded until the process ends.
void* allocate(const CMPIBroker*, size_t size)
{
    return std::malloc(size);
}

void* allocateZeroed(const CMPIBroker*, size_t count, size_t size)
{
    return std::calloc(count, size);
}

void* reallocate(const CMPIBroker*, void* block, size_t size)
{
    return std::realloc(block, size);
}

char* duplicate(const CMPIBroker*, const char* text)
{
    if (!text)
        return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    auto* copy = static_cast<char*>(std::malloc(size));
    if (copy)
        std::memcpy(copy, text, size);
    return copy;
}

void freeMemory(const CMPIBroker*, void* block)
{
    std::free(block);
}

template <class Handle>
void freeObject(const CMPIBroker*, Handle* object)
{
    if (object)
        object->ft->release(object);
}

} // namespace

const CMPIBrokerMemFT kMemoryTable{CMPIVersion200,
                                   mark,
                                   release,
                                   allocate,
                                   allocateZeroed,
                                   reallocate,
                                   duplicate,
                                   freeMemory,
                                   freeObject<CMPIInstance>,
                                   freeObject<CMPIObjectPath>,
                                   freeObject<CMPIArgs>,
                                   freeObject<CMPIString>,
                                   freeObject<CMPIArray>,
                                   freeObject<CMPIDateTime>,
                                   [](const CMPIBroker*, CMPISelectExp*) {}};

} // namespace cimd
