// Configuration keys of the local switch's ports, read and written.
#include "simulator/keys/attribute_keys.h"

namespace simulator
{
namespace
{

constexpr const char* kPrefix = "Config.UserPort.0.%d.";

// One attribute: how its value is told and how a new value is taken. `store` returns false for a value that
// the attribute does not take.
template <class Tell, class Store>
void addAttribute(ReadKeys& reads, WriteKeys& writes, const char* name, Tell tell, Store store)
{
    reads.add(std::string(kPrefix) + name,
              ofLocalPort([tell](const Switch&, const Port& port, std::uint64_t, Answer& answer)
                          { return answer.text(tell(port.facts)); }));
    writes.add(std::string(kPrefix) + name + ".%*",
               [store](FabricModel& model, const KeyArguments& arguments, std::uint64_t now) -> std::int32_t
               {
                   Port* port = model.localPort(arguments[0]);
                   if (port == nullptr)
                   {
                       return XPL_UNKNOWN_KEY;
                   }
                   if (!store(port->facts, arguments[1]))
                   {
                       return XPL_INVALID_PARAMETER;
                   }
                   model.linkChanged(model.local(), *port, now);
                   return XPL_OK;
               });
}

template <class E>
void addChoice(ReadKeys& reads, WriteKeys& writes, const char* name, E PortScenario::*member)
{
    addAttribute(
        reads,
        writes,
        name,
        [member](const PortScenario& facts) { return toText(facts.*member); },
        [member](PortScenario& facts, std::string_view text)
        {
            const auto value = fromText<E>(text);
            facts.*member = value.value_or(facts.*member);
            return value.has_value();
        });
}

void addFlag(ReadKeys& reads, WriteKeys& writes, const char* name, bool PortScenario::*member)
{
    addAttribute(
        reads,
        writes,
        name,
        [member](const PortScenario& facts) { return facts.*member ? "True" : "False"; },
        [member](PortScenario& facts, std::string_view text)
        {
            const auto value = flagNamed(text);
            facts.*member = value.value_or(facts.*member);
            return value.has_value();
        });
}

} // namespace

void addPortConfigKeys(ReadKeys& reads, WriteKeys& writes)
{
    addChoice(reads, writes, "Type", &PortScenario::type);
    addChoice(reads, writes, "RSCNEnable", &PortScenario::rscn);
    addFlag(reads, writes, "AutoPerfTuning", &PortScenario::autoPerfTuning);
    addFlag(reads, writes, "MFSEnable", &PortScenario::mfs);
    addFlag(reads, writes, "LCFEnable", &PortScenario::lcf);
    addFlag(reads, writes, "VIEnable", &PortScenario::vi);
    addFlag(reads, writes, "ScanEnable", &PortScenario::scan);
    addAttribute(
        reads,
        writes,
        "LinkSpeed",
        [](const PortScenario& facts) { return toText(facts.speed); },
        [](PortScenario& facts, std::string_view text)
        {
            const auto speed = fromText<LinkSpeed>(text);
            const bool taken = speed && canRun(facts.speedCapability, *speed);
            facts.speed = taken ? *speed : facts.speed;
            return taken;
        });
}

} // namespace simulator
