// A CMPI broker for tests: it keeps what providers return and writes down every rule they break.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "test_objects.h"

namespace test_broker
{

// What came of one call of a management interface.
struct Outcome
{
    CMPIrc rc = CMPI_RC_ERR_FAILED;
    std::string message;
    std::vector<Inst> instances;
    std::vector<Path> paths;
    std::vector<Value> data;
    std::vector<Named> out; // output arguments of a method
    size_t mostObjects = 0; // of the broker alive when a result was returned

    bool ok() const { return rc == CMPI_RC_OK; }
    // textOf() of everything returned, in order; for a failure "<code>: <message>".
    std::vector<std::string> texts() const;
};

struct Delivery
{
    std::string ns;
    Inst indication;
};

class Broker
{
  public:
    Broker();
    Broker(const Broker&) = delete;
    Broker& operator=(const Broker&) = delete;

    const CMPIBroker* cmpi() const { return &_cmpi; }
    Journal& journal() { return _journal; }

    // Broken rules so far, one per line; empty if all is well. To be called between calls.
    std::string violations() const;

    // Runs a function of a management interface on the calling thread. All its objects die when it returns.
    // kWithResult checks that returnDone came exactly once with success and not at all with a failure.
    enum ResultRule
    {
        kWithResult,
        kWithoutResult
    };
    typedef std::function<CMPIStatus(const CMPIContext*, const CMPIResult*)> Function;
    Outcome call(const Function& function, ResultRule rule = kWithResult);

    // From now on calls take so many results and refuse the next, as a broker does whose client has gone.
    void refuseAfter(size_t results) { _refuseAfter = results; }

    // From now on calls promise that results are copied, and there are memory services.
    void copyResults();

    // From now on this factory ("newArray", "newString" ...) fails.
    void fail(const std::string& factory);
    bool failing(const char* factory) const;

    // Up-calls for a class go to these interfaces; either may be null.
    void route(const std::string& className, CMPIInstanceMI* instances, CMPIMethodMI* methods);

    std::vector<Delivery> deliveries() const;
    // Called on the delivering thread for every indication, before it is kept.
    void onDelivery(std::function<void(const Delivery&)> hook) { _onDelivery = std::move(hook); }
    void deliver(const char* ns, const CMPIInstance* indication);

    struct Route
    {
        CMPIInstanceMI* instances;
        CMPIMethodMI* methods;
    };
    const Route* routeTo(const CMPIObjectPath* path) const;

  private:
    CMPIBroker _cmpi;
    mutable std::mutex _mutex; // guards _failing and _deliveries
    std::vector<std::string> _failing;
    std::vector<Delivery> _deliveries;
    std::map<std::string, Route> _routes;
    std::function<void(const Delivery&)> _onDelivery;
    size_t _refuseAfter = size_t(-1);
    bool _copiesResults = false;
    Journal _journal;
};

} // namespace test_broker
