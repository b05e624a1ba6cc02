// Which texts pass as XML, what is said about those that do not, and how the tree is read.
#include "agent/xml/XmlDocument.h"

#include <gtest/gtest.h>

namespace cimd
{
namespace
{

Limits limits()
{
    Limits result;
    result.xmlDepth = 4;
    result.xmlNodes = 100;
    return result;
}

std::string fault(std::string_view bytes)
{
    try
    {
        std::string text(bytes);
        const XmlEncoding encoding = toUtf8(text);
        parseXml(text, limits(), encoding);
        return {};
    }
    catch (const XmlError& error)
    {
        return error.what();
    }
}

TEST(XmlParser, AcceptsWhatIsWellFormed)
{
    for (const char* text : {
             "<a/>",
             "\xEF\xBB\xBF<?xml version=\"1.0\" encoding='UTF-8'?>\n<a/>\n",
             "<?xml version='1.0' encoding=\"us-ascii\" standalone='yes' ?><a></a >",
             "<!-- - c --><!DOCTYPE a SYSTEM \"x>y\"><?pi?><a b='\"' c = \"'>\" ></a><!---->",
             "<a>&lt;&amp;&gt;&quot;&apos;&#10;&#x1F600;<![CDATA[<&]]]]><![CDATA[>]]></a>",
             "<n:a xmlns:n='u'><n:b-1.2_/>\xC3\xA9\xF0\x9F\x98\x80</n:a>",
             "<a><b><c><d/></c></b></a>",
             "<a><b><c><d></d></c></b></a>",
         })
        EXPECT_EQ("", fault(text)) << text;
    // What the characters of UTF-16 hide, and a pair of surrogates.
    EXPECT_EQ("", fault({"\xFE\xFF\0<\0a\0/\0>", 10}));
    EXPECT_EQ("", fault({"<\0a\0>\0\x34\xD8\x1E\xDD<\0/\0a\0>\0", 18}));
}

struct BadXml
{
    const char* text;
    const char* fault;
};

constexpr BadXml kBad[] = {
    {"", "line 1, column 1: no element"},
    {"<a>", "line 1, column 4: element a is not closed"},
    {"<a>\n<b></a>", "line 2, column 7: end tag a closes nothing"},
    {"<a", "line 1, column 3: white space was expected after a"},
    {"<a b=c/>", "line 1, column 6: a quoted value was expected"},
    {"<a b='c/>", "line 1, column 7: an unfinished quoted value"},
    {"<a b='1'c='2'/>", "line 1, column 9: white space was expected after a"},
    {"<a b='&x;'/>", "line 1, column 11: \"&\" that starts no known reference"},
    {"<a>&#xD800;</a>", "line 1, column 4: \"&\" that starts no known reference"},
    {"<a>]]></a>", "line 1, column 4: \"]]>\" in text"},
    {"<a><![CDATA[</a>", "line 1, column 13: an unfinished CDATA section"},
    {"<![CDATA[x]]><a/>", "line 1, column 2: a name was expected"},
    {"<a><!-- x --- y --></a>", "line 1, column 13: \"--\" inside a comment"},
    {"<a><?xml version='1.0'?></a>", "line 1, column 9: an XML declaration that is not at the start"},
    {"<a><?pi</a>", "line 1, column 8: an unfinished processing instruction"},
    {"<!DOCTYPE a", "line 1, column 12: an unfinished document type declaration"},
    {"<!DOCTYPE a><!DOCTYPE a><a/>", "line 1, column 14: a name was expected"},
    {"<!DOCTYPE a <!--x--><a/>", "line 1, column 13: \"<\" in a document type declaration"},
    {"<?xml version='1.0' encoding='UTF-16'?><a/>",
     "line 1, column 38: encoding UTF-16 is declared, but the text is taken for UTF-8"},
    {"<?xml encoding='utf-8'?><a/>", "line 1, column 6: an XML declaration must start with a version 1.x"},
    {"<?xml version='1.0' standalone='no' encoding='utf-8'?><a/>",
     "line 1, column 37: the XML declaration should end here"},
    {"<a>\xE9</a>", "line 1, column 4: not UTF-8"},
    {"<a>\xED\xA0\x80</a>", "line 1, column 4: not UTF-8"},
    {"<a>\xF4\x90\x80\x80</a>", "line 1, column 4: not UTF-8"},
    {"<a>\xE2\x82", "line 1, column 4: not UTF-8"},
    {"<a>\xEF\xBF\xBF</a>", "line 1, column 4: a character that XML does not allow"},
    {"<a><b><c><d><e/></d></c></b></a>", ""},
    {"<a><b><c><d><e></e></d></c></b></a>", "line 1, column 16: elements nested deeper than 4"},
};

TEST(XmlParser, SaysWhatIsWrongAndWhere)
{
    for (const BadXml& row : kBad)
        EXPECT_EQ(row.fault, fault(row.text)) << row.text;
    EXPECT_EQ("line 1, column 4: a character that XML does not allow",
              fault(std::string_view("<a>\0</a>", 8)));
    EXPECT_EQ("line 1, column 2: half a UTF-16 character", fault({"\xFF\xFE<\0a", 5}));
    EXPECT_EQ("line 1, column 2: not UTF-16", fault({"\xFF\xFE<\0\x34\xD8<\0", 8}));
    EXPECT_EQ("line 1, column 2: not UTF-16", fault({"\xFF\xFE<\0\x1E\xDD", 6}));
}

TEST(XmlParser, BoundsTheNodesOfATree)
{
    const auto repeated = [](std::string_view piece, std::size_t times)
    {
        std::string text = "<a>";
        for (std::size_t i = 0; i < times; ++i)
            text += piece;
        return text + "</a>";
    };
    const struct
    {
        const char* piece;
        std::size_t nodes; // in one piece
    } rows[] = {{"<b/>", 1},
                {"<b c=''/>", 2},
                {"<b/> ", 2},
                {"<![CDATA[]]>", 1},
                {"<b></b>", 1},
                {"<b>x</b>", 1},
                {"<b><c/>x</b>", 3}};
    for (const auto& row : rows)
    {
        const std::size_t fitting = (limits().xmlNodes - 1) / row.nodes; // beside the root
        EXPECT_EQ("", fault(repeated(row.piece, fitting))) << row.piece;
        EXPECT_NE("", fault(repeated(row.piece, fitting + 1))) << row.piece;
    }
}

TEST(XmlDocument, KeepsTextAndSkipsWhatIsNotContent)
{
    const XmlDocument document(
        "<a d='\t1\r\n&#10;'> <b> x&#13;<![CDATA[<y>&#9;\r]]><!-- no --><?pi --> ?>\r\nz </b>"
        "<!-- --><?pi?>t<c/></a>",
        limits());
    EXPECT_EQ(" 1 \n", document.root().attribute("d"));
    const XmlElement first = firstChild(document.root());
    const XmlElement second = nextElement(first);
    EXPECT_EQ(" x\r<y>&#9;\n\nz ", textOf(first));
    EXPECT_TRUE(isTag(second, "c"));
    EXPECT_FALSE(nextElement(second));
    EXPECT_FALSE(isTag(nextElement(second), "c"));
}

TEST(XmlDocument, DropsTheRootsPrefixOnly)
{
    const XmlDocument qualified("<p:a xmlns:p='u' xmlns:q='v'><p:b/><q:c/><pb/></p:a>", limits());
    std::string names(qualified.root().name());
    for (XmlElement child = firstChild(qualified.root()); child; child = nextElement(child))
        names.append(1, ' ').append(child.name());
    EXPECT_EQ("a b q:c pb", names);
    EXPECT_EQ("p:a", XmlDocument("<p:a/>", limits()).root().name()); // nothing declares the prefix
}

} // namespace
} // namespace cimd
