// Checks of request headers, and the headers of answers.
#include "agent/http/cim_headers.h"

#include "agent/cim/CimName.h"
#include "agent/cim/value_text.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>

namespace cimd
{

namespace
{

constexpr std::string_view kTarget = "/cimom";
constexpr const char* kAllow = "OPTIONS, POST";

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> words)
{
    return std::any_of(
        words.begin(), words.end(), [&](std::string_view word) { return equalNoCase(text, word); });
}

// application/xml or text/xml in UTF-8 or UTF-16; a charset may be missing, quoted or not.
bool isCimXml(std::string_view contentType)
{
    const std::vector<std::string_view> parts = split(contentType, ';');
    if (!isOneOf(parts.front(), {"application/xml", "text/xml"}))
        return false;
    for (const std::string_view parameter : parts)
    {
        const std::size_t equals = parameter.find('=');
        if (equals == std::string_view::npos ||
            !equalNoCase(withoutBlanks(parameter.substr(0, equals)), "charset"))
            continue;
        std::string_view value = withoutBlanks(parameter.substr(equals + 1));
        if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
            value = value.substr(1, value.size() - 2);
        // The text itself says which of these it is in, see XmlEncoding.
        if (!isOneOf(value, {"utf-8", "us-ascii", "utf-16", "utf-16le", "utf-16be"}))
            return false;
    }
    return true;
}

bool acceptsXml(std::string_view accept)
{
    const auto types = {"application/xml", "text/xml", "application/*", "text/*", "*/*"};
    return std::any_of(types.begin(), types.end(), [&](const char* type) { return listsWord(accept, type); });
}

HttpResponse plain(unsigned status, const std::string& reason)
{
    return {status, {{"Content-Type", "text/plain; charset=\"utf-8\""}}, reason + "\n"};
}

// DSP0200, "Discovering a CIM server's capabilities".
HttpResponse capabilities()
{
    return {kOk,
            {{"Allow", kAllow},
             {"Opt", "http://www.dmtf.org/cim/mapping/http/v1.0 ; ns=77"},
             {"77-CIMProtocolVersion", "1.0"},
             {"77-CIMSupportedFunctionalGroups",
              "basic-read, basic-write, instance-manipulation, association-traversal"},
             {"77-CIMValidation", "loosely-validating"}},
            ""};
}

HttpResponse methodNotAllowed(const std::string& method)
{
    HttpResponse response = plain(kMethodNotAllowed, "Method " + method + " is not allowed here.");
    response.headers.emplace_back("Allow", kAllow);
    return response;
}

std::optional<HttpResponse> refuseCimHeaders(const HttpRequest& head)
{
    if (const std::string* version = head.header("CIMProtocolVersion"))
        if (split(*version, '.').front() != "1")
            return refusal(kNotImplemented, "unsupported-protocol-version", "CIMProtocolVersion must be 1.x");
    if (head.header("CIMBatch") != nullptr)
        return refusal(kNotImplemented, "multiple-requests-unsupported", "CIMBatch is not supported");
    const std::string* operation = head.header("CIMOperation");
    if (operation == nullptr && head.header("CIMExport") != nullptr)
        return refusal(kNotImplemented, "unsupported-operation", "exports are not received here");
    if (operation != nullptr && !equalNoCase(withoutBlanks(*operation), "MethodCall"))
        return refusal(kNotImplemented, "unsupported-operation", "CIMOperation must be MethodCall");
    for (const char* name : {"CIMOperation", "CIMMethod", "CIMObject"})
        if (head.header(name) == nullptr)
            return refusal(kBadRequest, "header-mismatch", std::string("the header ") + name + " is missing");
    return std::nullopt;
}

// "/cimom" for "http://switch:5988/cimom", the form that proxies are sent (RFC 9112, section 3.2.2).
std::string_view pathOf(std::string_view target)
{
    for (const std::string_view scheme : {"http://", "https://"})
        if (equalNoCase(target.substr(0, scheme.size()), scheme))
        {
            const std::size_t path = target.find('/', scheme.size());
            return path == std::string_view::npos ? "/" : target.substr(path);
        }
    return target;
}

std::string_view withoutSlashes(std::string_view text)
{
    while (!text.empty() && text.front() == '/')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == '/')
        text.remove_suffix(1);
    return text;
}

struct HeaderKey
{
    std::string name;
    std::string text;
};

