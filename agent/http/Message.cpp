// Look-up in HTTP headers.
#include "agent/http/Message.h"

#include "agent/cim/CimName.h"

namespace cimd
{

const std::string* HttpRequest::header(std::string_view name) const
{
    for (const HttpHeader& h : headers)
        if (equalNoCase(h.first, name))
            return &h.second;
    return nullptr;
}

} // namespace cimd
