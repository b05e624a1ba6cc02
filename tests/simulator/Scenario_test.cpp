// Tests of reading and writing scenarios.
#include "simulator/scenario/scenario_json.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>

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
    return errorFrom([&] { parseScenario(text, "site.json"); });
}

// A scenario with fields in one of its places.
std::string withFields(const std::string& where, const std::string& fields)
{
    if (where == "whole")
        return fields;
    const auto in = [&](const char* place) { return where == place ? ", " + fields : std::string(); };
    const std::string zoning = where == "zoning" ? ", \"zoning\": {" + fields + "}" : "";
    return scenarioText(in("switch"), in("port"), in("top") + zoning);
}

TEST(Scenario, FaultsSayWhereAndWhatWasExpected)
{
    std::ifstream file(TEST_DIR "/refused_scenarios.txt");
    int rows = 0;
    for (std::string row; std::getline(file, row);)
    {
        if (row.empty() || row[0] == '#')
            continue;
        ++rows;
        const std::size_t blank = row.find(' '), arrow = row.rfind(" -> ");
        const std::string text = withFields(row.substr(0, blank), row.substr(blank + 1, arrow - blank - 1));
        EXPECT_EQ(0u, errorOf(text).find("site.json: " + row.substr(arrow + 4))) << row << "\n"
                                                                                 << errorOf(text);
    }
    EXPECT_GT(rows, 70);
    for (const auto& [text, message] :
         {std::pair("", ":1:1: syntax error"),
          {"{\n  \"seed\": 1,\n  oops\n}", ":3:3: syntax error"},
          {"{\"switches\": [", ":1:15: syntax error"},
          {"[]", ": expected an object, got []"},
          {"{}", ": /switches: expected exactly one switch with \"local\": true, got 0"}})
        EXPECT_EQ(0u, errorOf(text).find(std::string("site.json") + message)) << errorOf(text);
}

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
           "domainLocked": true, "principalPriority": 255, "brand": "b", "chassisPartNumber": "c",
           "chassisSerialNumber": "", "planarPartNumber": "d", "firmwareVersion": "V1", "location": "l",
           "product": {"name": "e", "elementName": "", "identifyingNumber": "f", "vendor": "g"},
           "standbyFirmwareVersion": "", "ipAddress": "fe80::1",
           "services": {"snmp": false, "web": false, "telnet": false, "ssh": false},
           "temperatureSensors": [{"description": "t", "base": 20.25, "warnHigh": -1.29, "critHigh": 30.1,
                                   "pinned": -0.07, "broken": true}],
           "voltageSensors": [{"nominal": 1.005, "critLow": 0.99, "critHigh": 1.02, "pinned": 3.3}],
           "powerSupplies": [{"state": "NotInstalled", "outputPower": 77}],
           "fans": [{"state": "Failed"}], "cpus": [{"state": "Warning"}], "users": ["eva"],
           "listeners": [{"name": "li", "permanent": true, "destination": "http://h"}],
           "subscriptions": [{"name": "su", "filter": "fi", "enableState": "True", "durationSeconds": 99,
                              "enableStateChange": "2026-11-14T20:35:10Z", "startTime": "2026-11-14T20:35:11Z",
                              "listeners": ["li"]}],
           "blades": [{"present": false}, {"failed": true, "adminState": "Diagnostics", "model": "m",
                       "diagnostics": "Failed", "partNumber": "p", "serialNumber": "s"}], "reserved": ")" +
            std::string(138, 'a') + "\"",
        R"(, "wwn": "2000000000000000", "adminState": "Offline", "type": "TH", "link": "Down", "failed": true,
           "name": "a \"name\"", "hardware": "Ethernet", "speedCapability": "10Gb/s", "speed": "10Gb/s",
           "diagnostics": "Unavailable", "rscn": "False", "autoPerfTuning": false, "mfs": true, "lcf": true,
           "vi": true, "scan": false, "maxCredit": 3, "rxLoadPercent": 1, "txLoadPercent": 2, "frameBytes": 99,
           "class2Percent": 4, "errorsPerHour": 5, "blade": 2)",
        R"(, "seed": 5, "uptimeSeconds": 6, "principal": 2, "noPrincipal": true,
           "nodes": [{"domain": 2, "port": 1, "address": "020109", "portWwn": "210002A5C0DE0001",
                      "nodeWwn": "200002a5c0de0001", "portName": "pn", "nodeName": "nn", "role": "Initiator",
                      "type": "NL", "classes": "2,3", "protocols": "FCP,FCIP", "speed": "1Gb/s"}],
           "isls": [{"domain": 1, "port": 0, "toDomain": 2, "toPort": 0, "isolated": true}])");
    const std::string once = formatScenario(parseScenario(text, "a"));
    EXPECT_EQ(once, formatScenario(parseScenario(once, "b")));
    const std::regex field(R"re("\w+": ("(\\.|[^"\\])*"|-?[\d.]+|true|false))re");
    for (std::sregex_iterator one(text.begin(), text.end(), field), end; one != end; ++one)
    {
        const std::string said = one->str() == "\"portCount\": 2" ? "\"number\": 1" : one->str();
        EXPECT_NE(std::string::npos, once.find(said)) << said;
    }
}

TEST(Scenario, UnreadableFilesAreNamed)
{
    for (const std::string& path : {std::string("/no/such/site.json"), std::string("/")})
    {
        const std::string error = errorFrom([&] { readScenario(path); });
        EXPECT_EQ(0u, error.rfind(path + ": cannot read the scenario: ", 0)) << error;
    }
}

} // namespace
