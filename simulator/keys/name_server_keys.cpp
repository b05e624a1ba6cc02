// Keys of the name server: the attached node ports by domain and Fibre Channel address.
#include "simulator/keys/attribute_keys.h"
#include "simulator/model/hex.h"

namespace simulator
{
namespace
{

template <class Read> // int32_t(const FabricModel& model, const NodeScenario& node, Answer& answer)
ReadHandler ofNode(Read read)
{
    return [read](const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& answer)
    {
        int domain = 0;
        std::uint64_t address = 0;
        const bool numbers =
            parseDecimal(arguments[0], domain) && isHex(arguments[1], 6) && parseHex(arguments[1], address);
        const NodeScenario* node =
            numbers ? model.node(domain, static_cast<std::uint32_t>(address)) : nullptr;
        return node != nullptr ? read(model, *node, answer) : std::int32_t{XPL_UNKNOWN_KEY};
    };
}

} // namespace

void addNameServerKeys(ReadKeys& keys)
{
    const auto add = [&keys](const char* name, auto read)
    { keys.add(std::string("Oper.NameServerAll.%d.Entry.%s.") + name, ofNode(read)); };
    using Node = NodeScenario;
    add("PortWwn", [](const FabricModel&, const Node& node, Answer& a) { return a.text(node.portWwn); });
    add("NodeWwn", [](const FabricModel&, const Node& node, Answer& a) { return a.text(node.nodeWwn); });
    add("SymPortName", [](const FabricModel&, const Node& node, Answer& a) { return a.text(node.portName); });
    add("SymNodeName", [](const FabricModel&, const Node& node, Answer& a) { return a.text(node.nodeName); });
    add("PortType",
        [](const FabricModel&, const Node& node, Answer& a) { return a.text(toText(node.type)); });
    add("COSList", [](const FabricModel&, const Node& node, Answer& a) { return a.text(node.classes); });
    add("FC4StdTypeList",
        [](const FabricModel&, const Node& node, Answer& a) { return a.text(node.protocols); });
    add("FabricPortName",
        [](const FabricModel& model, const Node& node, Answer& a)
        { return a.text(model.switchOf(node.domain)->port(node.port)->facts.wwn); });
}

} // namespace simulator
