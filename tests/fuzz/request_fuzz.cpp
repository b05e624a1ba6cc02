// Fuzzes the reader of CIM-XML messages, and demands that what was read and written is read and written
// alike.
#include "agent/xml/ByteArrayPacker.h"
#include "agent/xml/ElementReader.h"
#include "agent/xml/element_writer.h"
#include "agent/xml/request_reader.h"
#include "tests/fuzz/fuzz.h"

using namespace cimd;

namespace
{

const ElementReader kReader{Limits()};

// Text of what `read` finds in the element and `write` makes of it; nothing if it is not such an element.
template <class Read, class Write>
std::optional<std::string> rewritten(XmlElement element, Read read, Write write)
try
{
    std::string text;
    XmlWriter xml(text);
    write(xml, read(element));
    return text;
}
catch (const CimError&)
{
    return std::nullopt;
}

template <class Read, class Write>
void checkRoundTrip(const char* what, XmlElement element, Read read, Write write)
{
    const std::optional<std::string> first = rewritten(element, read, write);
    // A key may lack a name on the wire; only a class can supply it.
    if (!first || first->empty() || first->find("NAME=\"\"") != std::string::npos)
        return;
    const XmlDocument document(*first, Limits());
    fuzz::requireEqual(what, *first, rewritten(document.root(), read, write).value_or("a refusal"));
}

void checkValue(XmlElement element)
{
    for (const CimType type : {CimType::Boolean,
                               CimType::String,
                               CimType::Char16,
                               CimType::Uint8,
                               CimType::Sint64,
                               CimType::Real32,
                               CimType::Real64,
                               CimType::DateTime,
                               CimType::Reference,
                               CimType::Instance})
        checkRoundTrip(
            "value", element, [&](XmlElement e) { return kReader.value(type, e); }, writeValue);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
try
{
    const WireRequest request = readRequest(packByteArrays(fuzz::textOf(data, size)), Limits());
    for (const XmlElement parameter : request.parameters)
    {
        checkRoundTrip(
            "argument", parameter, [](XmlElement e) { return kReader.argument(e); }, writeArgument);
        const XmlElement child = firstChild(parameter);
        if (!child)
            continue;
        checkValue(child);
        checkRoundTrip(
            "path", child, [](XmlElement e) { return kReader.path(e); }, writeReference);
        checkRoundTrip(
            "instance",
            child,
            [](XmlElement e) { return kReader.instance(e); },
            [](XmlWriter& xml, const Instance& instance) { writeInstance(xml, instance); });
        checkRoundTrip(
            "named instance",
            child,
            [](XmlElement e) { return kReader.namedInstance(e); },
            [](XmlWriter& xml, const Instance& instance)
            {
                ClassMarkup markup;
                writeNamedInstance(xml, instance, markup);
            });
    }
    return 0;
}
catch (const RequestError&)
{
    return 0;
}
