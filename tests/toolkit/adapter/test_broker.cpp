// Calls of management interfaces, and the results they return.
#include "test_broker.h"

#include <algorithm>
#include <cmpiresults.h>

namespace test_broker
{

namespace
{

// The result object of one call.
struct Result : CMPIResult
{
    Result(Journal& j, Outcome& o, size_t limit);

    // Whether one more item is let in.
    CMPIStatus admit()
    {
        if (done != 0)
            journal.violation("a result was returned after returnDone");
        outcome.mostObjects = std::max(outcome.mostObjects, journal.objectsAlive());
        const bool full = taken++ >= limit;
        return {full ? CMPI_RC_ERR_INVALID_HANDLE : CMPI_RC_OK, nullptr};
    }

    Journal& journal;
    Outcome& outcome;
    size_t limit;
    size_t taken = 0;
    int done = 0;
};

Result& resultOf(const CMPIResult* result)
{
    return *static_cast<Result*>(const_cast<CMPIResult*>(result));
}

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value, const CMPIType type)
{
    Result& r = resultOf(result);
    if (!value || type == CMPI_ref || type == CMPI_instance)
        r.journal.violation("returnData takes neither NULL nor references nor instances in all brokers");
    const CMPIStatus status = r.admit();
    if (status.rc == CMPI_RC_OK)
        r.outcome.data.push_back(valueOf(value, type));
    return status;
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* inst)
{
    Result& r = resultOf(result);
    const CMPIStatus status = r.admit();
    if (status.rc == CMPI_RC_OK)
        r.outcome.instances.push_back(contentOf(inst));
    return status;
}

CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path)
{
    Result& r = resultOf(result);
    const CMPIStatus status = r.admit();
    if (status.rc == CMPI_RC_OK)
        r.outcome.paths.push_back(contentOf(path));
    return status;
}

CMPIStatus returnDone(const CMPIResult* result)
{
    resultOf(result).done++;
    return {CMPI_RC_OK, nullptr};
}

const CMPIResultFT resultFT = {
    CMPIVersion200, nullptr, nullptr, returnData, returnInstance, returnObjectPath, returnDone, nullptr};

Result::Result(Journal& j, Outcome& o, size_t l) : CMPIResult(), journal(j), outcome(o), limit(l)
{
    hdl = this;
    ft = &resultFT;
}

std::vector<Named> requestEntries(bool copiesResults)
{
    std::vector<Named> entries = {{CMPIInitNameSpace, Value::string("root/demo")},
                                  {CMPIPrincipal, Value::string("operator")}};
    if (copiesResults)
        entries.emplace_back(CMPIResultsAreCopied, Value::boolean(true));
    return entries;
}

// Marks are levels of the session, counted from one: a null pointer is none.
CMPIGcStat* mark(const CMPIBroker*, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return reinterpret_cast<CMPIGcStat*>(Session::current()->level() + 1);
}

CMPIStatus release(const CMPIBroker*, const CMPIGcStat* level)
{
    Session::current()->endSince(reinterpret_cast<size_t>(level) - 1);
    return {CMPI_RC_OK, nullptr};
}

CMPIBrokerMemFT memoryTable()
{
    CMPIBrokerMemFT table = {};
    table.ftVersion = CMPIVersion200;
    table.mark = mark;
    table.release = release;
    return table;
}

const CMPIBrokerMemFT memoryFT = memoryTable();

} // namespace

std::vector<std::string> Outcome::texts() const
{
    if (!ok())
        return {std::to_string(rc) + ": " + message};
    std::vector<std::string> result;
    for (const Inst& inst : instances)
        result.push_back(textOf(inst));
    for (const Path& path : paths)
        result.push_back(textOf(path));
    for (const Value& value : data)
        result.push_back(textOf(value));
    for (const Named& item : out)
        result.push_back(item.first + "=" + textOf(item.second));
    return result;
}

Broker::Broker() : _cmpi(services())
{
    _cmpi.hdl = this;
}

void Broker::copyResults()
{
    _copiesResults = true;
    _cmpi.mft = &memoryFT;
}

std::string Broker::violations() const
{
    std::string result;
    for (const std::string& text : _journal.violations())
        result += text + "\n";
    if (const size_t n = _journal.objectsAlive())
        result += std::to_string(n) + " thread contexts live on\n";
    return result;
}

Outcome Broker::call(const Function& function, ResultRule rule)
{
    Session session;
    session.setContext(make<CMPIContext>(_journal, requestEntries(_copiesResults)));
    Outcome outcome;
    Result result(_journal, outcome, _refuseAfter);
    const CMPIStatus status = function(session.context(), &result);
    outcome.rc = status.rc;
    outcome.message = textOf(status.msg);
    if (rule == kWithResult && result.done != (outcome.ok() ? 1 : 0))
        _journal.violation("returnDone came " + std::to_string(result.done) + " times with status " +
                           std::to_string(status.rc));
    return outcome;
}

void Broker::fail(const std::string& factory)
{
    std::lock_guard<std::mutex> lock(_mutex);
    _failing.push_back(factory);
}

bool Broker::failing(const char* factory) const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return std::find(_failing.begin(), _failing.end(), factory) != _failing.end();
}

void Broker::route(const std::string& className, CMPIInstanceMI* instances, CMPIMethodMI* methods)
{
    _routes[className] = {instances, methods};
}

const Broker::Route* Broker::routeTo(const CMPIObjectPath* path) const
{
    const auto at = _routes.find(contentOf(path).className);
    return at != _routes.end() ? &at->second : nullptr;
}

std::vector<Delivery> Broker::deliveries() const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return _deliveries;
}

void Broker::deliver(const char* ns, const CMPIInstance* indication)
{
    const Delivery delivery = {ns, contentOf(indication)};
    if (_onDelivery)
        _onDelivery(delivery);
    std::lock_guard<std::mutex> lock(_mutex);
    _deliveries.push_back(delivery);
}

} // namespace test_broker
