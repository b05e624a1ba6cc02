// Finds the encoding of an XML text and turns the text into UTF-8.
#ifndef AGENT_XML_ENCODING_H
#define AGENT_XML_ENCODING_H

#include <string>

namespace cimd
{

enum class XmlEncoding
{
    Utf8,
    Utf16
};

// Turns `text` into UTF-8 without a byte order mark and says what it was. UTF-16 is known by its byte order
// mark or, where that is missing, by a first character "<" (XML 1.0, appendix F); all else is taken for
// UTF-8. Throws XmlError for what is not UTF-16 although it starts like it; UTF-8 is not checked here.
XmlEncoding toUtf8(std::string& text);

} // namespace cimd

#endif
