// Look-up in HTTP headers.
#include "agent/http/message.h"

#include "agent/cim/CimName.h"

#include <algorithm>

namespace cimd
{

const std::string* HttpRequest::header(std::string_view name) const
{
    for (const HttpHeader& h : headers)
        if (equalNoCase(h.first, name))
            return &h.second;
    return nullptr;
}

bool HttpRequest::lists(std::string_view name, std::string_view word) const
{
    return std::any_of(headers.begin(),
                       headers.end(),
                       [&](const HttpHeader& header)
                       { return equalNoCase(header.first, name) && listsWord(header.second, word); });
}

std::string_view withoutBlanks(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator)
{
    std::vector<std::string_view> parts;
    for (;;)
    {
        const std::size_t end = text.find(separator);
        parts.push_back(withoutBlanks(text.substr(0, end)));
        if (end == std::string_view::npos)
            return parts;
        text.remove_prefix(end + 1);
    }
}

bool listsWord(std::string_view list, std::string_view word)
{
    const std::vector<std::string_view> items = split(list, ',');
    return std::any_of(items.begin(),
                       items.end(),
                       [&](std::string_view item) { return equalNoCase(split(item, ';').front(), word); });
}

} // namespace cimd
