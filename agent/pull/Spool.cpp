// Items are stored as a mark, two lengths and two texts.
#include "agent/pull/Spool.h"

#include "agent/cim/CimError.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace cimd
{

namespace
{

using Length = std::uint32_t;
constexpr std::size_t kReadBytes = 64 * 1024;
constexpr char kEnds = 0;
constexpr char kGoesOn = 1;

void appendLength(std::string& out, std::size_t length)
{
    // A text beyond this does not fit the memory of a switch; being sure costs nothing.
    if (length > std::numeric_limits<Length>::max())
        throw CimError(CimStatus::ServerLimitsExceeded, "one result is too large to be kept");
    const auto stored = static_cast<Length>(length);
    out.append(reinterpret_cast<const char*>(&stored), sizeof stored);
}

} // namespace

void Spool::add(const Item& item)
{
    if (_buffer.size() + item.head.size() + item.body.size() > _file->memoryBytes())
        flush();
    _buffer += item.goesOn ? kGoesOn : kEnds;
    appendLength(_buffer, item.head.size());
    appendLength(_buffer, item.body.size());
    _buffer += item.head;
    _buffer += item.body;
    _count += item.goesOn ? 0 : 1;
}

void Spool::flush()
{
    _file->add(_buffer);
    _buffer.clear();
}

void Spool::seal()
{
    if (!_file->exists())
        return;
    flush();
    rest();
}

void Spool::rest()
{
    if (!_file->exists())
        return;
    _file->unread(_buffer.size() - _at);
    _at = 0;
    std::string().swap(_buffer);
}

void Spool::need(std::size_t bytes)
{
    if (_buffer.size() - _at >= bytes)
        return;
    _buffer.erase(0, _at);
    _at = 0;
    std::size_t filled = _buffer.size();
    _buffer.resize(std::max(bytes, kReadBytes));
    while (filled < bytes)
        filled += _file->read(&_buffer[filled], _buffer.size() - filled);
    _buffer.resize(filled);
}

std::size_t Spool::takeLength()
{
    Length length = 0;
    std::memcpy(&length, &_buffer[_at], sizeof length);
    _at += sizeof length;
    return length;
}

Spool::Item Spool::take()
{
    need(1 + 2 * sizeof(Length));
    const bool goesOn = _buffer[_at++] == kGoesOn;
    const std::size_t head = takeLength();
    const std::size_t body = takeLength();
    need(head + body);
    const std::string_view texts = std::string_view(_buffer).substr(_at, head + body);
    _at += head + body;
    _count -= goesOn ? 0 : 1;
    return {texts.substr(0, head), texts.substr(head), goesOn};
}

} // namespace cimd
