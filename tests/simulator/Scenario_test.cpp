// Tests of reading and writing scenarios.
#include "simulator/scenario/scenario_json.h"
#include "tests/simulator/sml.h"

#include <gtest/gtest.h>

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

std::string withPort(const std::string& fields)
{
    return scenarioText("", fields, "");
}

std::string withTop(const std::string& fields)
{
    return scenarioText("", "", fields);
}

struct Field
{
    const char* place;
    const char* name;
    const char* value;
    const char* expected;
};

constexpr const char* kPort = "/switches/0/ports/0/";
constexpr const char* kSwitch = "/switches/0/";
constexpr const char* kThermometer = "/switches/0/temperatureSensors/0/";
constexpr Field kFields[] = {
    {kPort, "speed", "\"9\"", "one of Auto, 1Gb/s, 2Gb/s, 4Gb/s, 8Gb/s, 10Gb/s, 20Gb/s"},
    {kPort, "adminState", "\"online\"", "one of Online, Offline, Diagnostics"},
    {kPort, "maxCredit", "\"16\"", "a whole number from 0 to 65535"},
    {kPort, "maxCredit", "18446744073709551615", "a whole number from 0 to 65535"},
    {kPort, "rxLoadPercent", "101", "a whole number from 0 to 100"},
    {kPort, "rxLoadPercent", "1.5", "a whole number from 0 to 100"},
    {kPort, "mfs", "1", "true or false"},
    {kPort, "wwn", "\"2000\"", "a World Wide Name of 16 hexadecimal digits"},
    {kSwitch, "name", "\"a switch name of thirty-three chars\"", "a text of at most 32 bytes"},
    {kSwitch, "name", "\"a\\u0000b\"", "a text of at most 32 bytes"},
    {kSwitch, "principalPriority", "2", "one of 1, 254, 255"},
    {kSwitch, "principalPriority", "\"254\"", "one of 1, 254, 255"},
    {kSwitch, "preferredDomain", "240", "a whole number from 0 to 239"},
    {kSwitch, "reserved", "\"00ff\"", "138 hexadecimal digits"},
    {kSwitch, "brand", "5", "a text of at most 64 bytes"},
    {kSwitch, "services", "true", "an object"},
    {kSwitch, "powerSupplies", "{}", "a list"},
    {"/switches/0/powerSupplies/0/", "state", "\"Broken\"", "one of Normal, Warning, Failed, NotInstalled"},
    {kThermometer, "base", "36.125", "a number from -40.00 to 150.00 with at most 2 decimals"},
    {kThermometer, "warnHigh", "1e+300", "a number from -40.00 to 150.00 with at most 2 decimals"},
    {"/switches/0/voltageSensors/0/",
     "nominal",
     "\"5\"",
     "a number from -60.000 to 60.000 with at most 3 decimals"},
    {"/switches/0/blades/0/",
     "ports",
     "[1,0]",
     "a list of two whole numbers from 0 to 1535, the lower one first"},
    {kSwitch, "faults", "[1,65536]", "a list of whole numbers from 0 to 65535"},
};

// A scenario with the field where it belongs: in the port, in the switch or in a list of the switch.
std::string withField(const Field& row)
{
    const std::string field = std::string("\"") + row.name + "\": " + row.value;
    if (row.place == kPort)
        return withPort(", " + field);
    const std::string below = std::string(row.place).substr(std::strlen(kSwitch)); // "blades/0/"
    const std::string list = below.substr(0, below.find('/'));
    return scenarioText(", " + (list.empty() ? field : "\"" + list + "\": [{" + field + "}]"), "", "");
}

