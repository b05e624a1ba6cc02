// Configuration keys of the local switch's ports, read and written.
#include "simulator/keys/attribute_keys.h"

namespace simulator
{
namespace
{

constexpr const char* kPrefix = "Config.UserPort.0.%d.";

// One attribute: how its value is told and how a new value is taken. `store` returns false for a value that
// the attribute does not take at present.
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
                   if (!store(model, port->facts, arguments[1]))
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
        [member](const FabricModel&, PortScenario& facts, std::string_view text)
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
        [member](const FabricModel&, PortScenario& facts, std::string_view text)
        {
            const auto value = flagNamed(text);
            facts.*member = value.value_or(facts.*member);
            return value.has_value();
        });
}

// A list of TF ports of a TH port; written in an edit of the configuration only.
void addTfList(ReadKeys& reads, WriteKeys& writes, const char* name, TfList list)
{
    reads.add(std::string(kPrefix) + name,
              ofLocalPort(
                  [list](const Switch&, const Port& port, std::uint64_t, Answer& answer)
                  {
                      return port.facts.type == PortType::th ? answer.text(textOf(port.facts.*list))
                                                             : std::int32_t{XPL_NOT_AVAILABLE};
                  }));
    writes.add(std::string(kPrefix) + name + ".%*",
               inAdminMode(
                   [list](FabricModel& model, const KeyArguments& arguments, std::uint64_t) -> std::int32_t
                   {
                       const Port* port = model.localPort(arguments[0]);
                       if (port == nullptr)
                           return XPL_UNKNOWN_KEY;
                       const auto ports = tfPortsOf(arguments[1]);
                       const int number = port->facts.number;
                       if (model.configEdit() == nullptr || port->facts.type != PortType::th || !ports ||
                           !model.fitsTfPorts(number, *ports))
                           return XPL_INVALID_PARAMETER;
                       model.configEdit()->add({number, list, *ports});
                       return XPL_OK;
                   }));
}

} // namespace

void addPortConfigKeys(ReadKeys& reads, WriteKeys& writes)
{
    addAttribute(
        reads,
        writes,
        "Type",
        [](const PortScenario& facts) { return toText(facts.type); },
        [](const FabricModel& model, PortScenario& facts, std::string_view text)
        {
            const auto type = fromText<PortType>(text);
            const bool taken = type && model.mayHaveType(facts, *type);
            facts.type = taken ? *type : facts.type;
            return taken;
        });
    addChoice(reads, writes, "RSCNEnable", &PortScenario::rscn);
    addFlag(reads, writes, "AutoPerfTuning", &PortScenario::autoPerfTuning);
    addFlag(reads, writes, "MFSEnable", &PortScenario::mfs);
    addFlag(reads, writes, "LCFEnable", &PortScenario::lcf);
    addFlag(reads, writes, "VIEnable", &PortScenario::vi);
    addFlag(reads, writes, "ScanEnable", &PortScenario::scan);
    addTfList(reads, writes, "PrimaryTFPortMap", &PortScenario::primaryTfPorts);
    addTfList(reads, writes, "BackupTFPortMap", &PortScenario::backupTfPorts);
    addAttribute(
        reads,
        writes,
        "LinkSpeed",
        [](const PortScenario& facts) { return toText(facts.speed); },
        [](const FabricModel&, PortScenario& facts, std::string_view text)
        {
            const auto speed = fromText<LinkSpeed>(text);
            const bool taken = speed && canRun(facts.speedCapability, *speed);
            facts.speed = taken ? *speed : facts.speed;
            return taken;
        });
}

} // namespace simulator
