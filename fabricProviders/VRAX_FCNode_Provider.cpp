// The nodes that are attached to the fabric, one for each of their ports.
#include "fabricProviders/VRAX_FCNode_Provider.h"

#include "switchaccess/Attribute.h"
#include "switchaccess/CacheLock.h"
#include "switchaccess/fabric_walk.h"

namespace cimple
{

namespace
{

// What the name server tells of a node port, by domain and address.
constexpr Attribute<VRAX_FCNode> kAttributes[] = {
    {"Oper.NameServerAll.%d.Entry.%s.NodeWwn", put<&VRAX_FCNode::Name, inUpperCase>},
    {"Oper.NameServerAll.%d.Entry.%s.PortWwn", put<&VRAX_FCNode::InstanceID, inUpperCase>},
    {"Oper.NameServerAll.%d.Entry.%s.FabricPortName"}, // decides with the others whether the port is skipped
    {"Oper.NameServerAll.%d.Entry.%s.SymNodeName", put<&VRAX_FCNode::ElementName, inUpperCase>},
};
constexpr std::size_t kPortWwn = entryOf(kAttributes, ".PortWwn");

} // namespace

void VRAX_FCNode_Provider::build(Map_Writer<VRAX_FCNode>& map)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    Attribute_Reader<VRAX_FCNode> attributes(kAttributes);
    const Owned<VRAX_FCNode> entry(VRAX_FCNode::create()); // its key, for finding it in the map
    const String nameFormat("WWN");                        // one text for all nodes

    for (const SwitchCache& one : Fabric_Switches(*DataCache::instance()))
    {
        const Domain_Text domain(one.getDomainID());
        for (const char* address : Attached_Ports(domain))
        {
            // The port has logged out meanwhile, or the name server does not have its WWN yet.
            if (!attributes.read({domain.c_str(), address}) || attributes.text(kPortWwn)[0] == '\0')
                continue;
            // Two entries of one port happen while a node moves: the first one counts.
            entry->InstanceID.set(inUpperCase(attributes.text(kPortWwn)));
            if (map.contains(*entry))
                continue;
            Owned<VRAX_FCNode> node = make();
            attributes.fill(*node);
            node->NameFormat.set(nameFormat);
            add(map, node);
        }
    }
}

} // namespace cimple
