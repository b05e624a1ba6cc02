// Audit lines: each change leaves one, nothing secret stands in it, and no client can forge one.
#include "agent/log/log.h"
#include "agent/ops/FrontEnd.h"
#include "tests/agent/http/WholeAnswer.h"
#include "tests/agent/testproviders/TestCore.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

const std::string kNameSpace =
    R"(<LOCALNAMESPACEPATH><NAMESPACE NAME="root"/><NAMESPACE NAME="test"/></LOCALNAMESPACEPATH>)";

std::string path(const std::string& name)
{
    return R"(<INSTANCENAME CLASSNAME="Test_Widget"><KEYBINDING NAME="Name"><KEYVALUE>)" + name +
           "</KEYVALUE></KEYBINDING></INSTANCENAME>";
}

std::string parameter(const std::string& name, const std::string& value)
{
    return "<IPARAMVALUE NAME=\"" + name + "\">" + value + "</IPARAMVALUE>";
}

std::string properties(const std::string& text)
{
    return R"(<INSTANCE CLASSNAME="Test_Widget"><PROPERTY NAME="Text" TYPE="string"><VALUE>)" + text +
           R"(</VALUE></PROPERTY><PROPERTY NAME="U8" TYPE="uint8"><VALUE>5</VALUE></PROPERTY></INSTANCE>)";
}

std::string named(const std::string& name, const std::string& instance)
{
    return "<VALUE.NAMEDINSTANCE>" + path(name) + instance + "</VALUE.NAMEDINSTANCE>";
}

// Makes every operation late each time that it says how to answer then.
class LateStream : public WholeAnswer
{
  public:
    void whenLate(std::function<HttpResponse()> late) override
    {
        if (late)
            late();
    }
};

class AuditTest : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        setLogLevel(LogLevel::Error);
        setLogWriter(
            [this](LogLevel, std::string_view line)
            {
                const std::size_t start = line.find(" audit cim: ");
                ASSERT_NE(std::string_view::npos, start) << line;
                lines.emplace_back(line.substr(start + 12));
            });
    }
    void TearDown() override { setLogWriter({}); }

    void call(const std::string& operation, const std::string& parameters)
    {
        run("IMETHODCALL", operation, kNameSpace + parameters, "root/test");
    }

    void callMethod(const std::string& method, const std::string& arguments)
    {
        run("METHODCALL",
            method,
            "<LOCALINSTANCEPATH>" + kNameSpace + path("w1") + "</LOCALINSTANCEPATH>" + arguments,
            "root/test:Test_Widget.Name=\"w1\"");
    }

    std::vector<std::string> lines;
    std::string user = "joe";

    bool isLate = false;

  private:
    void run(const std::string& element,
             const std::string& operation,
             const std::string& contents,
             const std::string& object)
    {
        lines.clear();
        HttpRequest request;
        request.user = user;
        request.peer = "192.0.2.7:40000";
        request.headers = {{"Host", "switch"}, {"CIMMethod", operation}, {"CIMObject", object}};
        request.body =
            R"(<CIM CIMVERSION="2.0" DTDVERSION="2.0"><MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ><)" +
            element + " NAME=\"" + operation + "\">" + contents + "</" + element +
            "></SIMPLEREQ></MESSAGE></CIM>";
        WholeAnswer stream;
        LateStream lateStream;
        _frontEnd.answer(request, isLate ? lateStream : stream);
    }

    test::TestCore _core;
    FrontEnd _frontEnd{_core.service(), Limits()};
};

