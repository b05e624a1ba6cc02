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
    Journal& journal;
    Outcome& outcome;
    const size_t limit;
    const bool keepsPointers;
    size_t taken = 0;
    int done = 0;
    std::vector<Hold> kept = {};
};

// One more item, if it is let in. Null: a value, which has no object.
bool admit(const CMPIResult* result, const Object* object)
{
    Result& r = *static_cast<Result*>(const_cast<CMPIResult*>(result));
    if (r.done != 0)
        r.journal.violation("a result was returned after returnDone");
    r.outcome.mostObjects = std::max(r.outcome.mostObjects, r.journal.objectsAlive.load());
    if (r.taken++ >= r.limit)
        return false;
    if (object && r.keepsPointers)
        r.kept.push_back(object->holds);
    return true;
}

constexpr CMPIStatus kTaken = {CMPI_RC_OK, nullptr};
constexpr CMPIStatus kRefused = {CMPI_RC_ERR_INVALID_HANDLE, nullptr};

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value, const CMPIType type)
{
    if (!value || type == CMPI_ref || type == CMPI_instance)
        static_cast<const Result*>(result)->journal.violation(
            "returnData takes neither NULL nor references nor instances in all brokers");
    const auto [text, object] = valueOf(value, type);
    if (!admit(result, object))
        return kRefused;
    static_cast<const Result*>(result)->outcome.data.push_back(text);
    return kTaken;
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* inst)
{
    if (!admit(result, &self(inst)))
        return kRefused;
    Outcome& outcome = static_cast<const Result*>(result)->outcome;
    outcome.instances.push_back(textOf(inst));
    outcome.paths.push_back(self(inst).path);
    return kTaken;
}

CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path)
{
    if (!admit(result, &self(path)))
        return kRefused;
    static_cast<const Result*>(result)->outcome.paths.push_back(textOf(path));
    return kTaken;
}

CMPIStatus returnDone(const CMPIResult* result)
{
    static_cast<Result*>(const_cast<CMPIResult*>(result))->done++;
    return {CMPI_RC_OK, nullptr};
}

const CMPIResultFT kResults = {
    CMPIVersion200, nullptr, nullptr, returnData, returnInstance, returnObjectPath, returnDone, nullptr};

// Marks are levels of the session, counted from one: a null pointer is none.
CMPIGcStat* mark(const CMPIBroker*, CMPIStatus* rc)
{
    done(rc, CMPI_RC_OK);
    return reinterpret_cast<CMPIGcStat*>(Session::current()->objects.size() + 1);
}

CMPIStatus release(const CMPIBroker*, const CMPIGcStat* level)
{
    Session::current()->objects.resize(reinterpret_cast<size_t>(level) - 1);
    return {CMPI_RC_OK, nullptr};
}

const CMPIBrokerMemFT kMemory = []
{
    CMPIBrokerMemFT table = {};
    table.ftVersion = CMPIVersion200;
    table.mark = mark;
    table.release = release;
    return table;
}();

} // namespace

std::vector<std::string> Outcome::texts() const
{
    if (!ok())
        return {std::to_string(rc) + ": " + message};
    std::vector<std::string> result = instances.empty() ? paths : instances;
    result.insert(result.end(), data.begin(), data.end());
    for (const std::string& argument : split(out))
        result.push_back(argument);
    return result;
}

Broker::Broker() : _cmpi(services())
{
    _cmpi.hdl = this;
}

void Broker::copyResults()
{
    _copiesResults = true;
    _cmpi.mft = &kMemory;
}

std::string Broker::violations() const
{
    std::string result;
    for (const std::string& text : _journal.violations())
        result += text + "\n";
    if (const size_t n = _journal.objectsAlive)
        result += std::to_string(n) + " thread contexts live on\n";
    return result;
}

Outcome Broker::call(const Function& function, ResultRule rule)
{
    Session session;
    const std::vector<Named> entries = {{CMPIInitNameSpace, quoted("root/demo")},
                                        {CMPIPrincipal, quoted("operator")},
                                        {CMPIResultsAreCopied, _copiesResults ? "true" : "null"}};
    session.context = make<CMPIContext>(_journal, listOf(entries));
    Outcome outcome;
    Result result = {{&result, &kResults}, _journal, outcome, refuseAfter, rule == kOneResult};
    const CMPIStatus status = function(session.context, &result);
    outcome.rc = status.rc;
    outcome.message = status.msg ? self(status.msg).text : "";
    if (rule != kWithoutResult && result.done != (outcome.ok() ? 1 : 0))
        _journal.violation("returnDone came " + std::to_string(result.done) + " times with status " +
                           std::to_string(status.rc));
    return outcome;
}

void Broker::fill(CMPIInstance* inst) const
{
    std::vector<Named>& items = self(inst).items;
    if (schema)
        for (const Named& item : schema(self(inst).text))
            if (!find(items, item.first))
                items.push_back(item);
}

std::vector<std::string> Broker::deliveries() const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return _deliveries;
}

void Broker::deliver(const char* ns, const CMPIInstance* indication)
{
    if (onDelivery)
        onDelivery();
    std::lock_guard<std::mutex> lock(_mutex);
    _deliveries.push_back(ns + (" " + textOf(indication)));
}

} // namespace test_broker
