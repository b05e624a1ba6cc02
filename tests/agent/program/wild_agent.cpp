// Options and requests.
#include "tests/agent/program/wild_agent.h"

#include <gtest/gtest.h>

namespace cimd::test
{

std::vector<std::string> words(const std::vector<std::string>& more)
{
    std::vector<std::string> all = {"--port",
                                    "0",
                                    "--repository",
                                    CIMD_TEST_FILES "/repository.xml",
                                    "--registration",
                                    CIMD_TEST_FILES "/providers.reg",
                                    "--provider-dir",
                                    CIMD_TEST_PROVIDERS};
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

namespace
{

std::string request(const std::string& method, const std::string& parameters)
{
    return post("<CIM CIMVERSION='2.0' DTDVERSION='2.0'><MESSAGE ID='1' PROTOCOLVERSION='1.0'><SIMPLEREQ>"
                "<IMETHODCALL NAME='" +
                    method +
                    "'><LOCALNAMESPACEPATH><NAMESPACE NAME='root'/><NAMESPACE NAME='test'/>"
                    "</LOCALNAMESPACEPATH>" +
                    parameters + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>",
                "CIMOperation: MethodCall\r\nCIMMethod: " + method + "\r\nCIMObject: root%2Ftest\r\n");
}

std::string instanceName(const std::string& className, const std::string& mode)
{
    return "<INSTANCENAME CLASSNAME='" + className + "'><KEYBINDING NAME='Mode'><KEYVALUE>" + mode +
           "</KEYVALUE></KEYBINDING></INSTANCENAME>";
}

} // namespace

std::string getInstance(const std::string& className, const std::string& mode)
{
    return request("GetInstance",
                   "<IPARAMVALUE NAME='InstanceName'>" + instanceName(className, mode) + "</IPARAMVALUE>");
}

std::string setCount(std::size_t count)
{
    return request(
        "ModifyInstance",
        "<IPARAMVALUE NAME='ModifiedInstance'><VALUE.NAMEDINSTANCE>" + instanceName("Test_Wild", "good") +
            "<INSTANCE CLASSNAME='Test_Wild'><PROPERTY NAME='Count' TYPE='uint32'><VALUE>" +
            std::to_string(count) + "</VALUE></PROPERTY></INSTANCE></VALUE.NAMEDINSTANCE></IPARAMVALUE>");
}

std::string enumerateInstances()
{
    return request("EnumerateInstances",
                   "<IPARAMVALUE NAME='ClassName'><CLASSNAME NAME='Test_Wild'/></IPARAMVALUE>");
}

// What a new connection is answered.
std::string ask(std::uint16_t port, const std::string& mode, const std::string& className)
{
    return RawClient(port).ask(getInstance(className, mode)).body;
}

bool isInstance(const std::string& answer)
{
    return answer.find("<INSTANCE CLASSNAME=") != std::string::npos;
}

// A request that is still being answered when this returns.
RawClient askAndLeaveWaiting(std::uint16_t port)
{
    RawClient client(port);
    client.send(getInstance("Test_Wild", "waits"));
    EXPECT_TRUE(isInstance(ask(port, "sees one wait")));
    return client;
}

} // namespace cimd::test
