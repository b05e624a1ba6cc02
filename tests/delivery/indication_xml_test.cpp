// Indications as XML, and what listeners answer with.
#include "delivery/indication_xml.h"

#include "Demo_Everything.h"
#include "Demo_SensorInRack.h"
#include "tests/delivery/test_indications.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>

namespace cimple
{
namespace
{

const std::string kHead =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"7.1\" PROTOCOLVERSION=\"1.0\">"
    "<SIMPLEEXPREQ><EXPMETHODCALL NAME=\"ExportIndication\">"
    "<EXPPARAMVALUE NAME=\"NewIndication\">";
const std::string kTail = "</EXPPARAMVALUE></EXPMETHODCALL></SIMPLEEXPREQ></MESSAGE></CIM>";

// The element of a property; empty when there is none.
std::string propertyIn(const std::string& text, const std::string& name)
{
    const std::size_t place = text.find(" NAME=\"" + name + "\"");
    if (place == text.npos)
        return "";
    const std::size_t start = text.rfind('<', place);
    const std::string tag = text.substr(start + 1, place - start - 1);
    return text.substr(start, text.find("</" + tag + ">", place) - start);
}

TEST(IndicationXml, IsAnExportRequest)
{
    const std::string text = exportMessage(*modification("a<b"), "7.1");
    const auto embedded = [&text](const std::string& name, const std::string& status)
    {
        const std::string start =
            "<PROPERTY NAME=\"" + name +
            "\" TYPE=\"string\" EmbeddedObject=\"object\"><VALUE>&lt;INSTANCE "
            "CLASSNAME=&quot;CIM_ComputerSystem&quot;&gt;&lt;PROPERTY NAME=&quot;Name&quot; "
            "TYPE=&quot;string&quot;&gt;&lt;VALUE&gt;a&amp;lt;b&lt;/VALUE&gt;&lt;/PROPERTY&gt;"
            "&lt;PROPERTY.ARRAY NAME=&quot;OperationalStatus&quot; TYPE=&quot;uint16&quot;&gt;"
            "&lt;VALUE.ARRAY&gt;&lt;VALUE&gt;" +
            status + "&lt;/VALUE&gt;&lt;/VALUE.ARRAY&gt;&lt;/PROPERTY.ARRAY&gt;";
        EXPECT_EQ(propertyIn(text, name).substr(0, start.size()), start);
    };
    const std::string start = kHead + "<INSTANCE CLASSNAME=\"CIM_InstModification\"><PROPERTY "
                                      "NAME=\"IndicationIdentifier\" TYPE=\"string\"><VALUE>VRAX:a&lt;b"
                                      "</VALUE></PROPERTY><PROPERTY NAME=\"IndicationTime\" "
                                      "TYPE=\"datetime\"><VALUE>20260314015926.535897+060</VALUE></PROPERTY>"
                                      "<PROPERTY NAME=\"SourceInstance\"";
    EXPECT_EQ(text.substr(0, start.size()), start);
    embedded("SourceInstance", "10");
    embedded("PreviousInstance", "2");
    EXPECT_EQ(text.substr(text.size() - kTail.size()), kTail);
    EXPECT_EQ(text.find("CorrelatedIndications"), text.npos) << "what has no value is left out";
}

TEST(IndicationXml, HoldsEveryType)
{
    Ref<Demo_Everything> all(Demo_Everything::create(true));
    all->TheReal64.set(-std::numeric_limits<real64>::infinity());
    all->TheChar16.set(char16(0xD800));
    all->TheString.set("\x01 \xC3\xA9 \xFF");
    all->Embedded = Demo_Limits::create(true);
    all->Object = Demo_Limits::create(true);
    all->EmbeddedArray.null = 0;
    all->EmbeddedArray.value.append(Demo_Limits::create(true));
    all->EmbeddedArray.value.append(nullptr);
    const std::string text = exportMessage(*all, "1");
    const auto scalar = [](const std::string& name, const std::string& type, const std::string& value)
    { return "<PROPERTY NAME=\"" + name + "\" TYPE=\"" + type + "\"><VALUE>" + value + "</VALUE>"; };
    const struct
    {
        const char *name, *type, *value;
    } rows[] = {
        {"DefaultBoolean", "boolean", "TRUE"},
        {"DefaultUint8", "uint8", "255"},
        {"DefaultSint8", "sint8", "-128"},
        {"DefaultUint16", "uint16", "65535"},
        {"DefaultSint16", "sint16", "-32768"},
        {"DefaultUint32", "uint32", "4294967295"},
        {"DefaultSint32", "sint32", "-2147483648"},
        {"DefaultUint64", "uint64", "18446744073709551615"},
        {"DefaultSint64", "sint64", "-9223372036854775808"},
        {"DefaultReal32", "real32", "1.5e+00"},
        {"DefaultReal64", "real64", "1.0e+300"},
        {"TheReal64", "real64", "-INF"},
        {"DefaultChar16", "char16", "\xE2\x98\xBA"},
        {"TheChar16", "char16", "\xEF\xBF\xBD"},
        {"TheString", "string", "\xEF\xBF\xBD \xC3\xA9 \xEF\xBF\xBD"},
        {"DefaultString", "string", "a &quot;quoted&quot; \\ line&#10;?\?/1"},
        {"DefaultDatetime", "datetime", "20260314015926.535897+060"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(propertyIn(text, row.name), scalar(row.name, row.type, row.value));
    const std::string limits = "<VALUE>&lt;INSTANCE CLASSNAME=&quot;Demo_Limits&quot;&gt;";
    const struct
    {
        const char* name;
        std::string start; // of what follows the name
    } others[] = {
        {"DefaultDatetimeArray",
         " TYPE=\"datetime\"><VALUE.ARRAY><VALUE>20260314015926.535897+060</VALUE>"
         "<VALUE>00000001020304.000005:000</VALUE></VALUE.ARRAY>"},
        {"DefaultBooleanArray",
         " TYPE=\"boolean\"><VALUE.ARRAY><VALUE>TRUE</VALUE><VALUE>FALSE</VALUE></VALUE.ARRAY>"},
        {"EmptyArray", " TYPE=\"uint16\"><VALUE.ARRAY></VALUE.ARRAY>"},
        {"Embedded", " TYPE=\"string\" EmbeddedObject=\"instance\">" + limits},
        {"Object", " TYPE=\"string\" EmbeddedObject=\"object\">" + limits},
        {"EmbeddedArray", " TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE.ARRAY>" + limits},
    };
    for (const auto& row : others)
    {
        const std::string element = std::strstr(row.name, "Array") != nullptr ? "PROPERTY.ARRAY" : "PROPERTY";
        const std::string start = "<" + element + " NAME=\"" + row.name + "\"" + row.start;
        EXPECT_EQ(propertyIn(text, row.name).substr(0, start.size()), start);
    }
    EXPECT_NE(propertyIn(text, "EmbeddedArray").find("</VALUE><VALUE.NULL/></VALUE.ARRAY>"), text.npos);
    EXPECT_EQ(propertyIn(text, "TheUint8"), "");
}

TEST(IndicationXml, RefersByKeys)
{
    Ref<Demo_SensorInRack> pair(Demo_SensorInRack::create(true));
    pair->Rack = Demo_Rack::create(true);
    pair->Rack->Name.set("A&1");
    pair->Sensor = Demo_Sensor::create(true);
    pair->Sensor->Id.set(7);
    const auto reference = [](const std::string& name, const std::string& cls, const std::string& key)
    {
        return "<PROPERTY.REFERENCE NAME=\"" + name + "\"><VALUE.REFERENCE><INSTANCENAME CLASSNAME=\"" + cls +
               "\"><KEYBINDING NAME=" + key +
               "</KEYVALUE></KEYBINDING></INSTANCENAME></VALUE.REFERENCE></PROPERTY.REFERENCE>";
    };
    const std::string text = exportMessage(*pair, "1");
    EXPECT_NE(text.find("<INSTANCE CLASSNAME=\"Demo_SensorInRack\">" +
                        reference("Rack", "Demo_Rack", "\"Name\"><KEYVALUE VALUETYPE=\"string\">A&amp;1") +
                        reference("Sensor", "Demo_Sensor", "\"Id\"><KEYVALUE VALUETYPE=\"numeric\">7") +
                        "</INSTANCE>"),
              text.npos)
        << text;
}

TEST(IndicationXml, FindsTheErrorInAnAnswer)
{
    const struct
    {
        const char* answer;
        unsigned code;
        const char* description;
    } rows[] = {
        {"", 0, ""},
        {"<EXPMETHODRESPONSE NAME=\"ExportIndication\"/>", 0, ""},
        {"<ERROR CODE=\"1\" DESCRIPTION=\"full\"/>", 1, "full"},
        {"<ERROR DESCRIPTION='say \"no\"'\n CODE='7'></ERROR>", 7, "say \"no\""},
        {"<ERROR XCODE=\"3\" CODE=\"x\"/>", kMalformedCimError, ""},
        {"<ERROR CODE=\"70000\"", kMalformedCimError, ""},
        {"<ERROR CODE=", kMalformedCimError, ""},
    };
    for (const auto& row : rows)
    {
        std::string description;
        EXPECT_EQ(cimErrorOf(row.answer, description), row.code) << row.answer;
        EXPECT_EQ(description, row.description) << row.answer;
    }
}

} // namespace
} // namespace cimple
