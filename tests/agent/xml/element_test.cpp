// Value elements: what is written is read back equal. What is wrong is named in tests/wire.
#include "agent/xml/ByteArrayPacker.h"
#include "agent/xml/ElementReader.h"
#include "agent/xml/element_writer.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace cimd
{
namespace
{

// Also for long arrays that nothing declares as bytes.
Limits roomy()
{
    Limits limits;
    limits.xmlNodes = limits.arrayElements = 1'000'000;
    limits.xmlBytes = 10'000'000;
    return limits;
}

const ElementReader kReader{roomy()};

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
    CimValue::Bytes bytes;
    for (unsigned i = 0; i < 3 * 256; ++i)
        bytes.push_back(static_cast<std::uint8_t>(i));
    instance.set("Bytes", CimValue::bytes(bytes));
    instance.set("NoBytes", CimValue::bytes({}));
    instance.set("SomeBytes",
                 CimValue::array(CimType::Uint8, {CimValue::uint8(1), CimValue::null(CimType::Uint8)}));
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
    // Wherever a byte stands, it is written as it is alone.
    for (int c = 0; c < 0x80; ++c)
        for (std::size_t at = 0; at < 12; ++at)
        {
            std::string text(12, 'a');
            text[at] = static_cast<char>(c);
            std::string alone(at, 'a');
            appendEscaped(alone, text.substr(at, 1));
            std::string out;
            appendEscaped(out, text);
            EXPECT_EQ(alone.append(11 - at, 'a'), out);
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

// What a text between the tags of a uint8 array is read as: numbers, or the fault.
std::string bytesOf(const std::string& content, const Limits& limits = {})
try
{
    const std::string text =
        "<PARAMVALUE NAME='a' PARAMTYPE='uint8'><VALUE.ARRAY>" + content + "</VALUE.ARRAY></PARAMVALUE>";
    const CimValue value =
        ElementReader(limits).argument(XmlDocument(packByteArrays(text), limits).root()).value;
    std::string numbers;
    for (const unsigned byte : value.asBytes())
        numbers += std::to_string(byte) + ' ';
    return numbers;
}
catch (const std::exception& error)
{
    return error.what();
}

TEST(Element, BytesAreReadAlikeWithAndWithoutElements)
{
    Limits few;
    few.byteArrayElements = 2;
    few.arrayElements = 1;
    const struct
    {
        std::string content;
        std::string read;
        Limits limits = {};
    } rows[] = {
        {"<VALUE>0</VALUE><VALUE>255</VALUE>", "0 255 "},
        {"\n <VALUE>1</VALUE>\r\n\t<VALUE> 0x10\n</VALUE> ", "1 16 "},
        {"<VALUE>+7</VALUE><VALUE>-0</VALUE>", "7 0 "},
        {"<VALUE>1</VALUE><VALUE>256</VALUE>", "VALUE \"256\" is not a uint8"},
        {"<VALUE>-1</VALUE>", "VALUE \"-1\" is not a uint8"},
        {"<VALUE></VALUE><VALUE>1</VALUE>", "VALUE \"\" is not a uint8"},
        {"<VALUE>1 2</VALUE>", "VALUE \"1 2\" is not a uint8"},
        {"<VALUE>1</VALUE><VALUE>2</VALUE>", "1 2 ", few},
        {"<VALUE>1</VALUE><VALUE>2</VALUE><VALUE>x</VALUE>", "VALUE.ARRAY has more than 2 elements", few},
    };
    for (const auto& row : rows)
    {
        EXPECT_EQ(row.read, bytesOf(row.content, row.limits)) << row.content;
        EXPECT_EQ(row.read, bytesOf(row.content + "<!-- -->", row.limits)) << row.content;
    }
    // Forms that are no plain array.
    EXPECT_EQ(
        "1 2 3 4 ",
        bytesOf("<VALUE>&#49;</VALUE><VALUE><![CDATA[2]]></VALUE><VALUE a='b'>3</VALUE><VALUE >4</VALUE >"));
    EXPECT_EQ("VALUE has an unexpected element VALUE",
              bytesOf("<VALUE>1</VALUE><VALUE><VALUE>2</VALUE></VALUE>"));
    EXPECT_EQ("VALUE.ARRAY stands where VALUE is expected",
              bytesOf("<VALUE.ARRAY><VALUE>1</VALUE></VALUE.ARRAY>"));
    EXPECT_EQ("", bytesOf(" "));
}

TEST(Element, BytesLeaveInPieces)
{
    const CimValue value = CimValue::bytes(CimValue::Bytes(100'000, 123));
    std::string whole;
    XmlWriter wholeXml(whole);
    writeValue(wholeXml, value);
    std::string joined;
    std::size_t largest = 0;
    std::string piece;
    XmlWriter xml(piece,
                  [&]
                  {
                      largest = std::max(largest, piece.size());
                      joined += piece;
                      piece.clear();
                  });
    writeValue(xml, value);
    EXPECT_EQ(whole, joined + piece);
    EXPECT_LT(largest, 32U * 1024);
    EXPECT_EQ(value, kReader.value(CimType::Uint8, XmlDocument(whole, roomy()).root()));
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
    ClassMarkup markup;
    writeInstancePath(fullXml, "h", other, markup);
    EXPECT_NE(std::string::npos, full.find(name));
}

// What is remembered of one instance must not show in the next.
TEST(Element, RememberedMarkupIsUsedWhereItFits)
{
    const CimName key("K");
    const CimName names[] = {"First", "P", "Last"};
    const auto made = [&](const CimName& className, const CimValue& id, const CimValue& value, CimName origin)
    {
        ObjectPath path("root/interop", className);
        path.setKey(key, id);
        Instance instance(className);
        instance.setPath(path);
        instance.properties() = {{names[0], CimValue::null(CimType::Uint8), {}},
                                 {names[1], value, std::move(origin)},
                                 {names[2], CimValue::null(CimType::DateTime), {}}};
        return instance;
    };
    const CimName one("Test_One");
    const CimName other("Test_Other");
    const CimValue text = CimValue::string("a");
    const CimValue path = CimValue::reference(ObjectPath("n", "Test_Far"));
    Instance instances[] = {made(one, text, text, {}),
                            made(one, text, CimValue::null(CimType::String), {}),
                            made(one, text, CimValue::null(CimType::String, true), {}),
                            made(one, CimValue::uint8(1), CimValue::uint8(1), {}),
                            made(one, path, path, {}),
                            made(one, text, CimValue::array(CimType::String, {text}), {}),
                            made(one, text, text, {}),
                            made(other, text, text, "Test_Base"),
                            made(other, text, text, {}),
                            made(other, text, text, "Test_Other")};
    instances[0].path().setKey("More", text);
    instances[0].properties().pop_back();
    const auto written = [](const Instance& instance, ClassMarkup& markup)
    {
        std::string out;
        XmlWriter xml(out);
        writeNamedInstance(xml, instance, markup);
        return out;
    };
    for (const Instance& instance : instances)
        for (const Instance& before : instances)
        {
            ClassMarkup kept;
            written(before, kept);
            ClassMarkup fresh;
            EXPECT_EQ(written(instance, fresh), written(instance, kept));
        }
}

} // namespace
} // namespace cimd
