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

bool listsWord(std::string_view list, std::string_view word)
{
    for (;;)
    {
        const std::size_t comma = list.find(',');
        std::string_view item = list.substr(0, comma);
        item = item.substr(0, item.find(';'));
        item.remove_prefix(std::min(item.find_first_not_of(" \t"), item.size()));
        item = item.substr(0, item.find_last_not_of(" \t") + 1);
        if (equalNoCase(item, word))
            return true;
        if (comma == std::string_view::npos)
            return false;
        list.remove_prefix(comma + 1);
    }
}

} // namespace cimd
