// Keys of the name server: the attached node ports by domain and Fibre Channel address.
#include "simulator/keys/attribute_keys.h"
#include "simulator/model/hex.h"

namespace simulator
{
namespace
{

template <class Read> // int32_t(const FabricModel& model, const Node& node, Answer& answer)
ReadHandler ofNode(Read read)
{
    return [read](const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& answer)
    {
        int domain = 0;
        std::uint64_t address = 0;
        const bool numbers =
            parseDecimal(arguments[0], domain) && isHex(arguments[1], 6) && parseHex(arguments[1], address);
        const Node* node = numbers ? model.node(domain, static_cast<std::uint32_t>(address)) : nullptr;
        return node != nullptr ? read(model, *node, answer) : std::int32_t{XPL_UNKNOWN_KEY};
    };
}

} // namespace

void addNameServerKeys(ReadKeys& keys)
{
    const auto add = [&keys](const char* name, auto read)
    { keys.add(std::string("Oper.NameServerAll.%d.Entry.%s.") + name, ofNode(read)); };
    const std::pair<const char*, std::string NodeScenario::*> texts[] = {
        {"PortWwn", &NodeScenario::portWwn},
        {"NodeWwn", &NodeScenario::nodeWwn},
        {"SymPortName", &NodeScenario::portName},
        {"SymNodeName", &NodeScenario::nodeName},
        {"COSList", &NodeScenario::classes},
        {"FC4StdTypeList", &NodeScenario::protocols},
    };
    for (const auto& [name, member] : texts)
        add(name,
            [member = member](const FabricModel&, const Node& node, Answer& a)
            { return a.text(node.text(member)); });
    add("PortType",
        [](const FabricModel&, const Node& node, Answer& a) { return a.text(toText(node.type())); });
    add("FabricPortName",
        [](const FabricModel& model, const Node& node, Answer& a)
        { return a.text(model.switchOf(node.domain())->port(node.port())->facts.wwn); });
}

} // namespace simulator
