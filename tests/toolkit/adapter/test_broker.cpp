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

// One more item, if it is let in.
template <class Item>
CMPIStatus admit(const CMPIResult* result, std::vector<Item> Outcome::*items, Item item, const Object* object)
{
    Result& r = *static_cast<Result*>(const_cast<CMPIResult*>(result));
    if (r.done != 0)
        r.journal.violation("a result was returned after returnDone");
    r.outcome.mostObjects = std::max(r.outcome.mostObjects, r.journal.objectsAlive.load());
    if (r.taken++ >= r.limit)
        return {CMPI_RC_ERR_INVALID_HANDLE, nullptr};
    if (object && r.keepsPointers)
        r.kept.emplace_back(object->holds);
    (r.outcome.*items).push_back(std::move(item));
    return {CMPI_RC_OK, nullptr};
}

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value, const CMPIType type)
{
    if (!value || type == CMPI_ref || type == CMPI_instance)
        static_cast<const Result*>(result)->journal.violation(
            "returnData takes neither NULL nor references nor instances in all brokers");
    return admit(result, &Outcome::data, valueOf(value, type), objectIn(value, type));
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* inst)
{
    return admit(result, &Outcome::instances, contentOf(inst), &self(inst));
}

CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path)
{
    return admit(result, &Outcome::paths, contentOf(path), &self(path));
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
    std::vector<std::string> result;
    const auto add = [&](const auto& items)
    {
        for (const auto& item : items)
            result.push_back(textOf(item));
    };
    add(instances);
    add(paths);
    add(data);
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
    std::vector<Named> entries = {{CMPIInitNameSpace, Value::string("root/demo")},
                                  {CMPIPrincipal, Value::string("operator")}};
    if (_copiesResults)
        entries.emplace_back(CMPIResultsAreCopied, Value::boolean(true));
    session.context = make<CMPIContext>(_journal, entries);
    Outcome outcome;
    Result result = {{&result, &kResults}, _journal, outcome, refuseAfter, rule == kOneResult};
    const CMPIStatus status = function(session.context, &result);
    outcome.rc = status.rc;
    outcome.message = status.msg ? contentOf(status.msg) : "";
    if (rule != kWithoutResult && result.done != (outcome.ok() ? 1 : 0))
        _journal.violation("returnDone came " + std::to_string(result.done) + " times with status " +
                           std::to_string(status.rc));
    return outcome;
}

Inst Broker::filled(Inst inst) const
{
    if (schema)
        for (const std::vector<Named>& more : {inst.path.keys, schema(inst.path.className)})
            for (const Named& item : more)
                if (!inst.property(item.first.c_str()))
                    inst.properties.push_back(item);
    return inst;
}

std::vector<Delivery> Broker::deliveries() const
{
    std::lock_guard<std::mutex> lock(_mutex);
    return _deliveries;
}

void Broker::deliver(const char* ns, const CMPIInstance* indication)
{
    const Delivery delivery = {ns, contentOf(indication)};
    if (onDelivery)
        onDelivery(delivery);
    std::lock_guard<std::mutex> lock(_mutex);
    _deliveries.push_back(delivery);
}

} // namespace test_broker