// `Key="value",Key2=3` taken apart; nothing if it does not follow the syntax.
std::optional<std::vector<HeaderKey>> headerKeys(std::string_view text)
{
    std::vector<HeaderKey> keys;
    while (!text.empty())
    {
        const std::size_t equals = text.find('=');
        if (equals == std::string_view::npos)
            return std::nullopt;
        HeaderKey key{std::string(text.substr(0, equals)), {}};
        text.remove_prefix(equals + 1);
        std::size_t at = 0;
        if (!text.empty() && text.front() == '"')
        {
            for (at = 1; at < text.size() && text[at] != '"'; ++at)
            {
                if (text[at] == '\\' && at + 1 < text.size())
                    ++at;
                key.text += text[at];
            }
            if (at++ >= text.size())
                return std::nullopt;
        }
        else
        {
            at = std::min(text.find(','), text.size());
            key.text = text.substr(0, at);
        }
        if (at < text.size() && text[at] != ',')
            return std::nullopt;
        text.remove_prefix(std::min(at + 1, text.size()));
        keys.push_back(std::move(key));
    }
    return keys;
}

bool sameText(const CimValue& value, const std::string& text)
{
    if (value.type() == CimType::Reference)
        return true;
    const std::optional<CimValue> parsed = parseScalar(value.type(), text);
    return parsed && *parsed == value;
}

// Everything but letters, digits and the marks of RFC 3986 that need no escape, and spaces, as "%xx".
std::string percentEncoded(std::string_view text)
{
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~ ";
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(text.size());
    for (const char c : text)
    {
        if (kPlain.find(c) != std::string_view::npos)
        {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += {'%', kDigits[byte >> 4], kDigits[byte & 0xF]};
    }
    return encoded;
}

} // namespace

std::string percentDecoded(std::string_view text)
{
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        unsigned value = 0;
        if (text[at] == '%' && text.size() - at > 2 &&
            std::from_chars(text.data() + at + 1, text.data() + at + 3, value, 16).ptr ==
                text.data() + at + 3)
        {
            decoded += static_cast<char>(static_cast<unsigned char>(value));
            at += 2;
        }
        else
            decoded += text[at];
    }
    return decoded;
}

HttpResponse refusal(unsigned status, const std::string& cimError, const std::string& reason)
{
    HttpResponse response = plain(status, reason);
    if (!cimError.empty())
        response.headers.emplace_back("CIMError", cimError);
    return response;
}

HttpResponse cimResponse()
{
    return {kOk,
            {{"Content-Type", "application/xml; charset=\"utf-8\""}, {"CIMOperation", "MethodResponse"}},
            {}};
}

std::vector<HttpHeader> failureTrailers(const CimError& error)
{
    constexpr std::size_t kMostText = 1000; // it must fit in the server's buffer with room to spare
    return {
        {"CIMStatusCode", std::to_string(error.code())},
        {"CIMStatusCodeDescription", percentEncoded(std::string_view(error.what()).substr(0, kMostText))}};
}

std::optional<HttpResponse> refuseHead(const HttpRequest& head)
{
    if (head.method == "OPTIONS")
        return capabilities();
    if (head.method == "M-POST")
        return plain(kNotExtended, "M-POST is not supported; use POST.");
    if (head.method != "POST")
        return methodNotAllowed(head.method);
    if (pathOf(head.target) != kTarget)
        return plain(kNotFound, "There is nothing here; CIM operations go to " + std::string(kTarget) + ".");
    const std::string* contentType = head.header("Content-Type");
    if (contentType == nullptr || !isCimXml(*contentType))
        return plain(kUnsupportedMediaType,
                     "The content type must be application/xml or text/xml in utf-8 or utf-16.");
    if (const std::string* encoding = head.header("Content-Encoding"))
        if (!equalNoCase(*encoding, "identity"))
            return plain(kUnsupportedMediaType, "Content-Encoding " + *encoding + " is not supported.");
    const std::string* accept = head.header("Accept");
    if (accept != nullptr && !acceptsXml(*accept))
        return plain(kNotAcceptable, "Answers are application/xml only.");
    return refuseCimHeaders(head);
}

bool namesNameSpace(std::string_view cimObject, std::string_view nameSpace)
{
    return equalNoCase(withoutSlashes(percentDecoded(withoutBlanks(cimObject))), withoutSlashes(nameSpace));
}

bool namesObject(std::string_view cimObject, const ObjectPath& path)
{
    const std::string decoded = percentDecoded(withoutBlanks(cimObject));
    std::string_view text = decoded;
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos ||
        !equalNoCase(withoutSlashes(text.substr(0, colon)), withoutSlashes(path.nameSpace())))
        return false;
    text.remove_prefix(colon + 1);
    const std::size_t end = std::min(text.find_first_of(".="), text.size());
    if (!equalNoCase(text.substr(0, end), path.className().str()))
        return false;
    if (end == text.size())
        return path.keys().empty();
    if (text[end] == '=')
        return true; // "Class=@", the one instance of a class without keys
    const std::optional<std::vector<HeaderKey>> keys = headerKeys(text.substr(end + 1));
    if (!keys)
        return true;
    if (keys->size() != path.keys().size())
        return false;
    for (const HeaderKey& key : *keys)
    {
        const CimValue* value = path.findKey(key.name);
        if (value == nullptr || !sameText(*value, key.text))
            return false;
    }
    return true;
}

} // namespace cimd
