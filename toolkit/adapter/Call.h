// What every CMPI function of the adapter does around its own business.
#ifndef TOOLKIT_ADAPTER_CALL_H
#define TOOLKIT_ADAPTER_CALL_H

#include "Adapter.h"
#include "CmpiThreadContext.h"
#include "Failure.h"
#include "FromCmpi.h"

#include <string>

namespace cimple_cmpi
{

// What a broker asks for, as messages call it: "get instance", "method Reset".
struct Operation
{
    Operation(const char* v, const char* o = nullptr) : verb(v), object(o) {}

    const char* verb;
    const char* object; // may be null
};

// For catch (...): a status with a text "<class>: <operation>: <reason>", made by the broker. Whatever was
// thrown is swallowed.
CMPIStatus statusOfException(const StaticData& data, const Operation& operation) noexcept;

// Runs a body; nothing that it throws gets out into the broker's C code.
template <class Body>
CMPIStatus guarded(StaticData& data, const Operation& operation, Body body) noexcept
{
    try
    {
        cimple::Error::clear();
        body();
        return {CMPI_RC_OK, nullptr};
    }
    catch (...)
    {
        return statusOfException(data, operation);
    }
}

// A call of the broker on its way to the provider: holds the provider in place and gives its code a context.
class Call
{
  public:
    Call(StaticData& data, const CMPIContext* context);

    const CMPIBroker* broker() const { return _context.broker(); }
    const CMPIContext* context() const { return _context.context(); }
    Adapter& adapter() { return _adapter; }
    // The provider, after its load. Whatever that said, the operation is the provider's to answer: it loads
    // again what it needs, refuses what it does not support, and a failure has the operation's own status.
    cimple::Provider_Handle& provider()
    {
        _adapter.load();
        return _adapter.bareProvider();
    }
    // The same for operations that read: get_instance, enum_instances and those of associations.
    cimple::Provider_Handle& providerToRead()
    {
        _adapter.loadToRead();
        return _adapter.bareProvider();
    }
    const cimple::Meta_Class* providerClass() const { return _data.registration->meta_class; }

    // Conversion of what came with the call; classes are those that the module knows.
    FromCmpi from() const { return FromCmpi(broker(), providerClass()); }

    // The class to make a model of when a request names `className`. It is the provider's class or derives
    // from it, because a provider reads a model as an instance of its own class. INVALID_CLASS for a class
    // that the module does not know or that the provider does not serve.
    const cimple::Meta_Class* modelClass(const std::string& className) const;

  private:
    StaticData& _data;
    Gate::Pass _pass;
    Adapter& _adapter;
    CmpiThreadContext _context;
    ContextScope _scope;
};

// Runs a function of a management interface.
template <class Mi, class Body>
CMPIStatus run(const Mi* mi, const CMPIContext* context, const Operation& operation, Body body) noexcept
{
    StaticData& data = StaticData::of(mi->hdl);
    return guarded(data,
                   operation,
                   [&]
                   {
                       Call call(data, context);
                       body(call);
                   });
}

} // namespace cimple_cmpi

#endif
