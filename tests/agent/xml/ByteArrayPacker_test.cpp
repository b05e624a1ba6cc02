// Which values of a message are packed, and that none is lost, changed or taken from anywhere else.
#include "agent/xml/ByteArrayPacker.h"

#include "agent/xml/ElementReader.h"
#include "agent/xml/XmlDocument.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

std::string values(unsigned count)
{
    std::string text;
    for (unsigned i = 0; i < count; ++i)
        text += "<VALUE>" + std::to_string(i % 256) + "</VALUE>";
    return text;
}

std::string array(const std::string& start, const std::string& content)
{
    return "<a><" + start + "><VALUE.ARRAY>" + content + "</VALUE.ARRAY></" +
           start.substr(0, start.find(' ')) + "></a>";
}

const std::string kBytes = "PARAMVALUE NAME='x' PARAMTYPE='uint8'";

// In the parts that a network could bring.
std::string packedInParts(const std::string& message, std::size_t first, std::size_t each)
{
    ByteArrayPacker packer;
    std::string text;
    packer.append(text, std::string_view(message).substr(0, first));
    for (std::size_t at = first; at < message.size(); at += each)
        packer.append(text, std::string_view(message).substr(at, each));
    return text;
}

TEST(ByteArrayPacker, PacksTheValuesOfByteArrays)
{
    const std::string all = values(512);
    const struct
    {
        std::string message;
        std::string rest = {}; // of the array, not packed
    } rows[] = {
        {array(kBytes, all)},
        {array("PROPERTY.ARRAY NAME='>' TYPE = \"uint8\" ", all)},
        {"<?x > ?><!DOCTYPE a SYSTEM '>'><!-- <VALUE.ARRAY> -- >-->" + array(kBytes, all)},
        {array("b c='1'", "</VALUE.ARRAY></b>" + array(kBytes, all) + "<b><VALUE.ARRAY>")},
        {array(kBytes, all + "<VALUE>256</VALUE>" + all), "<VALUE>256</VALUE>" + all},
        {array(kBytes, all + "<VALUE>1</VALUE ><VALUE.NULL/>"), "<VALUE>1</VALUE ><VALUE.NULL/>"},
        {array(kBytes, all + "<VALUE>0001</VALUE>"), "<VALUE>0001</VALUE>"},
        {array(kBytes, all + "<VALUE></VALUE>x"), "<VALUE></VALUE>x"},
        {array(kBytes, all + "<VALUE>1<"), "<VALUE>1<"},
        {array(kBytes, all + "<VALUE>12 </VALUE>"), "<VALUE>12 </VALUE>"},
    };
    for (const auto& row : rows)
    {
        const std::string packed = packByteArrays(row.message);
        EXPECT_EQ(row.message, unpackByteArrays(packed));
        // Nine of the 256 values take two bytes, and the run has two bounds.
        EXPECT_EQ(row.message.size() - all.size() + 512 + 2 * 9 + 2, packed.size()) << packed;
        EXPECT_NE(std::string::npos, packed.find(row.rest + "</VALUE.ARRAY>"));
        for (std::size_t first = 0; first < 120; ++first)
            EXPECT_EQ(packed, packedInParts(row.message, first, 1 + first)) << first;
    }
}

TEST(ByteArrayPacker, LeavesEverythingElseAlone)
{
    const std::string bytes = array(kBytes, values(3));
    const std::string utf16("<\0a\0>\0\1\0<\0/\0a\0>\0", 16);
    for (const std::string& message :
         {"<b><![CDATA[" + bytes + "]]></b>",
          "<!--" + bytes + "-->",
          "<!-->" + bytes + "-->",
          "<?b " + bytes + "?>",
          "<b c='" + bytes + "'/>",
          array("PARAMVALUE NAME=' PARAMTYPE=\"uint8\"' PARAMTYPE='uint16'", values(3)),
          array("PARAMVALUE TYPE='uint8'", values(3)),
          array("PROPERTY.ARRAY PARAMTYPE='uint8'", values(3)),
          "<" + kBytes + "><b/><VALUE.ARRAY>" + values(3),
          "<" + kBytes + "></PARAMVALUE><VALUE.ARRAY>" + values(3),
          "<" + kBytes + "><VALUE.ARRAY/>" + values(3),
          array(kBytes, "x" + values(3)),
          utf16,
          "\xFE\xFF\1" + bytes})
        for (std::size_t first = 0; first < message.size(); ++first)
            EXPECT_EQ(message, packedInParts(message, first, 7));
    // The bounds of a run come from nowhere else.
    EXPECT_EQ("<a>\3\3<![CDATA[\3]]>", packByteArrays("<a>\1\2<![CDATA[\1]]>"));
    EXPECT_EQ(array(kBytes,
                    "\3"
                    "5\3"),
              packByteArrays(array(kBytes,
                                   "\1"
                                   "5\2")));
}

TEST(ByteArrayPacker, PackedValuesCountAgainstNoLimitOfText)
{
    const std::string lines = "<VALUE>60</VALUE>\r\n\t<VALUE>38</VALUE>\n"; // "<", "&"
    std::string content;
    while (content.size() < 20'000)
        content += lines;
    Limits tight;
    tight.xmlNodes = 32;
    const std::string text = packByteArrays(array(kBytes, content));
    tight.xmlBytes = array(kBytes, "").size();
    const XmlDocument document(text, tight);
    const CimValue value = ElementReader(tight).argument(firstChild(document.root())).value;
    const std::size_t count = 2 * content.size() / lines.size();
    ASSERT_EQ(count, value.asBytes().size());
    EXPECT_EQ(60, value.asBytes().front());
    EXPECT_EQ(38, value.asBytes().back());
    --tight.xmlBytes;
    EXPECT_THROW(XmlDocument(text, tight), XmlError);

    const auto fault = [](const std::string& message) -> std::string
    {
        try
        {
            const XmlDocument unread(packByteArrays(message), Limits());
            return "none";
        }
        catch (const XmlError& error)
        {
            return error.what();
        }
    };
    EXPECT_EQ("line 3, column 15: end tag VALU closes nothing",
              fault(array(kBytes, lines + "<VALUE></VALU>")));
    EXPECT_EQ("line 3, column 1: element VALUE.ARRAY is not closed",
              fault("<" + kBytes + "><VALUE.ARRAY>" + lines).substr(0, 55));
}

} // namespace
} // namespace cimd
