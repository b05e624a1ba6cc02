// The file lives from the first bytes until it has been read to its end.
#include "agent/http/Overflow.h"

#include "agent/cim/CimError.h"

#include <algorithm>

namespace cimd
{

void Overflow::add(std::string_view bytes)
{
    _area.take(bytes.size());
    try
    {
        if (!_file)
            _file = _area.file();
        _area.write(*_file, bytes, _written);
    }
    catch (const CimError&)
    {
        _area.giveBack(bytes.size());
        throw;
    }
    _written += bytes.size();
}

std::string Overflow::read(std::size_t most)
{
    constexpr std::size_t kLineEnd = 2; // which HTTP puts behind a chunk
    std::string bytes;
    bytes.reserve(most + kLineEnd);
    bytes.resize(std::min(most, _written - _read));
    bytes.resize(_area.read(*_file, bytes.data(), bytes.size(), _read));
    _read += bytes.size();
    if (empty())
        clear();
    return bytes;
}

void Overflow::clear()
{
    _area.giveBack(_written);
    _written = _read = 0;
    _file.reset();
}

} // namespace cimd
