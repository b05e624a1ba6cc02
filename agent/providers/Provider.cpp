// Creating and ending a provider's management interfaces.
#include "agent/providers/Provider.h"

#include "agent/broker/ProviderCall.h"
#include "agent/cim/CimError.h"
#include "agent/log/log.h"

#include <cstddef>
#include <cstring>
#include <utility>

namespace cimd
{
namespace
{

// The tables of these interfaces have been the same since CMPI 1.0, so every function must be there.
template <class Table>
bool isComplete(const Table& table)
{
    for (std::size_t offset = offsetof(Table, cleanup); offset < sizeof(Table); offset += sizeof(void*))
    {
        const void* function = nullptr;
        std::memcpy(&function, reinterpret_cast<const char*>(&table) + offset, sizeof(function));
        if (!function)
            return false;
    }
    return true;
}

// Neither factories nor cleanup return results.
class NoResults : public ResultReceiver
{
};

} // namespace

Provider::Provider(const Broker& broker,
                   const ProviderLibrary& library,
                   std::string name,
                   std::string nameSpace)
    : _broker(broker), _library(library), _name(std::move(name)), _nameSpace(std::move(nameSpace))
{
}

template <class Interface>
Interface* Provider::create(const char* kind)
{
    using Specific = Interface* (*)(const CMPIBroker*, const CMPIContext*, CMPIStatus*);
    using Generic = Interface* (*)(const CMPIBroker*, const CMPIContext*, const char*, CMPIStatus*);
    const std::string suffix = std::string("_Create_") + kind + "MI";
    const std::string label = _library.file() + ": " + _name + suffix;
    const auto specific = reinterpret_cast<Specific>(_library.symbol(_name + suffix));
    const auto generic = reinterpret_cast<Generic>(_library.symbol("_Generic" + suffix));
    if (!specific && !generic)
        throw CimError(CimStatus::Failed, label + " is not exported");

    const RequestContext nobody;
    NoResults results;
    ProviderCall call(_broker, {nobody, _nameSpace, 0, {}, label}, results);
    Interface* created = nullptr;
    call.run(
        [&]
        {
            CMPIStatus status{CMPI_RC_OK, nullptr};
            created = specific ? specific(_broker.handle(), call.context(), &status)
                               : generic(_broker.handle(), call.context(), _name.c_str(), &status);
            return status;
        });
    if (!created || !created->ft || !isComplete(*created->ft))
        throw CimError(CimStatus::Failed, label + " returned no complete interface");
    log(LogLevel::Debug, "providers", label + " succeeded");
    return created;
}

// What came of it is the provider's state.
template <class Interface>
Interface* Provider::createWatched(const char* kind)
{
    const auto become = [this](std::string state)
    {
        const std::lock_guard lock(_stateMutex);
        _state = std::move(state);
    };
    try
    {
        Interface* const created = create<Interface>(kind);
        become("loaded");
        return created;
    }
    catch (const std::exception& error)
    {
        become(std::string("failed: ") + error.what());
        throw;
    }
}

std::string Provider::state() const
{
    const std::lock_guard lock(_stateMutex);
    return _state;
}

template <class Interface>
void Provider::cleanUp(InterfaceSlot<Interface>& slot, const char* kind)
{
    Interface* ending = slot.take();
    if (!ending)
        return;
    const RequestContext nobody;
    NoResults results;
    const std::string label = "cleanup of " + _name + " (" + kind + ")";
    try
    {
        ProviderCall call(_broker, {nobody, _nameSpace, 0, {}, label}, results);
        // The provider has no choice any more, so its status means nothing.
        call.run(
            [&]
            {
                ending->ft->cleanup(ending, call.context(), 1);
                return CMPIStatus{CMPI_RC_OK, nullptr};
            });
    }
    catch (const std::exception& error)
    {
        log(LogLevel::Warning, "providers", error.what());
    }
}

CMPIInstanceMI* Provider::instance()
{
    return _instance.getOrCreate([this] { return createWatched<CMPIInstanceMI>("Instance"); });
}

CMPIAssociationMI* Provider::association()
{
    return _association.getOrCreate([this] { return createWatched<CMPIAssociationMI>("Association"); });
}

CMPIMethodMI* Provider::method()
{
    return _method.getOrCreate([this] { return createWatched<CMPIMethodMI>("Method"); });
}

void Provider::cleanUp()
{
    cleanUp(_association, "association");
    cleanUp(_method, "method");
    cleanUp(_instance, "instance");
}

} // namespace cimd
