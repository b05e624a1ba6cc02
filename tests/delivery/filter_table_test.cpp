// The table of filters as clients and subscriptions know it.
#include "delivery/filter_table.h"

#include <gtest/gtest.h>
#include <string>

namespace cimple
{
namespace
{

const std::string kCreation = "SELECT * FROM CIM_InstCreation WHERE SourceInstance ISA CIM_ComputerSystem";
const std::string kAlert = "SELECT * FROM CIM_AlertIndication WHERE OwningEntity=SNIA and MessageID='";

TEST(FilterTable, HasThirtyRowsInTheirOrder)
{
    const struct
    {
        std::uint16_t number;
        const char* name;
        std::string query;
    } rows[] = {
        {0, "Create:ComputerSystem", kCreation},
        {1, "CQL:Create:ComputerSystem", kCreation},
        {3,
         "CQL:Delete:ComputerSystem",
         "SELECT * FROM CIM_InstDeletion WHERE SourceInstance ISA CIM_ComputerSystem"},
        {4,
         "Modify:ComputerSystem",
         "SELECT * FROM CIM_InstModification WHERE SourceInstance ISA CIM_ComputerSystem AND "
         "SourceInstance.OperationalStatus <> PreviousInstance.OperationalStatus"},
        {11,
         "CQL:Modify:FCPort",
         "SELECT * FROM CIM_InstModification WHERE SourceInstance ISA CIM_FCPort AND "
         "SourceInstance.CIM_FCPort::OperationalStatus <> PreviousInstance.CIM_FCPort::OperationalStatus"},
        {12, "Alert:ZoningDBChange", kAlert + "32'"},
        {15, "CQL:Alert:ActivateZoneSet", kAlert + "33'"},
        {16, "CQL:Alert:All", "SELECT * FROM CIM_AlertIndication"},
        {17, "CQL:Alert:SNIA:Core1", kAlert + "Core1'"},
        {23, "CQL:Alert:SNIA:Core12", kAlert + "Core12'"},
        {29, "CQL:Alert:SNIA:FC8", kAlert + "FC8'"},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(filterTableEntries[row.number].name, std::string(row.name));
        EXPECT_EQ(filterTableEntries[row.number].query, row.query) << row.name;
        EXPECT_EQ(filterNumber(row.name), row.number);
    }
    ASSERT_EQ(filterTableSize, 30);
    for (std::uint16_t number = 0; number < filterTableSize; ++number)
    {
        EXPECT_EQ(filterTableEntries[number].number(), number);
        EXPECT_EQ(filterNumber(filterTableEntries[number].name), number) << "names differ";
    }
    EXPECT_EQ(filterNumber("create:ComputerSystem"), std::nullopt);
    EXPECT_EQ(filterNumber(""), std::nullopt);
}

} // namespace
} // namespace cimple
