// Writes scenarios as JSON that the reader takes back.
#include "simulator/scenario/atomic_file.h"
#include "simulator/scenario/json_fields.h"
#include "simulator/scenario/scenario_json.h"

#include <system_error>

namespace simulator
{
namespace
{

// The fields of `facts` that differ from those of `defaults`, in order, but always those named by `kept`.
template <class Facts, class Visit>
Json changedFields(const Facts& facts,
                   const Facts& defaults,
                   Visit visit,
                   std::initializer_list<const char*> kept)
{
    JsonFieldWriter written;
    JsonFieldWriter unchanged;
    visit(written, facts);
    visit(unchanged, defaults);
    for (const char* name : kept)
        unchanged.fields.erase(name);
    Json result = Json::object();
    for (const auto& field : written.fields.items())
    {
        const auto other = unchanged.fields.find(field.key());
        if (other == unchanged.fields.end() || *other != field.value())
            result[field.key()] = field.value();
    }
    return result;
}

Json formatPorts(const SwitchScenario& one)
{
    Json list = Json::array();
    const PortScenario defaults;
    const auto visit = [&one](JsonFieldWriter& fields, const PortScenario& port)
    {
        fields.number("number", port.number, 0, 0);
        visitPort(fields, port, one.local);
    };
    for (const PortScenario& port : one.ports)
        list.push_back(changedFields(port, defaults, visit, {"number"}));
    return list;
}

Json formatSwitch(const SwitchScenario& one)
{
    SwitchScenario defaults;
    defaults.local = one.local;
    const auto visit = [](JsonFieldWriter& fields, const SwitchScenario& facts)
    {
        if (facts.local)
            fields.flag("local", true);
        visitSwitch(fields, facts);
    };
    Json object = changedFields(one, defaults, visit, {"domain", "wwn", "local"});
    object["ports"] = formatPorts(one);
    return object;
}

} // namespace

std::string formatScenario(const Scenario& scenario)
{
    const auto visit = [](JsonFieldWriter& fields, const Scenario& facts) { visitScenario(fields, facts); };
    Json top = changedFields(scenario, Scenario(), visit, {"seed"});
    top["switches"] = Json::array();
    for (const SwitchScenario& one : scenario.switches)
        top["switches"].push_back(formatSwitch(one));
    top["nodes"] = Json::array();
    const auto nodeFields = [](JsonFieldWriter& fields, const NodeScenario& node)
    { visitNode(fields, node); };
    for (const NodeScenario& node : scenario.nodes)
    {
        top["nodes"].push_back(
            changedFields(node, NodeScenario(), nodeFields, {"domain", "port", "portWwn"}));
    }
    top["isls"] = Json::array();
    const auto islFields = [](JsonFieldWriter& fields, const IslScenario& link) { visitIsl(fields, link); };
    for (const IslScenario& link : scenario.isls)
    {
        top["isls"].push_back(
            changedFields(link, IslScenario(), islFields, {"domain", "port", "toDomain", "toPort"}));
    }
    // Texts of a switch may hold any bytes; JSON only takes UTF-8. Bytes that are none are left out: a mark
    // in their place could make a text longer than its field.
    return top.dump(1, ' ', false, Json::error_handler_t::ignore) + "\n";
}

void writeScenario(const Scenario& scenario, const std::string& path)
{
    try
    {
        replaceFile(path, formatScenario(scenario));
    }
    catch (const std::system_error& error)
    {
        throw ScenarioError(path, std::string("cannot save: ") + error.what());
    }
}

} // namespace simulator
