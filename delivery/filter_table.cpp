// The predefined indication filters.
#include "delivery/filter_table.h"

#include <cstring>
#include <iterator>

namespace cimple
{

// Texts that the queries are put together from.
#define LIFE_CYCLE(what, cls) "SELECT * FROM CIM_Inst" what " WHERE SourceInstance ISA " cls
#define STATUS_CHANGE(cls, scope)                                                                            \
    LIFE_CYCLE("Modification", cls)                                                                          \
    " AND SourceInstance." scope "OperationalStatus <> PreviousInstance." scope "OperationalStatus"
#define SNIA_ALERT(id) "SELECT * FROM CIM_AlertIndication WHERE OwningEntity=SNIA and MessageID='" id "'"

// Four filters select the numbers "32" and "33", which alerts of zoning also carry beside "FC1" and "FC2".
const Filter_Table_Entry filterTableEntries[] = {
    {{0, 0}, "Create:ComputerSystem", LIFE_CYCLE("Creation", "CIM_ComputerSystem")},
    {{0, 1}, "CQL:Create:ComputerSystem", LIFE_CYCLE("Creation", "CIM_ComputerSystem")},
    {{0, 2}, "Delete:ComputerSystem", LIFE_CYCLE("Deletion", "CIM_ComputerSystem")},
    {{0, 3}, "CQL:Delete:ComputerSystem", LIFE_CYCLE("Deletion", "CIM_ComputerSystem")},
    {{0, 4}, "Modify:ComputerSystem", STATUS_CHANGE("CIM_ComputerSystem", "")},
    {{0, 5}, "CQL:Modify:ComputerSystem", STATUS_CHANGE("CIM_ComputerSystem", "CIM_ComputerSystem::")},
    {{0, 6}, "Create:FCPort", LIFE_CYCLE("Creation", "CIM_FCPort")},
    {{0, 7}, "CQL:Create:FCPort", LIFE_CYCLE("Creation", "CIM_FCPort")},
    {{0, 8}, "Delete:FCPort", LIFE_CYCLE("Deletion", "CIM_FCPort")},
    {{0, 9}, "CQL:Delete:FCPort", LIFE_CYCLE("Deletion", "CIM_FCPort")},
    {{0, 10}, "Modify:FCPort", STATUS_CHANGE("CIM_FCPort", "")},
    {{0, 11}, "CQL:Modify:FCPort", STATUS_CHANGE("CIM_FCPort", "CIM_FCPort::")},
    {{0, 12}, "Alert:ZoningDBChange", SNIA_ALERT("32")},
    {{0, 13}, "CQL:Alert:ZoningDBChange", SNIA_ALERT("32")},
    {{0, 14}, "Alert:ActivateZoneSet", SNIA_ALERT("33")},
    {{0, 15}, "CQL:Alert:ActivateZoneSet", SNIA_ALERT("33")},
    {{0, 16}, "CQL:Alert:All", "SELECT * FROM CIM_AlertIndication"},
    {{0, 17}, "CQL:Alert:SNIA:Core1", SNIA_ALERT("Core1")},
    {{0, 18}, "CQL:Alert:SNIA:Core2", SNIA_ALERT("Core2")},
    {{0, 19}, "CQL:Alert:SNIA:Core3", SNIA_ALERT("Core3")},
    {{0, 20}, "CQL:Alert:SNIA:Core4", SNIA_ALERT("Core4")},
    {{0, 21}, "CQL:Alert:SNIA:Core5", SNIA_ALERT("Core5")},
    {{0, 22}, "CQL:Alert:SNIA:Core9", SNIA_ALERT("Core9")},
    {{0, 23}, "CQL:Alert:SNIA:Core12", SNIA_ALERT("Core12")},
    {{0, 24}, "CQL:Alert:SNIA:FC1", SNIA_ALERT("FC1")},
    {{0, 25}, "CQL:Alert:SNIA:FC2", SNIA_ALERT("FC2")},
    {{0, 26}, "CQL:Alert:SNIA:FC5", SNIA_ALERT("FC5")},
    {{0, 27}, "CQL:Alert:SNIA:FC6", SNIA_ALERT("FC6")},
    {{0, 28}, "CQL:Alert:SNIA:FC7", SNIA_ALERT("FC7")},
    {{0, 29}, "CQL:Alert:SNIA:FC8", SNIA_ALERT("FC8")},
};

#undef LIFE_CYCLE
#undef STATUS_CHANGE
#undef SNIA_ALERT

const std::uint16_t filterTableSize = std::size(filterTableEntries);

std::optional<std::uint16_t> filterNumber(const char* name)
{
    for (const Filter_Table_Entry& entry : filterTableEntries)
        if (std::strcmp(entry.name, name) == 0)
            return entry.number();
    return std::nullopt;
}

} // namespace cimple
