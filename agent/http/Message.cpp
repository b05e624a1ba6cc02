// Look-up in HTTP headers.
#include "agent/http/Message.h"

#include <algorithm>

namespace cimd
{

namespace
{

char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

bool equalNoCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

const std::string* HttpRequest::header(std::string_view name) const
{
    for (const HttpHeader& h : headers)
        if (equalNoCase(h.first, name))
            return &h.second;
    return nullptr;
}

} // namespace cimd
