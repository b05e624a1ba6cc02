// The broker object and the threads of providers.
#include "agent/broker/Broker.h"

#include "agent/broker/tables.h"

namespace cimd
{

Broker::Broker(const ClassRepository& repository, const CMPIBrokerFT& upCalls)
    : _repository(repository), _handle{this, &upCalls, &kFactoryTable, &kSystemTable, &kMemoryTable}
{
}

Broker& Broker::of(const CMPIBroker* handle)
{
    if (!handle || handle->eft != &kFactoryTable)
        throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "not this broker");
    return *static_cast<Broker*>(const_cast<void*>(handle->hdl));
}

CMPIContext* Broker::prepareThread(const ContextObject& context)
{
    auto copy = std::make_unique<ContextObject>(context);
    CMPIContext* result = copy.get();
    const std::lock_guard lock(_mutex);
    _threads.emplace(result, Thread{std::move(copy), nullptr});
    return result;
}

void Broker::attachThread(const CMPIContext* context)
{
    const std::lock_guard lock(_mutex);
    const auto place = _threads.find(context);
    if (place == _threads.end() || place->second.scope)
        throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "the context was not prepared for a new thread");
    place->second.scope = std::make_unique<CallScope>(_repository);
}

void Broker::detachThread(const CMPIContext* context)
{
    Thread ended;
    const std::lock_guard lock(_mutex);
    const auto place = _threads.find(context);
    if (place == _threads.end() || !place->second.scope || place->second.scope.get() != CallScope::current())
        throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE,
                        "the context is not the one this thread was attached with");
    ended = std::move(place->second);
    _threads.erase(place);
}

} // namespace cimd
