// Life and death of providers behind their management interfaces.
#include "Adapter.h"

#include "Call.h"
#include "Failure.h"
#include <cmpimacs.h>

#include <cstdio>
#include <memory>
#include <new>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

const uint32 kMagic = 0x5DE2B131;

// Copies a function table and gives it the provider's name, e.g. "instanceDemo_Rack_Provider".
template <class Table, class Mi>
void* fill(
    StaticData& data, Table& table, Mi& mi, const Table& functions, char (&name)[128], const char* kind)
{
    snprintf(name, sizeof name, "%s%s", kind, data.registration->provider_name);
    table = functions;
    table.miName = name;
    mi.hdl = &data;
    mi.ft = &table;
    return &mi;
}

} // namespace

void Adapter::load() noexcept
{
    if (_loaded)
        return;
    std::lock_guard<std::recursive_mutex> lock(_loading);
    if (std::exchange(_begun, true))
        return;
    try
    {
        checkProvider(_provider.load());
    }
    catch (...)
    {
        CIMPLE_ERR(("%s", Failure::current().in("load").in(_className).what()));
    }
    _used = true;
    _loaded = true;
}

StaticData& StaticData::in(__CMPI_Static_Data& block, const Registration* registration)
{
    static std::mutex making;
    std::lock_guard<std::mutex> lock(making);
    auto* data = reinterpret_cast<StaticData*>(&block);
    uint32 magic; // the first member; zero as long as there is none
    memcpy(&magic, &block, sizeof magic);
    if (magic != kMagic)
        data = new (&block) StaticData(registration);
    return *data;
}

// All tables are filled at once, before any interface is handed out.
StaticData::StaticData(const Registration* r) : magic(kMagic), registration(r)
{
    fill(*this, instanceFT, instanceMI, kInstanceFunctions, names[kInstanceMi], "instance");
    fill(*this, methodFT, methodMI, kMethodFunctions, names[kMethodMi], "method");
    fill(*this, associationFT, associationMI, kAssociationFunctions, names[kAssociationMi], "association");
    fill(*this, indicationFT, indicationMI, kIndicationFunctions, names[kIndicationMi], "indication");
}

Adapter& StaticData::adapter()
{
    if (Adapter* adapter = current)
        return *adapter;
    std::lock_guard<std::mutex> lock(mutex);
    if (!current)
        current = new Adapter(registration);
    return *current;
}

void* StaticData::interface(MiKind kind)
{
    std::lock_guard<std::mutex> lock(mutex);
    made[kind] = true;
    void* const interfaces[kMiKinds] = {&instanceMI, &methodMI, &associationMI, &indicationMI};
    return interfaces[kind];
}

CMPIStatus StaticData::cleanup(MiKind kind, const CMPIContext* context, bool terminating)
{
    return guarded(*this,
                   "cleanup",
                   [&]
                   {
                       if (calls.entered())
                           throw Failure(CMPI_RC_DO_NOT_UNLOAD, "the calling thread is inside the provider");
                       {
                           const Gate::Pass pass(calls, Gate::Pass::kWait);
                           std::lock_guard<std::mutex> lock(mutex);
                           Adapter* adapter = current;
                           if (!terminating && (!allowUnload || (adapter && adapter->indications().inUse())))
                               throw Failure(CMPI_RC_DO_NOT_UNLOAD, "the provider is in use");
                           made[kind] = false;
                           for (bool other : made)
                               if (other)
                                   return;
                           if (!adapter)
                               return;
                       }
                       takeDown(context);
                   });
}

void StaticData::takeDown(const CMPIContext* context)
{
    CmpiThreadContext threadContext(broker, context, allowUnload);
    const ContextScope scope(threadContext);

    {
        // A provider's threads may come back through the CIM server until they are stopped, so the gate is
        // still open now.
        const Gate::Pass pass(calls, Gate::Pass::kWait);
        if (Adapter* adapter = current; adapter && adapter->indications().enabled())
            adapter->indications().disable(adapter->bareProvider());
    }

    struct Closed
    {
        explicit Closed(Gate& gate) : _gate(gate) { _gate.close(); }
        ~Closed() { _gate.open(); }
        Gate& _gate;
    } closed(calls);
    const std::unique_ptr<Adapter> adapter(current.exchange(nullptr));
    if (!adapter || !adapter->used())
        return;
    if (const Unload_Status status = adapter->bareProvider().unload(); status != UNLOAD_OK)
        throw Failure::ofProvider(status).in("unload");
}

} // namespace cimple_cmpi