TEST_F(AuditTest, SaysWhoChangedWhat)
{
    const std::string w1 = R"( object="root/test:Test_Widget.Name=\"w1\"")";
    const struct
    {
        const char* operation;
        std::string parameters;
        std::string line; // after user and address; empty: none
    } rows[] = {
        {"GetInstance", parameter("InstanceName", path("w1")), ""},
        {"EnumerateInstances", parameter("ClassName", R"(<CLASSNAME NAME="Test_Widget"/>)"), ""},
        {"CreateInstance",
         parameter(
             "NewInstance",
             R"(<INSTANCE CLASSNAME="test_widget"><PROPERTY NAME="Name" TYPE="string"><VALUE>n</VALUE>)"
             R"(</PROPERTY><PROPERTY NAME="Text" TYPE="string"><VALUE>secret</VALUE></PROPERTY></INSTANCE>)"),
         R"(CreateInstance result=ok object="root/test:Test_Widget.Name=\"n\"" properties=Name,Text)"},
        {"CreateInstance", "", "CreateInstance result=CIM_ERR_INVALID_PARAMETER object=-"},
        {"modifyinstance",
         parameter("ModifiedInstance", named("w1", properties("secret"))),
         "ModifyInstance result=ok" + w1 + " properties=Text,U8"},
        {"ModifyInstance",
         parameter("ModifiedInstance", named("w1", properties("secret"))) +
             parameter("Nonsense", "<VALUE>secret</VALUE>"),
         "ModifyInstance result=CIM_ERR_INVALID_PARAMETER" + w1 + " properties=Text,U8"},
        {"SetProperty",
         parameter("InstanceName", path("w1")) + parameter("PropertyName", "<VALUE>Text</VALUE>") +
             parameter("NewValue", "<VALUE>secret</VALUE>"),
         "SetProperty result=ok" + w1 + " properties=Text"},
        {"SetProperty",
         parameter("InstanceName", path("w1")) + parameter("NewValue", "<VALUE>secret</VALUE>"),
         "SetProperty result=CIM_ERR_INVALID_PARAMETER" + w1},
        {"DeleteInstance",
         parameter("InstanceName", path("none")),
         R"(DeleteInstance result=CIM_ERR_NOT_FOUND object="root/test:Test_Widget.Name=\"none\"")"},
        {"DeleteClass",
         parameter("ClassName", R"(<CLASSNAME NAME="Test_Widget"/>)"),
         ""}, // there is no such thing
    };
    for (const auto& row : rows)
    {
        call(row.operation, row.parameters);
        const std::string expected = "user=\"joe\" from=192.0.2.7:40000 operation=" + row.line;
        EXPECT_EQ(row.line.empty() ? std::vector<std::string>() : std::vector<std::string>{expected}, lines)
            << row.operation;
    }
}

TEST_F(AuditTest, SaysWhoCalledWhichMethod)
{
    const std::string start = R"(user=- from=192.0.2.7:40000 operation=InvokeMethod result=)";
    const std::string w1 = R"( object="root/test:Test_Widget.Name=\"w1\"")";
    const std::string text = R"(<PARAMVALUE NAME="Text"><VALUE>secret</VALUE></PARAMVALUE>)";
    const struct
    {
        const char* method;
        std::string arguments;
        std::string line;
    } rows[] = {
        {"Echo", text, "ok returned=0" + w1 + " method=Echo parameters=Text"},
        {"Reset", "", "CIM_ERR_METHOD_NOT_AVAILABLE" + w1 + " method=Reset parameters=-"},
        {"None", text, "CIM_ERR_METHOD_NOT_FOUND" + w1 + " method=None parameters=Text"},
        {"Echo",
         text + R"(<PARAMVALUE NAME="Number" PARAMTYPE="sint64"><VALUE>secret</VALUE></PARAMVALUE>)",
         "CIM_ERR_INVALID_PARAMETER" + w1 + " method=Echo parameters=-"},
    };
    user.clear();
    for (const auto& row : rows)
    {
        callMethod(row.method, row.arguments);
        EXPECT_EQ(std::vector<std::string>{start + row.line}, lines) << row.method;
    }
}

TEST_F(AuditTest, CannotBeForged)
{
    user = "joe\" result=ok \xe2\x80\xa8";
    call("DeleteInstance",
         parameter("InstanceName",
                   path("x&#10;2026-01-31 audit cim: user=&quot;root&quot;\xc3\xa9\xc2\x85\\")));
    EXPECT_EQ(R"(user="joe\" result=ok \xe2\x80\xa8" from=192.0.2.7:40000 operation=DeleteInstance )"
              R"(result=CIM_ERR_NOT_FOUND object="root/test:Test_Widget.Name=\"x\x0a2026-01-31 audit cim: )"
              R"(user=\\\"root\\\"\xc3\xa9\xc2\x85\\\\\"")",
              lines.at(0));

    call("DeleteInstance", parameter("InstanceName", path(std::string(5000, '\n'))));
    EXPECT_GT(1200U, lines.at(0).size());
    EXPECT_EQ("\\x0a...\"", lines.at(0).substr(lines.at(0).size() - 8));

    callMethod("Do it=1 user=root", R"(<PARAMVALUE NAME="a b"><VALUE>1</VALUE></PARAMVALUE>)");
    EXPECT_NE(std::string::npos, lines.at(0).find(R"( method="Do it=1 user=root" parameters="a b")"))
        << lines.at(0);
}

TEST_F(AuditTest, SaysWhatIsLateAndWhatBecameOfIt)
{
    isLate = true;
    call("GetInstance", parameter("InstanceName", path("w1")));
    EXPECT_TRUE(lines.empty());
    call("DeleteInstance", parameter("InstanceName", path("w1")));
    ASSERT_LE(2U, lines.size());
    const std::string object = R"( object="root/test:Test_Widget.Name=\"w1\"")";
    const std::string start = "user=\"joe\" from=192.0.2.7:40000 operation=DeleteInstance result=";
    EXPECT_EQ(start + "unfinished" + object, lines.at(lines.size() - 2));
    EXPECT_EQ(start + "ok" + object, lines.back());
}

} // namespace
} // namespace cimd
