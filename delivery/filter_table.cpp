// The indication filters that clients can subscribe to.
#include "delivery/filter_table.h"

namespace cimple
{

#define VRAX_CREATED(cls) "SELECT * FROM CIM_InstCreation WHERE SourceInstance ISA " cls
#define VRAX_DELETED(cls) "SELECT * FROM CIM_InstDeletion WHERE SourceInstance ISA " cls
#define VRAX_MODIFIED(cls, status)                                                                           \
    "SELECT * FROM CIM_InstModification WHERE SourceInstance ISA " cls " AND SourceInstance." status         \
    " <> PreviousInstance." status
#define VRAX_MODIFIED_WQL(cls) VRAX_MODIFIED(cls, "OperationalStatus")
#define VRAX_MODIFIED_CQL(cls) VRAX_MODIFIED(cls, cls "::OperationalStatus")
#define VRAX_ALERT(id) "SELECT * FROM CIM_AlertIndication WHERE OwningEntity=SNIA and MessageID='" id "'"

const Filter_Table_Entry filterTableEntries[] = {
    {{0, 0}, "Create:ComputerSystem", VRAX_CREATED("CIM_ComputerSystem")},
    {{0, 1}, "CQL:Create:ComputerSystem", VRAX_CREATED("CIM_ComputerSystem")},
    {{0, 2}, "Delete:ComputerSystem", VRAX_DELETED("CIM_ComputerSystem")},
    {{0, 3}, "CQL:Delete:ComputerSystem", VRAX_DELETED("CIM_ComputerSystem")},
    {{0, 4}, "Modify:ComputerSystem", VRAX_MODIFIED_WQL("CIM_ComputerSystem")},
    {{0, 5}, "CQL:Modify:ComputerSystem", VRAX_MODIFIED_CQL("CIM_ComputerSystem")},
    {{0, 6}, "Create:FCPort", VRAX_CREATED("CIM_FCPort")},
    {{0, 7}, "CQL:Create:FCPort", VRAX_CREATED("CIM_FCPort")},
    {{0, 8}, "Delete:FCPort", VRAX_DELETED("CIM_FCPort")},
    {{0, 9}, "CQL:Delete:FCPort", VRAX_DELETED("CIM_FCPort")},
    {{0, 10}, "Modify:FCPort", VRAX_MODIFIED_WQL("CIM_FCPort")},
    {{0, 11}, "CQL:Modify:FCPort", VRAX_MODIFIED_CQL("CIM_FCPort")},
    {{0, 12}, "Alert:ZoningDBChange", VRAX_ALERT("32")},
    {{0, 13}, "CQL:Alert:ZoningDBChange", VRAX_ALERT("32")},
    {{0, 14}, "Alert:ActivateZoneSet", VRAX_ALERT("33")},
    {{0, 15}, "CQL:Alert:ActivateZoneSet", VRAX_ALERT("33")},
    {{0, 16}, "CQL:Alert:All", "SELECT * FROM CIM_AlertIndication"},
    {{0, 17}, "CQL:Alert:SNIA:Core1", VRAX_ALERT("Core1")},
    {{0, 18}, "CQL:Alert:SNIA:Core2", VRAX_ALERT("Core2")},
    {{0, 19}, "CQL:Alert:SNIA:Core3", VRAX_ALERT("Core3")},
    {{0, 20}, "CQL:Alert:SNIA:Core4", VRAX_ALERT("Core4")},
    {{0, 21}, "CQL:Alert:SNIA:Core5", VRAX_ALERT("Core5")},
    {{0, 22}, "CQL:Alert:SNIA:Core9", VRAX_ALERT("Core9")},
    {{0, 23}, "CQL:Alert:SNIA:Core12", VRAX_ALERT("Core12")},
    {{0, 24}, "CQL:Alert:SNIA:FC1", VRAX_ALERT("FC1")},
    {{0, 25}, "CQL:Alert:SNIA:FC2", VRAX_ALERT("FC2")},
    {{0, 26}, "CQL:Alert:SNIA:FC5", VRAX_ALERT("FC5")},
    {{0, 27}, "CQL:Alert:SNIA:FC6", VRAX_ALERT("FC6")},
    {{0, 28}, "CQL:Alert:SNIA:FC7", VRAX_ALERT("FC7")},
    {{0, 29}, "CQL:Alert:SNIA:FC8", VRAX_ALERT("FC8")},
};

const std::uint32_t filterTableSize = sizeof(filterTableEntries) / sizeof(filterTableEntries[0]);

} // namespace cimple
