// Writing audit lines.
#include "agent/ops/audit.h"

#include "agent/log/log.h"

#include <cstdio>

namespace cimd
{

namespace
{

// Together below what the log writes of a line.
constexpr std::size_t kMaxUser = 200;
constexpr std::size_t kMaxObject = 900;
constexpr std::size_t kMaxNames = 400;

// At most `most` bytes, with "..." for the rest.
std::string escaped(std::string_view text, std::size_t most)
{
    std::string out;
    for (const char c : text)
    {
        char piece[8] = {c, '\0'};
        if (c == '"' || c == '\\')
            std::snprintf(piece, sizeof piece, "\\%c", c);
        else if (c < 0x20 || c > 0x7e)
            std::snprintf(
                piece, sizeof piece, "\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(c)));
        if (out.size() + std::string_view(piece).size() > most)
            return out + "...";
        out += piece;
    }
    return out;
}

std::string quotedOrDash(std::string_view text, std::size_t most)
{
    return text.empty() ? "-" : '"' + escaped(text, most) + '"';
}

// Names are the client's, too: what is no name of CIM is quoted as a whole.
std::string listed(const std::vector<CimName>& names)
{
    std::string text;
    bool isPlain = true;
    for (const CimName& name : names)
    {
        text += (text.empty() ? "" : ",") + name.str();
        for (const char c : name.str())
            isPlain = isPlain && ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                                  (c >= '0' && c <= '9') || c == '_');
    }
    return isPlain && !text.empty() && text.size() <= kMaxNames ? text : quotedOrDash(text, kMaxNames);
}

} // namespace

void audit(const RequestContext& context,
           std::string_view operation,
           const Change& change,
           std::string_view result)
{
    std::string text = "user=" + quotedOrDash(context.principal, kMaxUser) + " from=" + context.clientAddress;
    text.append(" operation=").append(operation).append(" result=").append(result);
    if (!change.returned.empty())
        text += " returned=" + change.returned;
    text += " object=" + quotedOrDash(change.object, kMaxObject);
    if (!change.method.empty())
        text += " method=" + listed({CimName(change.method)}) + " parameters=" + listed(change.names);
    else if (!change.names.empty())
        text += " properties=" + listed(change.names);
    logAlways("audit", "cim", text);
}

} // namespace cimd
