// The indications that clients can subscribe to.
#include "indicationProviders/CIM_IndicationFilter_Provider.h"

#include "common/local_system.h"
#include "delivery/filter_table.h"
#include "switchaccess/local_switch.h"

#include <cstring>

namespace cimple
{

void CIM_IndicationFilter_Provider::build(Map_Writer<CIM_IndicationFilter>& map)
{
    const Local_Switch_Wwn localWwn({kSource, "load"});
    for (std::uint32_t i = 0; i < filterTableSize; ++i)
    {
        const Filter_Table_Entry& row = filterTableEntries[i];
        Owned<CIM_IndicationFilter> filter = make();
        setLocalSystem(*filter, localWwn.text());
        filter->Name.set(row.name);
        filter->ElementName.set(row.name);
        filter->Description.set(row.name);
        filter->SourceNamespace.set("root/interop");
        filter->Query.set(row.query);
        filter->QueryLanguage.set(std::strncmp(row.name, "CQL", 3) == 0 ? "CQL" : "WQL");
        add(map, filter);
    }
}

} // namespace cimple
