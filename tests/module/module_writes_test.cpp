// Modifications in CIM-XML, each read back in CIM-XML from the switch: the maps are emptied in between.
#include "simulator/testing/SimSwitch.h"
#include "tests/common/testing/failures.h"
#include "tests/module/module_test_agent.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using simulator::SimSwitch;

typedef std::map<std::string, std::string> Values;

std::string typeOf(const std::string& property)
{
    if (property == "RequestedSpeed")
        return "uint64";
    if (property == "PreferredDomainID")
        return "uint8";
    const bool isBoolean =
        property == "AutoSenseSpeed" || property == "DeviceScanEnable" || property == "DomainIDLocked";
    return isBoolean ? "boolean" : "uint16";
}

class ModuleWrites : public testing::Test
{
  protected:
    // A port with a host on it, whose settings show in what it runs as.
    ModuleWrites()
        : sim(SimSwitch::make().ports(3).node(1, 2, "2100026e1a40b7c1")), agent("vraxproviders_failing")
    {
        makeMapsStale();
    }
    ~ModuleWrites() override { makeMapsStale(); }

    // The first instance with this text in its path.
    cimd::ObjectPath pathOf(const char* className, const std::string& text)
    {
        for (const cimd::Instance& instance : agent.instances(className))
        {
            const std::string path = instance.path().text();
            if (path.find(text) != path.npos)
                return instance.path();
        }
        ADD_FAILURE() << "no " << className << " " << text;
        return {};
    }

    // The texts of these properties in the answer to a GetInstance, "null" included.
    Values read(const cimd::ObjectPath& path, const Values& of)
    {
        const std::string answer = agent.get(path);
        Values values;
        for (const auto& one : of)
        {
            const std::size_t at = answer.find("<PROPERTY NAME=\"" + one.first + "\"");
            const std::string property = answer.substr(at, answer.find("<PROPERTY", at + 1) - at);
            const std::size_t begin = property.find("<VALUE>");
            values[one.first] = begin == property.npos
                                    ? "null"
                                    : property.substr(begin + 7, property.find("</VALUE>") - begin - 7);
        }
        return values;
    }

    SimSwitch sim;
    Module_Agent agent;
};

struct Write
{
    Values asked;
    Values readBack;
    Values ofPort; // of the VRAX_FCPort
};

TEST_F(ModuleWrites, ArriveInTheSwitch)
{
    const cimd::ObjectPath port = pathOf("VRAX_FCPort", "200202a5c0de0001");
    const cimd::ObjectPath ofPort = pathOf("VRAX_FCPortSettings", "200202a5c0de0001");
    const cimd::ObjectPath ofSwitch = pathOf("VRAX_FCSwitchSettings", "100002a5c0de0001");
    const std::pair<cimd::ObjectPath, Write> writes[] = {
        {ofPort,
         {{{"RequestedSpeed", "4250000000"}},
          {{"RequestedSpeed", "4250000000"}, {"AutoSenseSpeed", "FALSE"}},
          {{"Speed", "4250000000"}}}},
        {ofPort,
         {{{"RequestedSpeed", "0"}, {"AutoSenseSpeed", "TRUE"}},
          {{"RequestedSpeed", "8500000000"}, {"AutoSenseSpeed", "TRUE"}},
          {{"Speed", "8500000000"}}}},
        {ofPort, {{{"RequestedType", "5"}}, {{"RequestedType", "5"}}, {{"PortType", "15"}}}},
        {ofPort,
         {{{"RequestedIOStreamGuardState", "2"}},
          {{"RequestedIOStreamGuardState", "2"}},
          {{"IOStreamGuardState", "2"}}}},
        {ofPort,
         {{{"RequestedPerformanceTuningMode", "6"}},
          {{"RequestedPerformanceTuningMode", "6"}},
          {{"PerformanceTuningMode", "6"}}}},
        {ofPort, {{{"DeviceScanEnable", "FALSE"}}, {{"DeviceScanEnable", "FALSE"}}, {}}},
        {ofSwitch, {{{"PreferredDomainID", "9"}}, {{"PreferredDomainID", "9"}}, {}}},
        {ofSwitch, {{{"DomainIDLocked", "TRUE"}}, {{"DomainIDLocked", "TRUE"}}, {}}},
        {ofSwitch, {{{"PrincipalPriority", "2"}}, {{"PrincipalPriority", "2"}}, {}}},
    };
    for (const auto& [path, write] : writes)
    {
        std::string properties;
        for (const auto& [name, value] : write.asked)
            properties += "<PROPERTY NAME=\"" + name + "\" TYPE=\"" + typeOf(name) + "\"><VALUE>" + value +
                          "</VALUE></PROPERTY>";
        const std::string answer = agent.modify(path, properties);
        EXPECT_EQ(answer.find("<ERROR"), answer.npos) << answer;
        makeMapsStale();
        EXPECT_EQ(read(path, write.readBack), write.readBack) << properties;
        EXPECT_EQ(read(port, write.ofPort), write.ofPort) << properties;
    }
}

TEST_F(ModuleWrites, ThatAreRefusedSayWhichPropertyItWas)
{
    const std::string answer = agent.modify(
        pathOf("VRAX_FCPortSettings", "200202a5c0de0001"),
        "<PROPERTY NAME=\"DeviceScanEnable\" TYPE=\"boolean\"><VALUE>TRUE</VALUE></PROPERTY>"
        "<PROPERTY NAME=\"RequestedSpeed\" TYPE=\"uint64\"><VALUE>25500000000</VALUE></PROPERTY>");
    EXPECT_NE(answer.find(
                  "<ERROR CODE=\"1\" DESCRIPTION=\"VRAX_FCPortSettings: modify instance failed (status 104): "
                  "Unable to set FCPortSetting data: RequestedSpeed, "
                  "Config.UserPort.0.2.LinkSpeed.20Gb/s: status 9\""),
              answer.npos)
        << answer;
}

} // namespace
