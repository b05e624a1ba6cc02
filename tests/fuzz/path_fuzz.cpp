// Fuzzes the readers of object paths: the CIMObject header, path elements, and the toolkit's model paths.
//
// The input's first line is a header value and, at once, a model path; the rest is a path element.
#include "agent/http/cim_headers.h"
#include "agent/xml/ElementReader.h"
#include "agent/xml/XmlDocument.h"
#include "tests/fuzz/fuzz.h"

#include <Demo_Limits.h>
#include <algorithm>
#include <cimple/cimple.h>

namespace
{

bool isPlain(std::string_view text)
{
    return !text.empty() &&
           text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_/") ==
               std::string_view::npos;
}

// Whether a header can carry the path so that it is understood: names are plain, texts quoted.
bool fitsHeader(const cimd::ObjectPath& path)
{
    return isPlain(path.nameSpace()) && isPlain(path.className().str()) &&
           std::all_of(path.keys().begin(),
                       path.keys().end(),
                       [](const cimd::KeyBinding& key)
                       { return isPlain(key.name.str()) && key.value.type() != cimd::CimType::Char16; });
}

std::string percentEncoded(std::string_view text)
{
    std::string encoded;
    for (const char c : text)
        encoded += c == '%' ? std::string("%25") : std::string(1, c);
    return encoded;
}

void checkAgentPath(std::string_view header, std::string_view element)
try
{
    const cimd::XmlDocument document{std::string(element), {}};
    cimd::ObjectPath path = cimd::ElementReader(cimd::Limits()).path(document.root());
    cimd::namesObject(header, path);
    cimd::namesNameSpace(header, path.nameSpace());
    path.setHost({});
    if (fitsHeader(path) && !cimd::namesObject(percentEncoded(path.text()), path))
        fuzz::requireEqual("a header made of the path", path.text(), "another object");
}
catch (const cimd::XmlError&)
{
}
catch (const cimd::CimError&)
{
}

void checkModelPath(const std::string& text)
{
    using namespace cimple;
    const Ref<Instance> instance(model_path_to_instance(&Demo_Limits::static_meta_class, text.c_str()));
    String first;
    if (!instance || instance_to_model_path(instance.ptr(), first) != 0)
        return;
    const Ref<Instance> again(model_path_to_instance(&Demo_Limits::static_meta_class, first.c_str()));
    String second;
    if (again)
        instance_to_model_path(again.ptr(), second);
    fuzz::requireEqual("model path", first.c_str(), second.c_str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const auto [header, element] = fuzz::splitLine(fuzz::textOf(data, size));
    checkAgentPath(header, element);
    checkModelPath(std::string(header));
    return 0;
}
