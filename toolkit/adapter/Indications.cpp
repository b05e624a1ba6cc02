// Enabling, disabling and delivering indications.
#include "Indications.h"

#include "CmpiThreadContext.h"
#include "Failure.h"
#include "ToCmpi.h"
#include <cmpimacs.h>

#include <vector>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

void deliverTo(const std::string& nameSpace,
               const CmpiThreadContext& context,
               const Instance* indication,
               Prefilled_Classes& prefilled)
{
    ToCmpi to(context.broker(), nameSpace, ToCmpi::kScope, &prefilled);
    const CMPIStatus status = CBDeliverIndication(
        context.broker(), context.context(), nameSpace.c_str(), to.looseInstance(indication));
    if (status.rc != CMPI_RC_OK) // nobody listens, for example: no concern of the provider
        CIMPLE_INFO(("%s: the CIM server dropped an indication in %s (%d)",
                     indication->meta_class->name,
                     nameSpace.c_str(),
                     static_cast<int>(status.rc)));
}

} // namespace

void Indications::enable(Provider_Handle& provider)
{
    std::lock_guard<std::mutex> lock(_switching);
    if (_enabled)
        return;
    _prefilled.emplace();
    _deliveries.open(); // the provider may deliver from inside of its enable_indications
    try
    {
        checkProvider(provider.enable_indications(receive, this));
    }
    catch (...)
    {
        _deliveries.close();
        throw;
    }
    _enabled = true;
}

void Indications::disable(Provider_Handle& provider)
{
    std::lock_guard<std::mutex> lock(_switching);
    if (!_enabled)
        return;
    checkProvider(provider.disable_indications());
    _deliveries.close();
    _enabled = false;
}

void Indications::activate(const std::string& nameSpace)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _nameSpaces[nameSpace]++;
}

void Indications::deactivate(const std::string& nameSpace)
{
    std::lock_guard<std::mutex> lock(_mutex);
    const auto at = _nameSpaces.find(nameSpace);
    if (at != _nameSpaces.end() && --at->second == 0)
        _nameSpaces.erase(at);
}

bool Indications::inUse() const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return _enabled || !_nameSpaces.empty();
}

bool Indications::receive(Instance* indication, void* self)
{
    if (!indication) // the handler is gone; so may be the receiver
        return false;
    const Ref<Instance> owned(indication);
    try
    {
        return static_cast<Indications*>(self)->deliver(indication);
    }
    catch (const std::exception& e)
    {
        CIMPLE_WARN(("%s: an indication was lost: %s", indication->meta_class->name, e.what()));
        return true;
    }
}

bool Indications::deliver(const Instance* indication)
{
    const Gate::Pass pass(_deliveries, Gate::Pass::kNoWait);
    if (!pass)
        return false;
    const auto* context = dynamic_cast<const CmpiThreadContext*>(Thread_Context::top());
    if (!context)
        throw Failure(CMPI_RC_ERR_FAILED, "its thread was not created with cimple::Thread by this provider");

    std::vector<std::string> nameSpaces;
    {
        std::lock_guard<std::mutex> lock(_mutex);
        for (const auto& item : _nameSpaces)
            nameSpaces.push_back(item.first);
    }
    for (const std::string& nameSpace : nameSpaces)
        deliverTo(nameSpace, *context, indication, *_prefilled);
    return true;
}

} // namespace cimple_cmpi
