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

std::size_t Overflow::read(char* to, std::size_t size)
{
    const std::size_t most = std::min(size, _written - _read);
    if (most == 0)
        return 0;
    const std::size_t got = _area.read(*_file, to, most, _read);
    _read += got;
    if (empty())
        clear();
    return got;
}

void Overflow::clear()
{
    _area.giveBack(_written);
    _written = _read = 0;
    _file.reset();
}

} // namespace cimd
