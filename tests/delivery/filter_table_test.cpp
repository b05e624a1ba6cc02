// The table of filters as clients and subscriptions know it.
#include "delivery/filter_table.h"

#include <gtest/gtest.h>
#include <string>

namespace cimple
{
namespace
{

const std::string kAlert = "SELECT * FROM CIM_AlertIndication WHERE OwningEntity=SNIA and MessageID='";

TEST(FilterTable, HasThirtyRowsInTheirOrder)
{
    const struct
    {
        std::uint16_t number;
        const char* name;
        std::string query;
    } rows[] = {
        {3,
         "CQL:Delete:ComputerSystem",
         "SELECT * FROM CIM_InstDeletion WHERE SourceInstance ISA CIM_ComputerSystem"},
        {4,
         "Modify:ComputerSystem",
         "SELECT * FROM CIM_InstModification WHERE SourceInstance ISA CIM_ComputerSystem AND "
         "SourceInstance.OperationalStatus <> PreviousInstance.OperationalStatus"},
        {12, "Alert:ZoningDBChange", kAlert + "32'"},
        {15, "CQL:Alert:ActivateZoneSet", kAlert + "33'"},
        {16, "CQL:Alert:All", "SELECT * FROM CIM_AlertIndication"},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(filterTableEntries[row.number].name, std::string(row.name));
        EXPECT_EQ(filterTableEntries[row.number].query, row.query) << row.name;
    }
    ASSERT_EQ(filterTableSize, 30);
    for (std::uint16_t number = 0; number < filterTableSize; ++number)
    {
        const Filter_Table_Entry& entry = filterTableEntries[number];
        EXPECT_EQ(entry.number(), number);
        EXPECT_EQ(filterNumber(entry.name), number) << "names differ";
        const std::string name = entry.name;
        if (number > 16)
            EXPECT_EQ(entry.query, kAlert + name.substr(name.rfind(':') + 1) + "'");
    }
    EXPECT_EQ(filterNumber("create:ComputerSystem"), std::nullopt);
    EXPECT_EQ(filterNumber(""), std::nullopt);
}

} // namespace
} // namespace cimple
