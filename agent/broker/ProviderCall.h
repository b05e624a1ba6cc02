// One call of a provider function: its arguments, its results and its status.
#ifndef AGENT_BROKER_PROVIDERCALL_H
#define AGENT_BROKER_PROVIDERCALL_H

#include "agent/broker/Broker.h"
#include "agent/broker/result.h"

#include <optional>
#include <string>
#include <vector>

namespace cimd
{

// Everything handed to the provider lives until this object ends. Used on one thread.
class ProviderCall
{
  public:
    struct Origin
    {
        const RequestContext& request;
        std::string nameSpace;
        CMPIFlags flags = 0;
        std::string role;
        std::string label; // "GetInstance VRAX_FCPort", for messages
    };

    ProviderCall(const Broker& broker, Origin origin, ResultReceiver& receiver);

    const CMPIContext* context() const { return _context; }
    const CMPIResult* result() const { return _result; }

    CMPIObjectPath* path(const ObjectPath& path);
    CMPIInstance* instance(const Instance& instance);
    CMPIArgs* arguments(std::vector<Argument> arguments = {});
    // Null for all properties.
    const char** properties(const PropertyList& list);
    // Null for an empty name, which does not filter.
    static const char* filter(const CimName& name) { return name.empty() ? nullptr : name.c_str(); }

    // Calls the provider. CimError if it fails: with its own code and text, with what was wrong with its
    // results, or because it threw. What a receiver threw is thrown again.
    template <class Function>
    void run(Function function)
    {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        bool hasThrown = false;
        try
        {
            status = function();
        }
        catch (...)
        {
            status = statusOfException();
            hasThrown = true;
        }
        finish(status, hasThrown);
    }

    // False if the provider left out returnDone, which is a fault without consequence.
    bool isDone() const { return _result->isDone; }

  private:
    void finish(const CMPIStatus& status, bool hasThrown) const;

    const Broker& _broker;
    std::string _label;
    CallScope _scope;
    ContextObject* _context;
    ResultObject* _result;
    std::vector<std::vector<const char*>> _lists;
};

// CimError for a status that is not OK; the provider's text or, without one, `label` and the name of the
// code. Codes that clients do not know become CIM_ERR_FAILED.
[[noreturn]] void throwStatus(const CMPIStatus& status, const std::string& label);

} // namespace cimd

#endif
