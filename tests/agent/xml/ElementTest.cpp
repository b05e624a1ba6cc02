// Value elements: what is written is read back equal, and what is wrong is named.
#include "agent/xml/ElementReader.h"
#include "agent/xml/ElementWriter.h"
#include "tests/agent/ops/FakeService.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

Limits limits()
{
    Limits result;
    result.xmlDepth = 32;
    result.arrayElements = 3;
    result.embeddedDepth = 2;
    result.pathKeys = 8;
    result.instanceProperties = 20;
    return result;
}

const ElementReader kReader(limits());

TEST(Element, EscapesWhatReadersWouldChange)
{
    const struct
    {
        std::string_view text;
        const char* escaped;
    } rows[] = {
        {"plain", "plain"},
        {"", ""},
        {"<a b=\"c\">&'", "&lt;a b=&quot;c&quot;&gt;&amp;'"},
        {" \t\r\n ", " &#9;&#13;&#10; "},
        {"\xC3\xA9\xF0\x9F\x98\x80", "\xC3\xA9\xF0\x9F\x98\x80"},
        {std::string_view("a\0b\x1F\x7F", 5),
         "a\xEF\xBF\xBD"
         "b\xEF\xBF\xBD\x7F"},
        {"\xE9tat \xC3", "\xEF\xBF\xBDtat \xEF\xBF\xBD"},
        {"\xEF\xBF\xBE|\xED\xA0\x80", "\xEF\xBF\xBD|\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    };
    for (const auto& row : rows)
    {
        std::string out = "x";
        appendEscaped(out, row.text);
        EXPECT_EQ("x" + std::string(row.escaped), out);
    }
}

TEST(Element, InstancesAndPathsSurviveTheWire)
{
    Instance instance = valuesInstance();
    instance.set("Lines", CimValue::string("one\r\ntwo \xC3\xA9")); // without what XML cannot carry
    std::string text;
    XmlWriter xml(text);
    xml.start("VALUE.NAMEDINSTANCE");
    writeInstanceName(xml, instance.path());
    writeInstance(xml, instance);
    xml.close("VALUE.NAMEDINSTANCE");

    Instance read = kReader.namedInstance(XmlDocument(text, limits()).root());
    ObjectPath path = read.path();
    path.setNameSpace("root/interop");
    // A date-time key travels as a string with a type.
    EXPECT_EQ(describe(CimValue::reference(instance.path())), describe(CimValue::reference(path)));
    EXPECT_EQ(instance.path(), path);
    read.setPath(path);
    EXPECT_EQ(describe(instance), describe(read));
    EXPECT_EQ(instance, read);
}

TEST(Element, PathsAreWrittenAlikeEverywhere)
{
    ObjectPath path = valuesInstance().path();
    ObjectPath other("root/interop", "Test_Values");
    for (auto key = path.keys().rbegin(); key != path.keys().rend(); ++key)
        other.setKey(key->name, key->value);
    std::string name;
    std::string full;
    XmlWriter nameXml(name);
    XmlWriter fullXml(full);
    writeInstanceName(nameXml, path);
    writeInstancePath(fullXml, "h", other);
    EXPECT_NE(std::string::npos, full.find(name));
}

struct BadElement
{
    const char* text;
    const char* fault;
};

// Read by the reader that the tag calls for.
void readAny(XmlElement element)
{
    if (isTag(element, "INSTANCE"))
        kReader.instance(element);
    else if (isTag(element, "PARAMVALUE"))
        kReader.argument(element);
    else if (isTag(element, "VALUE.NAMEDINSTANCE"))
        kReader.namedInstance(element);
    else if (isTag(element, "LOCALNAMESPACEPATH"))
        kReader.nameSpace(element);
    else
        kReader.path(element);
}

#define PROPERTY(attributes, value)                                                                          \
    "<INSTANCE CLASSNAME='C'><PROPERTY NAME='P' " attributes ">" value "</PROPERTY></INSTANCE>"

constexpr BadElement kBad[] = {
    {"<INSTANCENAME/>", "INSTANCENAME lacks the attribute CLASSNAME"},
    {"<INSTANCENAME CLASSNAME=''/>", "INSTANCENAME lacks the attribute CLASSNAME"},
    {"<INSTANCENAME CLASSNAME='C'><KEYBINDING NAME='K'/></INSTANCENAME>", "KEYBINDING K is empty"},
    {"<INSTANCENAME CLASSNAME='C'><KEYBINDING><KEYVALUE/></KEYBINDING></INSTANCENAME>",
     "KEYBINDING lacks the attribute NAME"},
    {"<INSTANCENAME CLASSNAME='C'><KEYBINDING NAME='K'><KEYVALUE/><KEYVALUE/></KEYBINDING></INSTANCENAME>",
     "KEYBINDING K has an unexpected element KEYVALUE"},
    {"<INSTANCENAME CLASSNAME='C'><KEYBINDING NAME='K'><KEYVALUE/></KEYBINDING>"
     "<KEYBINDING NAME='k'><KEYVALUE/></KEYBINDING></INSTANCENAME>",
     "INSTANCENAME has the key k twice"},
    {"<INSTANCENAME CLASSNAME='C'><KEYVALUE/><KEYBINDING NAME='k'><KEYVALUE/></KEYBINDING></INSTANCENAME>",
     "INSTANCENAME has a key without a name beside others"},
    {"<INSTANCENAME CLASSNAME='C'><VALUE/></INSTANCENAME>", "VALUE stands where KEYVALUE is expected"},
    {"<INSTANCENAME CLASSNAME='C'><KEYVALUE><B/></KEYVALUE></INSTANCENAME>",
     "KEYVALUE has an unexpected element B"},
    {"<INSTANCENAME CLASSNAME='C'><KEYVALUE VALUETYPE='numeric'>1x</KEYVALUE></INSTANCENAME>",
     "KEYVALUE \"1x\" is not a number"},
    {"<INSTANCENAME CLASSNAME='C'><KEYVALUE VALUETYPE='boolean'>1</KEYVALUE></INSTANCENAME>",
     "KEYVALUE \"1\" is not a boolean"},
    {"<INSTANCENAME CLASSNAME='C'><KEYVALUE VALUETYPE='date'>1</KEYVALUE></INSTANCENAME>",
     "KEYVALUE has the unknown VALUETYPE \"date\""},
    {"<INSTANCENAME CLASSNAME='C'><KEYVALUE TYPE='int'>1</KEYVALUE></INSTANCENAME>",
     "KEYVALUE has the unknown type \"int\""},
    {"<INSTANCENAME CLASSNAME='C'><KEYVALUE TYPE='reference'>1</KEYVALUE></INSTANCENAME>",
     "KEYVALUE cannot hold a reference"},
    {"<INSTANCENAME CLASSNAME='C'><KEYVALUE TYPE='uint8'>-1</KEYVALUE></INSTANCENAME>",
     "KEYVALUE \"-1\" is not a uint8"},
    {"<VALUE.REFERENCE/>", "VALUE.REFERENCE is empty"},
    {"<VALUE.REFERENCE><VALUE/></VALUE.REFERENCE>", "VALUE stands where an object path is expected"},
    {"<LOCALINSTANCEPATH><INSTANCENAME CLASSNAME='C'/></LOCALINSTANCEPATH>",
     "LOCALINSTANCEPATH must hold a namespace path and a name"},
    {"<INSTANCEPATH><NAMESPACEPATH><HOST>h</HOST></NAMESPACEPATH><INSTANCENAME "
     "CLASSNAME='C'/></INSTANCEPATH>",
     "NAMESPACEPATH is not a namespace path"},
    {"<LOCALNAMESPACEPATH/>", "LOCALNAMESPACEPATH is empty"},
    {"<LOCALNAMESPACEPATH><NAMESPACE/></LOCALNAMESPACEPATH>", "NAMESPACE lacks the attribute NAME"},
    {PROPERTY("", "<VALUE/>"), "PROPERTY P lacks the attribute TYPE"},
    {PROPERTY("TYPE='Uint8'", "<VALUE>1</VALUE>"), "PROPERTY P has the unknown type \"Uint8\""},
    {PROPERTY("TYPE='uint8'", "<VALUE>256</VALUE>"), "VALUE \"256\" is not a uint8"},
    {PROPERTY("TYPE='sint8'", "<VALUE>0x80</VALUE>"), "VALUE \"0x80\" is not a sint8"},
    {PROPERTY("TYPE='uint8'", "<VALUE/>"), "VALUE \"\" is not a uint8"},
    {PROPERTY("TYPE='uint8'", "<VALUE>1 2</VALUE>"), "VALUE \"1 2\" is not a uint8"},
    {PROPERTY("TYPE='real32'", "<VALUE>1e39</VALUE>"), "VALUE \"1e39\" is not a real32"},
    {PROPERTY("TYPE='char16'", "<VALUE>ab</VALUE>"), "VALUE \"ab\" is not a char16"},
    {PROPERTY("TYPE='datetime'", "<VALUE>20261301000000.000000+000</VALUE>"),
     "VALUE \"20261301000000.000000+000\" is not a datetime"},
    {PROPERTY("TYPE='string'", "<VALUE><B/></VALUE>"), "VALUE has an unexpected element B"},
    {PROPERTY("TYPE='string'", "<VALUE/><VALUE/>"), "PROPERTY P has more than one value"},
    {PROPERTY("TYPE='string'", "<VALUE.ARRAY/>"), "PROPERTY P must not hold an array"},
    {PROPERTY("TYPE='string'", "<VALUE.REFERENCE/>"), "VALUE.REFERENCE stands where VALUE is expected"},
    {PROPERTY("TYPE='uint8' EmbeddedObject='instance'", ""),
     "PROPERTY P has an EmbeddedObject attribute that does not fit"},
    {PROPERTY("TYPE='string' EmbeddedObject='class'", ""),
     "PROPERTY P has an EmbeddedObject attribute that does not fit"},
    {PROPERTY("TYPE='string' EmbeddedObject='object'", "<VALUE>&lt;CLASS NAME='X'/></VALUE>"),
     "CLASS X stands where INSTANCE is expected"},
    {PROPERTY("TYPE='string' EmbeddedObject='instance'", "<VALUE>x</VALUE>"),
     "embedded object: line 1, column 1: text outside the root element"},
    {"<INSTANCE CLASSNAME='C'><PROPERTY NAME='P' TYPE='string'/><PROPERTY NAME='p' "
     "TYPE='string'/></INSTANCE>",
     "PROPERTY p occurs twice"},
    {"<INSTANCE CLASSNAME='C'><PROPERTY.ARRAY NAME='P' "
     "TYPE='uint8'><VALUE>1</VALUE></PROPERTY.ARRAY></INSTANCE>",
     "PROPERTY.ARRAY P must hold an array"},
    {"<INSTANCE CLASSNAME='C'><PROPERTY.ARRAY NAME='P' "
     "TYPE='uint8'><VALUE.ARRAY><VALUE>1</VALUE><VALUE.ARRAY/>"
     "</VALUE.ARRAY></PROPERTY.ARRAY></INSTANCE>",
     "VALUE.ARRAY stands where VALUE is expected"},
    {"<INSTANCE CLASSNAME='C'><PROPERTY.REFERENCE NAME='P'><VALUE>1</VALUE></PROPERTY.REFERENCE></INSTANCE>",
     "VALUE stands where VALUE.REFERENCE is expected"},
    {"<INSTANCE CLASSNAME='C'><METHOD NAME='M'/></INSTANCE>", "METHOD M stands where a property is expected"},
    {"<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME='C'/></VALUE.NAMEDINSTANCE>",
     "VALUE.NAMEDINSTANCE must be a VALUE.NAMEDINSTANCE of INSTANCENAME and INSTANCE"},
    {"<PARAMVALUE><VALUE/></PARAMVALUE>", "PARAMVALUE lacks the attribute NAME"},
    {"<PARAMVALUE NAME='P' PARAMTYPE='number'><VALUE/></PARAMVALUE>",
     "PARAMVALUE P has the unknown type \"number\""},
    {"<PARAMVALUE NAME='P' PARAMTYPE='uint8'><VALUE>1</VALUE><VALUE>2</VALUE></PARAMVALUE>",
     "PARAMVALUE P has an unexpected element VALUE"},
    {"<PARAMVALUE NAME='P' PARAMTYPE='reference'><VALUE>1</VALUE></PARAMVALUE>",
     "VALUE stands where VALUE.REFERENCE is expected"},
};

TEST(Element, FaultsAreNamed)
{
    for (const BadElement& row : kBad)
    {
        std::string what = "accepted";
        CimStatus status = CimStatus::InvalidParameter;
        try
        {
            readAny(XmlDocument(row.text, limits()).root());
        }
        catch (const CimError& error)
        {
            what = error.what();
            status = error.status();
        }
        EXPECT_EQ(row.fault, what) << row.text;
        EXPECT_EQ(CimStatus::InvalidParameter, status) << row.text;
    }
}

TEST(Element, EmbeddedObjectsNestOnlySoDeep)
{
    Instance instance("C");
    for (unsigned depth = 0; depth <= limits().embeddedDepth; ++depth)
    {
        std::string text;
        XmlWriter xml(text);
        writeInstance(xml, instance);
        EXPECT_NO_THROW(kReader.instance(XmlDocument(text, limits()).root())) << depth;
        Instance outer("C");
        outer.set("P", CimValue::embedded(CimType::Instance, instance));
        instance = outer;
    }
    std::string text;
    XmlWriter xml(text);
    writeInstance(xml, instance);
    EXPECT_THROW(kReader.instance(XmlDocument(text, limits()).root()), CimError);
}

TEST(Element, KeysAndPropertiesAreCounted)
{
    const auto read = [](std::size_t keys, std::size_t properties)
    {
        std::string text = "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME='C'>";
        for (std::size_t i = 0; i < keys; ++i)
            text += "<KEYBINDING NAME='K" + std::to_string(i) + "'><KEYVALUE/></KEYBINDING>";
        text += "</INSTANCENAME><INSTANCE CLASSNAME='C'>";
        for (std::size_t i = 0; i < properties; ++i)
            text += "<PROPERTY NAME='P" + std::to_string(i) + "' TYPE='string'/>";
        kReader.namedInstance(XmlDocument(text + "</INSTANCE></VALUE.NAMEDINSTANCE>", limits()).root());
    };
    EXPECT_NO_THROW(read(8, 20));
    EXPECT_THROW(read(9, 20), CimError);
    EXPECT_THROW(read(8, 21), CimError);
}

} // namespace
} // namespace cimd
