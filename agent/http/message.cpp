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

std::string_view withoutBlanks(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

bool listsWord(std::string_view list, std::string_view word)
{
    for (;;)
    {
        const std::size_t comma = list.find(',');
        std::string_view item = list.substr(0, comma);
        item = withoutBlanks(item.substr(0, item.find(';')));
        if (equalNoCase(item, word))
            return true;
        if (comma == std::string_view::npos)
            return false;
        list.remove_prefix(comma + 1);
    }
}

} // namespace cimd
