// Value elements: what is written is read back equal, and what is wrong is named.
#include "agent/xml/ElementReader.h"
#include "agent/xml/element_writer.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

const ElementReader kReader{Limits()};

// With its path, and a property of every kind.
Instance valuesInstance()
{
    ObjectPath peer("root/interop", "Test_Peer");
    peer.setKey("Text", CimValue::string("p"));
    ObjectPath path("root/interop", "Test_Values");
    path.setKey("Id", CimValue::string("a&b \"<>\t'"));
    path.setKey("Number", CimValue::uint16(7));
    path.setKey("Up", CimValue::boolean(true));
    path.setKey("When", CimValue::dateTime(*CimDateTime::parse("20260131120000.000000+060")));
    path.setKey("Peer", CimValue::reference(peer));

    Instance inner("Test_Part");
    inner.set("Text", CimValue::string("<&>"));
    Instance outer("Test_Part");
    outer.set("Inner", CimValue::embedded(CimType::Object, inner));

    Instance instance("Test_Values");
    instance.setPath(path);
    instance.set("Id", CimValue::string("a&b \"<>\t'"));
    instance.set("Lines", CimValue::string("one\r\ntwo \xC3\xA9"));
    instance.set("Blank", CimValue::string(" "));
    instance.set("Nothing", CimValue::null(CimType::Uint32));
    instance.set("NoList", CimValue::null(CimType::Uint32, true));
    instance.set("Up", CimValue::boolean(false));
    instance.set("Letter", CimValue::char16(u'<'));
    instance.set("Big", CimValue::uint64(18446744073709551615U));
    instance.set("Low", CimValue::sint64(INT64_MIN));
    instance.set("Ratio", CimValue::real64(0.1));
    instance.set("When", CimValue::dateTime(*CimDateTime::parse("00000001000000.000000:000")));
    instance.set("Peer", CimValue::reference(peer));
    instance.set("Outer", CimValue::embedded(CimType::Instance, outer));
    instance.set("List",
                 CimValue::array(CimType::Sint8, {CimValue::sint8(-1), CimValue::null(CimType::Sint8)}));
    instance.set("Texts", CimValue::array(CimType::String, {CimValue::string("")}));
    instance.set("NoTexts", CimValue::array(CimType::String, {}));
    instance.properties().back().classOrigin = "Test_Base";
    return instance;
}

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
    const Instance instance = valuesInstance();
    std::string text;
    XmlWriter xml(text);
    xml.start("VALUE.NAMEDINSTANCE");
    writeInstanceName(xml, instance.path());
    writeInstance(xml, instance);
    xml.close("VALUE.NAMEDINSTANCE");

    Instance read = kReader.namedInstance(XmlDocument(text, Limits()).root());
    ObjectPath path = read.path();
    path.setNameSpace("root/interop");
    EXPECT_EQ(instance.path(), path);
    read.setPath(path);
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
            readAny(XmlDocument(row.text, Limits()).root());
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

} // namespace
} // namespace cimd
