// Tests of reading and writing scenarios.
#include "simulator/scenario/scenario_json.h"

#include <gtest/gtest.h>

#include <fstream>

using namespace simulator;

namespace
{

// A minimal scenario with room for what a test adds: switch fields, a port's fields, further top-level
// fields.
std::string
scenarioText(const std::string& switchFields, const std::string& portFields, const std::string& top)
{
    return R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001", "portCount": 2)" +
           switchFields + R"(, "ports": [{"number": 1)" + portFields + "}]}" + R"(, {"domain": 2, )" +
           R"("wwn": "100002a5c0de0002", "portCount": 2}])" + top + "}";
}

std::string errorOf(const std::string& text)
{
    try
    {
        parseScenario(text, "site.json");
    }
    catch (const ScenarioError& error)
    {
        return error.what();
    }
    return "no error";
}

struct Refused
{
    const char* name;
    std::string text;
    const char* message;
};

const Refused kRefused[] = {
    {"Empty", "", "site.json:1:1: syntax error"},
    {"NotJson", "{\n  \"seed\": 1,\n  oops\n}", "site.json:3:3: syntax error"},
    {"CutOff", "{\"switches\": [", "site.json:1:15: syntax error"},
    {"NoObject", "[]", "site.json: expected an object, got []"},
    {"NoLocalSwitch", "{}", "site.json: /switches: expected exactly one switch with \"local\": true, got 0"},
    {"UnknownTopField",
     scenarioText("", "", R"(, "swiches": [])"),
     "site.json: /swiches: unknown field; expected one of isls, noPrincipal, nodes, principal, seed, "
     "switches, "
     "uptimeSeconds"},
    {"UnknownPortField",
     scenarioText("", R"(, "sped": "8Gb/s")", ""),
     "site.json: /switches/0/ports/0/sped: unknown field; expected one of adminState, "},
    {"FieldTwice",
     scenarioText("", R"(, "speed": "1Gb/s", "speed": "2Gb/s")", ""),
     "site.json: the field \"speed\" appears twice in one object"},
    {"WrongSpeed",
     scenarioText("", R"(, "speed": "9")", ""),
     "site.json: /switches/0/ports/0/speed: expected one of Auto, 1Gb/s, 2Gb/s, 4Gb/s, 8Gb/s, 10Gb/s, "
     "20Gb/s, got "
     "\"9\""},
    {"ChoiceInWrongCase",
     scenarioText("", R"(, "adminState": "online")", ""),
     "site.json: /switches/0/ports/0/adminState: expected one of Online, Offline, Diagnostics, got "
     "\"online\""},
    {"CapabilityAuto",
     scenarioText("", R"(, "speedCapability": "Auto")", ""),
     "site.json: /switches/0/ports: port 1: speedCapability cannot be Auto"},
    {"SpeedBeyondCapability",
     scenarioText("", R"(, "speed": "10Gb/s")", ""),
     "site.json: /switches/0/ports: port 1: speed 10Gb/s is beyond speedCapability 8Gb/s"},
    {"NumberAsText",
     scenarioText("", R"(, "maxCredit": "16")", ""),
     "site.json: /switches/0/ports/0/maxCredit: expected a whole number from 0 to 65535, got \"16\""},
    {"NumberTooLarge",
     scenarioText("", R"(, "rxLoadPercent": 101)", ""),
     "site.json: /switches/0/ports/0/rxLoadPercent: expected a whole number from 0 to 100, got 101"},
    {"NumberNotWhole",
     scenarioText("", R"(, "rxLoadPercent": 1.5)", ""),
     "site.json: /switches/0/ports/0/rxLoadPercent: expected a whole number from 0 to 100, got 1.5"},
    {"NumberBeyond64Bits",
     scenarioText("", R"(, "maxCredit": 18446744073709551615)", ""),
     "site.json: /switches/0/ports/0/maxCredit: expected a whole number"},
    {"FlagAsNumber",
     scenarioText("", R"(, "mfs": 1)", ""),
     "site.json: /switches/0/ports/0/mfs: expected true or false, got 1"},
    {"ShortWwn",
     scenarioText("", R"(, "wwn": "2000")", ""),
     "site.json: /switches/0/ports/0/wwn: expected a World Wide Name of 16 hexadecimal digits, got \"2000\""},
    {"LongName",
     scenarioText(R"(, "name": "a switch name of thirty-three chars")", "", ""),
     "site.json: /switches/0/name: expected a text of at most 32 bytes"},
    {"NameWithNul",
     scenarioText(R"(, "name": "a\u0000b")", "", ""),
     "site.json: /switches/0/name: expected a text of at most 32 bytes"},
    {"UnknownPriority",
     scenarioText(R"(, "principalPriority": 2)", "", ""),
     "site.json: /switches/0/principalPriority: expected one of 1, 254, 255, got 2"},
    {"PriorityAsText",
     scenarioText(R"(, "principalPriority": "254")", "", ""),
     "site.json: /switches/0/principalPriority: expected one of 1, 254, 255, got \"254\""},
    {"ReservedOfWrongSize",
     scenarioText(R"(, "reserved": "00ff")", "", ""),
     "site.json: /switches/0/reserved: expected 138 hexadecimal digits, got \"00ff\""},
    {"FaultOutOfRange",
     scenarioText(R"(, "faults": [1, 65536])", "", ""),
     "site.json: /switches/0/faults: expected a list of whole numbers from 0 to 65535, got [1,65536]"},
    {"DomainMissing",
     R"({"switches": [{"local": true, "wwn": "100002a5c0de0001"}]})",
     "site.json: /switches/0: the field \"domain\" is missing"},
    {"DomainTwice",
     R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001"},
                      {"domain": 1, "wwn": "100002a5c0de0002"}]})",
     "site.json: /switches/1/domain: domain 1 is used twice"},
    {"WwnTwiceInOtherCase",
     R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001"},
                      {"domain": 2, "wwn": "100002A5C0DE0001"}]})",
     "site.json: /switches/1/wwn: 100002A5C0DE0001 is used twice"},
    {"LocalFieldOnRemotePort",
     R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001"},
                      {"domain": 2, "wwn": "100002a5c0de0002", "portDefaults": {"speed": "1Gb/s"}}]})",
     "site.json: /switches/1/portDefaults/speed: unknown field; expected one of adminState, failed, link, "
     "type, wwn"},
    {"PortDescribedTwice",
     R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001",
                       "ports": [{"number": 3}, {"number": 3}]}]})",
     "site.json: /switches/0/ports/1/number: port 3 is described twice"},
    {"TooManyLocalPorts",
     R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001", "ports": [{"number": 1536}]}]})",
     "site.json: /switches/0/ports: expected port numbers 0 to 1535, got 1536"},
    {"UnknownPrincipal",
     scenarioText("", "", R"(, "principal": 9)"),
     "site.json: /principal: no switch has domain 9"},
    {"NodeOnUnknownSwitch",
     scenarioText("", "", R"(, "nodes": [{"domain": 3, "port": 0, "portWwn": "210002a5c0de0001"}])"),
     "site.json: /nodes/0/domain: no switch has domain 3"},
    {"NodeOnUnknownPort",
     scenarioText("", "", R"(, "nodes": [{"domain": 2, "port": 7, "portWwn": "210002a5c0de0001"}])"),
     "site.json: /nodes/0/port: the switch of domain 2 has no port 7"},
    {"NodeOnIslPort",
     scenarioText("",
                  "",
                  R"(, "nodes": [{"domain": 1, "port": 0, "portWwn": "210002a5c0de0001"}],
                     "isls": [{"domain": 1, "port": 0, "toDomain": 2, "toPort": 0}])"),
     "site.json: /nodes/0/port: port 0 has a link to another switch"},
    {"AddressOfOtherDomain",
     scenarioText(
         "",
         "",
         R"(, "nodes": [{"domain": 1, "port": 0, "portWwn": "210002a5c0de0001", "address": "020000"}])"),
     "site.json: /nodes/0/address: expected an address of domain 1"},
    {"AddressTwice",
     scenarioText("",
                  "",
                  R"(, "nodes": [{"domain": 1, "port": 0, "portWwn": "210002a5c0de0001", "address": "010203"},
                                 {"domain": 1, "port": 1, "portWwn": "210002a5c0de0002", "address": "010203"}])"),
     "site.json: /nodes/1/address: the address 010203 is taken by /nodes/0/address"},
    {"ZeroAddress",
     scenarioText(
         "",
         "",
         R"(, "nodes": [{"domain": 1, "port": 0, "portWwn": "210002a5c0de0001", "address": "000000"}])"),
     "site.json: /nodes/0/address: expected a Fibre Channel address of six hexadecimal digits, not 000000"},
    {"IslPortTwice",
     scenarioText("",
                  "",
                  R"(, "isls": [{"domain": 1, "port": 0, "toDomain": 2, "toPort": 0},
                                {"domain": 1, "port": 1, "toDomain": 2, "toPort": 0}])"),
     "site.json: /isls/1/toPort: port 0 already has a link"},
};