const std::pair<std::string, const char*> kRefused[] = {
    {"", "site.json:1:1: syntax error"},
    {"{\n  \"seed\": 1,\n  oops\n}", "site.json:3:3: syntax error"},
    {"{\"switches\": [", "site.json:1:15: syntax error"},
    {"[]", "site.json: expected an object, got []"},
    {"{}", "site.json: /switches: expected exactly one switch with \"local\": true, got 0"},
    {withTop(R"(, "swiches": [])"),
     "site.json: /swiches: unknown field; expected one of isls, noPrincipal, nodes, principal, seed, "},
    {withPort(R"(, "speed": "1Gb/s", "speed": "2Gb/s")"),
     "site.json: the field \"speed\" appears twice in one object"},
    {withPort(R"(, "speedCapability": "Auto")"),
     "site.json: /switches/0/ports: port 1: speedCapability cannot be Auto"},
    {withPort(R"(, "speed": "10Gb/s")"),
     "site.json: /switches/0/ports: port 1: speed 10Gb/s is beyond speedCapability 8Gb/s"},
    {R"({"switches": [{"local": true, "wwn": "100002a5c0de0001"}]})",
     "site.json: /switches/0: the field \"domain\" is missing"},
    {R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001"},
                      {"domain": 1, "wwn": "100002a5c0de0002"}]})",
     "site.json: /switches/1/domain: domain 1 is used twice"},
    {R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001"},
                      {"domain": 2, "wwn": "100002A5C0DE0001"}]})",
     "site.json: /switches/1/wwn: 100002A5C0DE0001 is used twice"},
    {R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001"},
                      {"domain": 2, "wwn": "100002a5c0de0002", "portDefaults": {"speed": "1Gb/s"}}]})",
     "site.json: /switches/1/portDefaults/speed: unknown field; expected one of adminState, failed, link, "
     "type, wwn"},
    {R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001",
                       "ports": [{"number": 3}, {"number": 3}]}]})",
     "site.json: /switches/0/ports/1/number: port 3 is described twice"},
    {R"({"switches": [{"local": true, "domain": 1, "wwn": "100002a5c0de0001", "ports": [{"number": 1536}]}]})",
     "site.json: /switches/0/ports: expected port numbers 0 to 1535, got 1536"},
    {withPort(R"(, "blade": 1)"), "site.json: /switches/0/ports: port 1: the switch has no blade 1"},
    {scenarioText(R"(, "blades": [{"ports": [0, 2]}])", "", ""),
     "site.json: /switches/0/blades/0/ports: port 2 is not a port of the switch"},
    {scenarioText(R"(, "blades": [{"ports": [0, 1]}, {"ports": [1, 1]}])", "", ""),
     "site.json: /switches/0/blades/1/ports: port 1 sits on blade 1"},
    {scenarioText(R"(, "blades": [{}, {"present": true, "slot": 2}])", "", ""),
     "site.json: /switches/0/blades/1/slot: unknown field; expected one of adminState, diagnostics, "
     "failed, "},
    {scenarioText(R"(, "ipAddress": "10.1.2.300")", "", ""),
     "site.json: /switches/0/ipAddress: expected an IPv4 or IPv6 address, got \"10.1.2.300\""},
    {scenarioText(R"(, "temperatureSensors": [{"warnHigh": 60, "critHigh": 59.99}])", "", ""),
     "site.json: /switches/0/temperatureSensors/0/warnHigh: expected at most critHigh"},
    {scenarioText(R"(, "voltageSensors": [{"nominal": 12}, {"nominal": 5, "critLow": 5.001}])", "", ""),
     "site.json: /switches/0/voltageSensors/1/nominal: expected a value between critLow and critHigh"},
    {scenarioText(R"(, "voltageSensors": [{"nominal": 5, "critHigh": 4.999}])", "", ""),
     "site.json: /switches/0/voltageSensors/0/nominal: expected a value between critLow and critHigh"},
    {scenarioText(R"(, "voltageSensors": [{"critLow": 5}])", "", ""),
     "site.json: /switches/0/voltageSensors/0: the field \"nominal\" is missing"},
    {withTop(R"(, "principal": 9)"), "site.json: /principal: no switch has domain 9"},
    {withTop(R"(, "nodes": [{"domain": 3, "port": 0, "portWwn": "210002a5c0de0001"}])"),
     "site.json: /nodes/0/domain: no switch has domain 3"},
    {withTop(R"(, "nodes": [{"domain": 2, "port": 7, "portWwn": "210002a5c0de0001"}])"),
     "site.json: /nodes/0/port: the switch of domain 2 has no port 7"},
    {withTop(R"(, "nodes": [{"domain": 1, "port": 0, "portWwn": "210002a5c0de0001"}],
                     "isls": [{"domain": 1, "port": 0, "toDomain": 2, "toPort": 0}])"),
     "site.json: /nodes/0/port: port 0 has a link to another switch"},
    {withTop(R"(, "nodes": [{"domain": 1, "port": 0, "portWwn": "210002a5c0de0001", "address": "020000"}])"),
     "site.json: /nodes/0/address: expected an address of domain 1"},
    {withTop(R"(, "nodes": [{"domain": 1, "port": 0, "portWwn": "210002a5c0de0001", "address": "010203"},
                                 {"domain": 1, "port": 1, "portWwn": "210002a5c0de0002", "address": "010203"}])"),
     "site.json: /nodes/1/address: the address 010203 is taken by /nodes/0/address"},
    {withTop(R"(, "nodes": [{"domain": 1, "port": 0, "portWwn": "210002a5c0de0001", "address": "000000"}])"),
     "site.json: /nodes/0/address: expected a Fibre Channel address of six hexadecimal digits, not 000000"},
    {withTop(R"(, "isls": [{"domain": 1, "port": 0, "toDomain": 2, "toPort": 0},
                                {"domain": 1, "port": 1, "toDomain": 2, "toPort": 0}])"),
     "site.json: /isls/1/toPort: port 0 already has a link"},
};

TEST(Scenario, FaultsSayWhereAndWhatWasExpected)
{
    for (const auto& [text, message] : kRefused)
        EXPECT_PRED_FORMAT2(testing::IsSubstring, message, errorOf(text)) << text;
    for (const Field& row : kFields)
    {
        EXPECT_EQ(std::string("site.json: ") + row.place + row.name + ": expected " + row.expected +
                      ", got " + row.value,
                  errorOf(withField(row)));
    }
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
