// Tests of the translation between switch texts and CIM numbers.
#include "switchaccess/value_translation.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace cimple
{
namespace
{

typedef std::vector<unsigned> Numbers;

Array_uint16 arrayOf(const Numbers& numbers)
{
    Array_uint16 result;
    for (const unsigned number : numbers)
        result.append(static_cast<uint16>(number));
    return result;
}

Numbers numbersOf(const Array_uint16& values)
{
    return Numbers(values.data(), values.data() + values.size());
}

struct Text_Row
{
    std::string text;
    std::uint64_t number;
};

// The rows of "Online 2, Offline 3,  0": a text, perhaps empty, and its number.
std::vector<Text_Row> rowsOf(const std::string& table)
{
    std::vector<Text_Row> rows;
    for (std::size_t from = 0; from < table.size();)
    {
        const std::size_t end = std::min(table.find(", ", from), table.size());
        const std::size_t blank = table.rfind(' ', end - 1);
        rows.push_back({table.substr(from, blank - from), std::stoull(table.substr(blank))});
        from = end + 2;
    }
    return rows;
}

// Checks every row, and that texts beside the table have the default.
template <class TRANSLATE>
void expectTable(TRANSLATE translate, const std::string& table, std::uint64_t otherwise)
{
    for (const Text_Row& row : rowsOf(table))
    {
        EXPECT_EQ(translate(row.text.c_str()), row.number) << row.text;
        if (row.text.empty() || row.number == otherwise)
            continue;
        EXPECT_EQ(translate((row.text + " ").c_str()), otherwise) << row.text << " and a blank";
        std::string otherCase = row.text;
        for (char& c : otherCase)
            c = static_cast<char>(c >= 'a' && c <= 'z'   ? c - 'a' + 'A'
                                  : c >= 'A' && c <= 'Z' ? c - 'A' + 'a'
                                                         : c);
        EXPECT_EQ(translate(otherCase.c_str()), otherwise) << otherCase;
    }
    EXPECT_EQ(translate("xyz"), otherwise);
}

TEST(ValueTranslation, TextsToNumbers)
{
    const char* const states = "Online 2, Offline 3, Diagnostics 7, Down 3, Downed 3,  0";
    expectTable(smlSwitchStateToCIMEnabledState, states, 0);
    expectTable(smlPortStateToCIMEnabledState, states, 0);
    expectTable(smlDiagStatusToCIMHealthState, "Passed 5, Failed 25,  0", 0);
    expectTable(smlPerfTuningModeToCIMPerformanceTuningMode, "Normal 2, MFS 3, VI 4, LCF 5, LCF-VI 6,  0", 0);
    expectTable(smlIOStreamGuardModeToCIMIOStreamGuardState, "Enabled 2, Disabled 3,  0", 0);
    expectTable(smlRSCNEnableToCIMIOStreamGuardState, "True 3, False 2, Auto 1,  1", 1);
    expectTable(smlPortTypeToCIMPortType,
                "G 0, GL 0, Unknown 0,  0, TL 1, N 10, NL 11, FNL 12, NX 13, E 14, F 15, FL 16, "
                "Donor 16000, TH 16001, TF 16002, TR 0, PT 0",
                0);
    expectTable(smlTypeToCIMType,
                "G 2, GL 3, E 4, F 5, FL 6, Donor 16000, TH 16001, TF 16002, TR 16003, PT 16004,  0, N 0",
                0);
    expectTable(smlSpeedToCIMSpeed,
                "1Gb/s 1062500000, 2Gb/s 2125000000, 4Gb/s 4250000000, 8Gb/s 8500000000, "
                "10Gb/s 12750000000, 20Gb/s 25500000000, 16Gb/s 0, Auto 0,  0",
                0);
}

// Over all numbers: whatever is not listed has no text.
template <class TRANSLATE>
void expectInverse(TRANSLATE translate, const std::string& table)
{
    const std::vector<Text_Row> rows = rowsOf(table);
    for (unsigned number = 0; number <= 0xFFFF; ++number)
    {
        std::string expected = "ERROR";
        for (const Text_Row& row : rows)
            if (row.number == number)
                expected = row.text;
        ASSERT_EQ(std::string(translate(static_cast<uint16>(number)).c_str()), expected) << number;
    }
}

TEST(ValueTranslation, NumbersToTexts)
{
    expectInverse(cimRequestedStateToSMLAdminState, "Online 2, Offline 3, Diagnostics 7");
    expectInverse(cimTypeToSMLType, "G 2, GL 3, E 4, F 5, FL 6, Donor 16000, TH 16001, TF 16002");
    expectInverse(cimIOStreamGuardStateToSMLRSCNEnable, "Auto 1, False 2, True 3");

    // The last two are 12750000000 and 25500000000 in 32 bits.
    for (const Text_Row& row :
         rowsOf("1Gb/s 1062500000, 2Gb/s 2125000000, 4Gb/s 4250000000, 8Gb/s 8500000000, "
                "10Gb/s 12750000000, 20Gb/s 25500000000, ERROR 0, ERROR 10000000000, "
                "ERROR 4160098304, ERROR 4025229312"))
        EXPECT_EQ(cimSpeedToSMLSpeed(row.number).c_str(), row.text) << row.number;
}

TEST(ValueTranslation, PortStatesToOperationalStatus)
{
    const char* const seconds[] = {"Online", "Offline", "Down", "Downed", "Isolated", ""};
    struct Row
    {
        const char* state;
        Numbers bySecond; // in the order of `seconds`
    };
    const Row rows[] = {
        {"Online", {2, 2, 2, 2, 2, 2}},
        {"Offline", {10, 10, 10, 10, 10, 10}},
        {"Diagnostics", {11, 11, 11, 11, 11, 11}},
        {"Isolated", {6, 10, 10, 10, 6, 6}},
        {"Down", {6, 6, 10, 10, 6, 6}},
        {"Downed", {6, 6, 10, 10, 6, 6}},
        {"", {0, 0, 0, 0, 0, 0}},
        {"online", {0, 0, 0, 0, 0, 0}},
    };
    for (const Row& row : rows)
    {
        for (std::size_t i = 0; i < row.bySecond.size(); ++i)
        {
            EXPECT_EQ(numbersOf(smlPortStateToCIMOperationalStatus(row.state, seconds[i])),
                      Numbers{row.bySecond[i]})
                << row.state << ", " << seconds[i];
        }
    }
}

TEST(ValueTranslation, SwitchStatesAndFaultsToOperationalStatus)
{
    struct Row
    {
        const char* state;
        Numbers faults;
        Numbers status;
    };
    const Row rows[] = {
        {"Online", {}, {2}},
        {"Offline", {}, {10}},
        {"Downed", {}, {10}},
        {"Diagnostics", {}, {11}},
        {"Down", {}, {0}},
        {"", {}, {0}},
        {"Online", {7}, {6, 7}},
        {"Online", {32769}, {6, 32769}},
        {"Online", {32768}, {2, 5, 32768}},
        {"Online", {32768, 32769}, {2, 32768, 32769}},
        {"Offline", {9, 32768, 8}, {10, 5, 9, 32768, 8}},
        {"Down", {32769, 32768}, {0, 32769, 32768}},
        {"Diagnostics", {7}, {11, 7}},
        {"Diagnostics", {32768}, {11, 32768}},
        {"Diagnostics", {32768, 32769}, {11, 32768, 32769}},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(numbersOf(smlSwitchStateToCIMOperationalStatus(row.state, arrayOf(row.faults))), row.status)
            << row.state << ", " << row.faults.size() << " faults";
    }
}

struct List_Row
{
    std::string text;
    Numbers numbers;
};

TEST(ValueTranslation, Fc4TypeLists)
{
    const std::string full(255 - 5, ',');
    const List_Row rows[] = {
        {"FCP", {8}},
        {"FCIP", {5}},
        {"FC-VI", {88}},
        {"FC-SB2 Channel to Control", {27}},
        {"FC-SB2 Control to Channel", {28}},
        {"FCP,FCIP", {8, 5}},
        // An item is the beginning of a name; the first name of which it is one counts.
        {"F", {8}},
        {"FC", {8}},
        {"FCI", {5}},
        {"FC-", {88}},
        {"FC-SB2 C", {27}},
        {"FC-SB2 Co", {28}},
        {"FCPX", {0}},
        {"fcp", {0}},
        {" FCP", {0}},
        {"FCP,FCP ", {8, 0}},
        // Empty items count, except behind the last comma.
        {"", {}},
        {"FCP,", {8}},
        {",FCP", {8, 8}},
        {"FCIP,,FC-VI", {5, 8, 88}},
        {",", {8}},
    };
    for (const List_Row& row : rows)
        EXPECT_EQ(numbersOf(smlSupportedFC4TypeToCIMSupportedFC4Type(row.text.c_str())), row.numbers)
            << row.text;

    // What lies behind 255 characters is lost.
    Numbers expected(full.size(), 8);
    expected.push_back(88); // "FC-VI"
    EXPECT_EQ(numbersOf(smlSupportedFC4TypeToCIMSupportedFC4Type((full + "FC-VI,FCIP").c_str())), expected);
    expected.back() = 0; // "FCIPX"
    EXPECT_EQ(numbersOf(smlSupportedFC4TypeToCIMSupportedFC4Type((full + "FCIPXYZ").c_str())), expected);

    EXPECT_EQ(translate_fc4_type("FCIPand more", 4), 5);
    EXPECT_EQ(translate_fc4_type("FCIPand more", 5), 0);
    EXPECT_EQ(translate_fc4_type("xyz", 0), 8);
}

TEST(ValueTranslation, ClassOfServiceLists)
{
    const std::string full(63 - 1, ' ');
    const List_Row rows[] = {
        {"2,3,F", {2, 3, 7}},
        {"123456", {1, 2, 3, 4, 5, 6}},
        {"f3 3", {7, 3, 3}},
        {"0789,x", {0}},
        {"", {0}},
        {full + "2", {2}},
        {full + "23", {2}},
        {full + " 2", {0}},
    };
    for (const List_Row& row : rows)
        EXPECT_EQ(numbersOf(smlSupportedCosToCIMSupportedCos(row.text.c_str())), row.numbers) << row.text;
}

} // namespace
} // namespace cimple