class RefusedScenario : public testing::TestWithParam<Refused>
{
};

TEST_P(RefusedScenario, SaysWhereAndWhatWasExpected)
{
    EXPECT_PRED_FORMAT2(testing::IsSubstring, GetParam().message, errorOf(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(Scenario,
                         RefusedScenario,
                         testing::ValuesIn(kRefused),
                         [](const auto& row) { return row.param.name; });

TEST(Scenario, PortsTakeDefaultsThenTheirOwnFields)
{
    const Scenario scenario = parseScenario(
        R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001", "portCount": 3,
             "portDefaults": {"speed": "4Gb/s", "mfs": true},
             "ports": [{"number": 9, "name": "far"}, {"number": 1, "speed": "2Gb/s"}]}]})",
        "site.json");
    const auto& ports = scenario.switches.front().ports;
    ASSERT_EQ(4u, ports.size());
    EXPECT_EQ(9, ports[3].number); // sorted, beyond the count
    EXPECT_EQ("far", ports[3].name);
    EXPECT_EQ(LinkSpeed::gb4, ports[0].speed);
    EXPECT_EQ(LinkSpeed::gb2, ports[1].speed);
    EXPECT_TRUE(ports[1].mfs && ports[3].mfs);
}

TEST(Scenario, WhatIsWrittenReadsBackTheSame)
{
    // Every field of every kind at a value that is not its default.
    const std::string text = scenarioText(
        R"(, "name": "n", "type": "", "productName": "p ", "adminState": "Offline",
           "configuredAdminState": "Diagnostics", "transparent": true, "faults": [7, 32768], "preferredDomain": 9,
           "domainLocked": true, "principalPriority": 255, "reserved": ")" +
            std::string(138, 'a') + "\"",
        R"(, "wwn": "2000000000000000", "adminState": "Offline", "type": "TH", "link": "Down", "failed": true,
           "name": "a \"name\"", "hardware": "Ethernet", "speedCapability": "10Gb/s", "speed": "10Gb/s",
           "diagnostics": "Unavailable", "rscn": "False", "autoPerfTuning": false, "mfs": true, "lcf": true,
           "vi": true, "scan": false, "maxCredit": 3, "rxLoadPercent": 1, "txLoadPercent": 2, "frameBytes": 99,
           "class2Percent": 4, "errorsPerHour": 5)",
        R"(, "seed": 5, "uptimeSeconds": 6, "principal": 2, "noPrincipal": true,
           "nodes": [{"domain": 2, "port": 1, "address": "020109", "portWwn": "210002A5C0DE0001",
                      "nodeWwn": "200002a5c0de0001", "portName": "pn", "nodeName": "nn", "role": "Initiator",
                      "type": "NL", "classes": "2,3", "protocols": "FCP,FCIP", "speed": "1Gb/s"}],
           "isls": [{"domain": 1, "port": 0, "toDomain": 2, "toPort": 0, "isolated": true}])");
    const std::string once = formatScenario(parseScenario(text, "a"));
    const Scenario again = parseScenario(once, "b");
    EXPECT_EQ(once, formatScenario(again));
    for (const char* piece : {"\"productName\": \"p \"",
                              "\"principalPriority\": 255",
                              "\"type\": \"\"",
                              "\"address\": \"020109\"",
                              "\"isolated\": true",
                              "\"errorsPerHour\": 5",
                              "\"hardware\": \"Ethernet\"",
                              "\"noPrincipal\": true",
                              "\"class2Percent\": 4"})
        EXPECT_NE(std::string::npos, once.find(piece)) << piece;
}

TEST(Scenario, UnreadableFilesAreNamed)
{
    for (const std::string& path : {std::string("/no/such/site.json"), std::string("/")})
    {
        try
        {
            readScenario(path);
            FAIL() << path;
        }
        catch (const ScenarioError& error)
        {
            EXPECT_EQ(0u, std::string(error.what()).rfind(path + ": cannot read the scenario: ", 0))
                << error.what();
        }
    }
}

} // namespace
