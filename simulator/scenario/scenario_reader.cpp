// Reads scenarios: JSON, strictly, with errors that say where and what was expected.
#include "simulator/scenario/atomic_file.h"
#include "simulator/scenario/json_fields.h"
#include "simulator/scenario/scenario_json.h"

#include <algorithm>
#include <set>
#include <system_error>
#include <utility>

namespace simulator
{
namespace
{

// "12:7" of a byte position, both counted from 1.
std::string lineAndColumn(std::string_view text, std::size_t position)
{
    const std::string_view before = text.substr(0, std::min(position, text.size()));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t lineStart = before.rfind('\n') + 1; // npos + 1 is 0: the first line
    return std::to_string(line) + ":" + std::to_string(before.size() - lineStart + 1);
}

// The parser keeps one of two fields of the same name without a word; authors want to hear of it.
class DuplicateCheck
{
  public:
    void operator()(Json::parse_event_t event, const Json& parsed)
    {
        if (event == Json::parse_event_t::object_start)
        {
            _open.emplace_back();
        }
        else if (event == Json::parse_event_t::object_end)
        {
            _open.pop_back();
        }
        else if (event == Json::parse_event_t::key && !_open.back().insert(parsed.get<std::string>()).second)
        {
            throw ScenarioError(
                "", "the field \"" + parsed.get<std::string>() + "\" appears twice in one object");
        }
    }

  private:
    std::vector<std::set<std::string>> _open;
};

Json parseJson(std::string_view text, const std::string& source)
{
    try
    {
        DuplicateCheck check;
        return Json::parse(text.begin(),
                           text.end(),
                           [&check](int, Json::parse_event_t event, Json& parsed)
                           {
                               check(event, parsed);
                               return true;
                           });
    }
    catch (const ScenarioError& error)
    {
        throw ScenarioError(source, error.what());
    }
    catch (const Json::parse_error& error)
    {
        // The library's text begins with its own error number and position.
        const std::string what = error.what();
        const std::size_t start = what.find(": ");
        const std::size_t position = error.byte == 0 ? 0 : error.byte - 1;
        throw ScenarioError(source + ":" + lineAndColumn(text, position),
                            start == std::string::npos ? what : what.substr(start + 2));
    }
}

PortScenario* findPort(std::vector<PortScenario>& ports, int number)
{
    const auto found = std::find_if(
        ports.begin(), ports.end(), [number](const PortScenario& port) { return port.number == number; });
    return found == ports.end() ? nullptr : &*found;
}

// A switch has portCount ports like portDefaults; entries of "ports" change some of them or add others.
void readPorts(JsonFieldReader& fields, SwitchScenario& one)
{
    PortScenario base;
    if (const Json* defaults = fields.object("portDefaults"))
    {
        JsonFieldReader baseFields(*defaults, fields.placeOf("portDefaults"));
        visitPort(baseFields, base, one.local);
        baseFields.finish();
    }
    int count = 0;
    fields.number("portCount", count, 0, one.local ? kMaxLocalPorts : kMaxRemotePorts);
    for (base.number = 0; base.number < count; ++base.number)
        one.ports.push_back(base);
    const Json* list = fields.array("ports");
    if (list == nullptr)
        return;
    std::set<int> described;
    for (std::size_t i = 0; i < list->size(); ++i)
    {
        const Json& entry = (*list)[i];
        const std::string place = fields.placeOf("ports") + "/" + std::to_string(i);
        JsonFieldReader portFields(entry, place);
        int number = 0;
        portFields.number("number", number, 0, kMaxRemotePorts - 1, Presence::required);
        if (!described.insert(number).second)
            throw ScenarioError(place + "/number", "port " + std::to_string(number) + " is described twice");
        PortScenario* existing = findPort(one.ports, number);
        PortScenario port = existing != nullptr ? *existing : base;
        port.number = number;
        visitPort(portFields, port, one.local);
        portFields.finish();
        if (existing != nullptr)
            *existing = port;
        else
            one.ports.push_back(port);
    }
    std::sort(one.ports.begin(),
              one.ports.end(),
              [](const PortScenario& a, const PortScenario& b) { return a.number < b.number; });
}

// Tells the ports their blade. A port is in one range, or says its blade itself.
void spreadBlades(SwitchScenario& one, const std::string& place)
{
    for (std::size_t i = 0; i < one.blades.size(); ++i)
    {
        const auto range = std::exchange(one.blades[i].ports, std::nullopt);
        const int blade = static_cast<int>(i) + 1;
        const auto refuse = [&place, i](int number, const std::string& fault)
        {
            throw ScenarioError(place + "/blades/" + std::to_string(i) + "/ports",
                                "port " + std::to_string(number) + fault);
        };
        for (int number = range ? range->first : 0; range && number <= range->last; ++number)
        {
            PortScenario* port = findPort(one.ports, number);
            if (port == nullptr)
                refuse(number, " is not a port of the switch");
            else if (port->blade != 0 && port->blade != blade)
                refuse(number, " sits on blade " + std::to_string(port->blade));
            else
                port->blade = blade;
        }
    }
}

SwitchScenario readSwitch(const Json& object, const std::string& place)
{
    SwitchScenario one;
    JsonFieldReader fields(object, place);
    fields.flag("local", one.local);
    visitSwitch(fields, one);
    readPorts(fields, one);
    spreadBlades(one, place);
    fields.finish();
    return one;
}

Scenario readTop(const Json& top)
{
    Scenario scenario;
    JsonFieldReader fields(top, "");
    visitScenario(fields, scenario);
    const Json* switches = fields.array("switches");
    for (std::size_t i = 0; switches != nullptr && i < switches->size(); ++i)
    {
        const std::string place = fields.placeOf("switches") + "/" + std::to_string(i);
        scenario.switches.push_back(readSwitch((*switches)[i], place));
    }
    fields.list("nodes", scenario.nodes, [](auto& inner, auto& node) { visitNode(inner, node); });
    fields.list("isls", scenario.isls, [](auto& inner, auto& link) { visitIsl(inner, link); });
    fields.finish();
    return scenario;
}

} // namespace

Scenario parseScenario(std::string_view text, const std::string& source)
{
    const Json top = parseJson(text, source);
    try
    {
        Scenario scenario = readTop(top);
        validate(scenario);
        return scenario;
    }
    catch (const ScenarioError& error)
    {
        throw ScenarioError(source, error.what());
    }
}

Scenario readScenario(const std::string& path)
{
    std::string text;
    try
    {
        text = readFile(path);
    }
    catch (const std::system_error& error)
    {
        throw ScenarioError(path, "cannot read the scenario: " + error.code().message());
    }
    return parseScenario(text, path);
}

} // namespace simulator
