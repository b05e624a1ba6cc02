// Enumerations opened, pulled and closed by messages.
#include "agent/log/Log.h"
#include "agent/ops/FrontEnd.h"
#include "tests/agent/http/WholeAnswer.h"
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>
#include <regex>

namespace cimd
{
namespace
{

std::string value(const std::string& name, const std::string& text)
{
    return "<IPARAMVALUE NAME=\"" + name + "\"><VALUE>" + text + "</VALUE></IPARAMVALUE>";
}

// Each has four results.
const std::string kMany = R"(<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="Test_Base"/></IPARAMVALUE>)";
const std::string kFromMany = R"(<IPARAMVALUE NAME="InstanceName"><INSTANCENAME CLASSNAME="Test_Widget">)"
                              R"(<KEYBINDING NAME="Name"><KEYVALUE>w1</KEYVALUE></KEYBINDING>)"
                              R"(</INSTANCENAME></IPARAMVALUE>)";

struct Answer
{
    int status = 0; ///< of CIM; 0 for none
    std::ptrdiff_t withPath = 0;
    std::ptrdiff_t instances = 0;
    std::ptrdiff_t paths = 0; ///< those in `withPath` among them
    bool ended = false;
    std::string context;
};

std::ptrdiff_t count(const std::string& text, const std::string& what)
{
    std::ptrdiff_t found = 0;
    for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; ++at)
        ++found;
    return found;
}

class PullTest : public ::testing::Test
{
  protected:
    PullTest() { setLogLevel(LogLevel::Error); }

    Answer call(const std::string& operation, const std::string& parameters)
    {
        HttpRequest request;
        request.headers = {{"Host", "switch"}, {"CIMMethod", operation}, {"CIMObject", "root/test"}};
        request.body = R"(<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0">)"
                       R"(<SIMPLEREQ><IMETHODCALL NAME=")" +
                       operation +
                       R"("><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="test"/>)"
                       "</LOCALNAMESPACEPATH>" +
                       parameters + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
        const std::string body = _frontEnd.answer(request, _stream).body;
        Answer answer;
        std::smatch found;
        if (std::regex_search(body, found, std::regex("ERROR CODE=\"([0-9]+)\"")))
            answer.status = std::stoi(found[1]);
        if (std::regex_search(body, found, std::regex("\"EnumerationContext\"[^>]*><VALUE>([^<]*)<")))
            answer.context = found[1];
        answer.withPath = count(body, "<VALUE.INSTANCEWITHPATH><INSTANCEPATH>");
        answer.instances = count(body, "<INSTANCE ");
        answer.paths = count(body, "<INSTANCEPATH>");
        answer.ended = count(body, "\"EndOfSequence\" PARAMTYPE=\"boolean\"><VALUE>TRUE<") == 1;
        EXPECT_EQ(answer.status != 0 || operation == "CloseEnumeration" ? 0 : 1, count(body, "EndOfSequence"))
            << body;
        EXPECT_EQ(answer.context.empty(), answer.ended || answer.status != 0 || operation[0] == 'C') << body;
        return answer;
    }

    Answer pull(const std::string& operation, const std::string& context, int most)
    {
        return call(operation,
                    value("EnumerationContext", context) + value("MaxObjectCount", std::to_string(most)));
    }

    test::TestCore _core;
    WholeAnswer _stream;
    FrontEnd _frontEnd{_core.service(), Limits()};
};

TEST_F(PullTest, EveryKindIsPulledToItsEnd)
{
    const struct
    {
        const char* open;
        const std::string& parameters;
        const char* pull;
        const char* wrongPull;
        int withPath, instances, paths; // each 1 if a result has one
    } rows[] = {
        {"OpenEnumerateInstances", kMany, "PullInstancesWithPath", "PullInstancePaths", 1, 1, 1},
        {"OpenEnumerateInstances", kMany, "PullInstances", "PullInstancePaths", 0, 1, 0},
        {"OpenEnumerateInstancePaths", kMany, "PullInstancePaths", "PullInstancesWithPath", 0, 0, 1},
        {"OpenAssociatorInstances", kFromMany, "PullInstancesWithPath", "PullInstancePaths", 1, 1, 1},
        {"OpenAssociatorInstancePaths", kFromMany, "PullInstancePaths", "PullInstances", 0, 0, 1},
        {"OpenReferenceInstances", kFromMany, "PullInstancesWithPath", "PullInstancePaths", 1, 1, 1},
        {"OpenReferenceInstancePaths", kFromMany, "PullInstancePaths", "PullInstancesWithPath", 0, 0, 1},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(std::string(row.open) + " " + row.pull);
        Answer answer = call(row.open, row.parameters);
        EXPECT_EQ(0, answer.paths) << "nothing was asked for yet";
        const std::string context = answer.context;
        EXPECT_EQ(21, pull(row.wrongPull, context, 1).status);
        for (const int most : {2, 0, 1, 100})
        {
            answer = pull(row.pull, context, most);
            const int expected = most == 100 ? 1 : most;
            EXPECT_EQ(row.withPath * expected, answer.withPath);
            EXPECT_EQ(row.instances * expected, answer.instances);
            EXPECT_EQ(row.paths * expected, answer.paths);
            EXPECT_EQ(most == 100, answer.ended);
        }
        EXPECT_EQ(21, pull(row.pull, context, 1).status);
    }
}

TEST_F(PullTest, EndsAsSoonAsThereIsNoMore)
{
    for (const int most : {4, 5})
        EXPECT_TRUE(
            call("OpenEnumerateInstances", kMany + value("MaxObjectCount", std::to_string(most))).ended);
    const Answer open = call("OpenEnumerateInstances", kMany + value("MaxObjectCount", "3"));
    EXPECT_EQ(3, open.withPath);
    EXPECT_FALSE(open.ended);
    EXPECT_TRUE(pull("PullInstancesWithPath", open.context, 1).ended);
}

TEST_F(PullTest, CloseEndsIt)
{
    const std::string context = call("OpenEnumerateInstancePaths", kMany).context;
    const std::string parameter = value("EnumerationContext", context);
    EXPECT_EQ(0, call("CloseEnumeration", parameter).status);
    EXPECT_EQ(21, pull("PullInstancePaths", context, 1).status);
    EXPECT_EQ(21, call("CloseEnumeration", parameter).status);
}

} // namespace
} // namespace cimd
