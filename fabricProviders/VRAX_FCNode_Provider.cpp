// The nodes that are attached to the fabric, one for each of their ports.
#include "fabricProviders/VRAX_FCNode_Provider.h"

#include "common/CacheLock.h"
#include "common/Sml_Batch.h"
#include "common/fabric_walk.h"
#include "common/string_helpers.h"

namespace cimple
{

namespace
{

// What the name server tells of a node port, by domain and address.
constexpr const char* kNodeKeys[] = {
    "Oper.NameServerAll.%d.Entry.%s.NodeWwn",
    "Oper.NameServerAll.%d.Entry.%s.PortWwn",
    "Oper.NameServerAll.%d.Entry.%s.FabricPortName", // decides with the others whether the port is skipped
    "Oper.NameServerAll.%d.Entry.%s.SymNodeName",
};
enum NodeEntry
{
    kNodeWwn = 0,
    kPortWwn = 1,
    kSymNodeName = 3
};

} // namespace

void VRAX_FCNode_Provider::build(Map_Writer<VRAX_FCNode>& map)
{
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    Sml_Batch batch(kNodeKeys);
    const Owned<VRAX_FCNode> entry(VRAX_FCNode::create()); // its key, for finding it in the map
    const String nameFormat("WWN");                        // one text for all nodes

    for (const SwitchCache& one : Fabric_Switches(*DataCache::instance()))
    {
        const Domain_Text domain(one.getDomainID());
        for (const char* address : Attached_Ports(domain))
        {
            // The port has logged out meanwhile, or the name server does not have its WWN yet.
            if (!batch.read({domain.c_str(), address}) || batch.text(kPortWwn)[0] == '\0')
                continue;
            // Two entries of one port happen while a node moves: the first one counts.
            entry->InstanceID.set(upperCased(batch.text(kPortWwn)).c_str());
            if (map.contains(*entry))
                continue;

            Owned<VRAX_FCNode> node = makeNull<VRAX_FCNode>();
            if (!node)
                failLoad("Unable to create instance of VRAX_FCNode");
            node->InstanceID = entry->InstanceID;
            node->Name.set(upperCased(batch.text(kNodeWwn)).c_str());
            node->ElementName.set(upperCased(batch.text(kSymNodeName)).c_str());
            node->NameFormat.set(nameFormat);
            // The line feed belongs to the message.
            if (!map.insert(node))
                failLoad("Failed to insert into VRAX_FCNode_map\n");
        }
    }
}

} // namespace cimple
