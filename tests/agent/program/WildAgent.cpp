// Options and requests.
#include "tests/agent/program/WildAgent.h"

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

std::string getInstance(const std::string& className, const std::string& mode)
{
    return post("<CIM CIMVERSION='2.0' DTDVERSION='2.0'><MESSAGE ID='1' PROTOCOLVERSION='1.0'><SIMPLEREQ>"
                "<IMETHODCALL NAME='GetInstance'><LOCALNAMESPACEPATH><NAMESPACE NAME='root'/>"
                "<NAMESPACE NAME='test'/></LOCALNAMESPACEPATH><IPARAMVALUE NAME='InstanceName'>"
                "<INSTANCENAME CLASSNAME='" +
                    className + "'><KEYBINDING NAME='Mode'><KEYVALUE>" + mode +
                    "</KEYVALUE></KEYBINDING></INSTANCENAME></IPARAMVALUE></IMETHODCALL></SIMPLEREQ>"
                    "</MESSAGE></CIM>",
                "CIMOperation: MethodCall\r\nCIMMethod: GetInstance\r\nCIMObject: root%2Ftest\r\n");
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
