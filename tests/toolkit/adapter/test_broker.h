// A CMPI broker for tests: it keeps what providers return and writes down every rule they break.
#ifndef TESTS_TOOLKIT_ADAPTER_TEST_BROKER_H
#define TESTS_TOOLKIT_ADAPTER_TEST_BROKER_H

#include <functional>
#include <set>

#include "test_objects.h"

namespace test_broker
{

// What came of one call of a management interface.
struct Outcome
{
    CMPIrc rc = CMPI_RC_ERR_FAILED;
    std::string message;
    std::vector<std::string> instances;
    std::vector<std::string> paths; // those of the instances, too
    std::vector<std::string> data;
    std::string out;        // output arguments of a method, a list
    size_t mostObjects = 0; // of the broker alive when a result was returned

    bool ok() const { return rc == CMPI_RC_OK; }
    // Everything returned, in order; for a failure "<code>: <message>".
    std::vector<std::string> texts() const;
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
    // With results it is checked that returnDone came exactly once with success and not at all with a
    // failure. Of one result the pointer is kept; where there may be many, each is copied.
    enum ResultRule
    {
        kManyResults,
        kOneResult,
        kWithoutResult
    };
    typedef std::function<CMPIStatus(const CMPIContext*, const CMPIResult*)> Function;
    Outcome call(const Function& function, ResultRule rule = kManyResults);

    // From now on calls promise that results are copied, and there are memory services.
    void copyResults();

    // Adds to an instance of the server, made for a provider or for a request, what the schema says.
    void fill(CMPIInstance* inst) const;

    // An indication from the provider, on its thread: "root/demo Demo_SensorAlert{...}".
    void deliver(const char* ns, const CMPIInstance* indication);
    std::vector<std::string> deliveries() const;

    // What follows is set by tests.

    // The properties of a class in the server's schema with their defaults, if the server fills instances.
    std::function<std::vector<Named>(const std::string& className)> schema;
    // Calls take so many results and refuse the next, as a broker does whose client has gone.
    size_t refuseAfter = size_t(-1);
    // Factories ("newArray", "newString" ...) that fail.
    std::set<std::string> failing;
    // Answers up-calls: "get root/demo:Demo_Rack.Name=\"r1\"", "modify <path> <instance>" and so on.
    std::function<Outcome(const std::string& request)> upCalls;
    // Called on the delivering thread for every indication, before it is kept.
    std::function<void()> onDelivery;

  private:
    CMPIBroker _cmpi;
    mutable std::mutex _mutex; // guards _deliveries
    std::vector<std::string> _deliveries;
    bool _copiesResults = false;
    Journal _journal;
};

} // namespace test_broker

#endif
