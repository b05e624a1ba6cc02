// Keys of the fabric topology: the ports of every switch by domain and entry number.
#include "simulator/keys/attribute_keys.h"
#include "simulator/model/hex.h"

namespace simulator
{
namespace
{

template <class Read> // int32_t(const Switch& owner, const Port& port, Answer& answer)
ReadHandler ofEntry(Read read)
{
    return [read](const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& answer)
    {
        int domain = 0;
        int entry = 0;
        const bool numbers = parseDecimal(arguments[0], domain) && parseDecimal(arguments[1], entry);
        const Switch* owner = numbers ? model.switchOf(domain) : nullptr;
        const bool exists = owner != nullptr && static_cast<std::size_t>(entry) < owner->ports.size();
        return exists ? read(*owner, owner->ports[static_cast<std::size_t>(entry)], answer)
                      : std::int32_t{XPL_UNKNOWN_KEY};
    };
}

} // namespace

void addTopologyKeys(ReadKeys& keys)
{
    keys.add("Oper.TopologyAll.%d.Entry.%d.PortState",
             ofEntry([](const Switch& owner, const Port& port, Answer& a)
                     { return a.text(operState(owner, port)); }));
    keys.add("Oper.TopologyAll.%d.Entry.%d.PortType",
             ofEntry([](const Switch& owner, const Port& port, Answer& a)
                     { return a.text(runningType(owner, port)); }));
    keys.add("Oper.TopologyAll.%d.Entry.%d.PortWwn",
             ofEntry([](const Switch&, const Port& port, Answer& a) { return a.text(port.facts.wwn); }));
    keys.add("Oper.TopologyAll.%d.Entry.%d.PortNumber",
             ofEntry([](const Switch&, const Port& port, Answer& a)
                     { return a.decimal(static_cast<std::uint64_t>(port.facts.number)); }));
}

} // namespace simulator
