// Numbers that outlast changes of positions.
#include <algorithm>
#include <cimple/Slots.h>

CIMPLE_NAMESPACE_BEGIN

uint32 Slots::add()
{
    if (!_gapless)
        _live.append(_end);
    return _end++;
}

void Slots::take_back()
{
    if (!_gapless)
        _live.remove(_live.size() - 1);
    _end--;
}

void Slots::remove(size_t pos)
{
    if (_gapless)
    {
        Array<uint32> live;
        live.reserve(_end);
        for (uint32 slot = 0; slot < _end; slot++)
            live.append(slot);
        _live.swap(live);
        _gapless = false;
    }
    _live.remove(pos);
}

size_t Slots::position_of(uint32 slot) const
{
    if (_gapless)
        return slot;
    const uint32* const first = _live.data();
    const uint32* const last = first + _live.size();
    const uint32* const found = std::lower_bound(first, last, slot);
    return found != last && *found == slot ? static_cast<size_t>(found - first) : size_t(-1);
}

void Slots::renumber()
{
    _end = static_cast<uint32>(size());
    _live.clear();
    _gapless = true;
}

void Slots::clear()
{
    *this = Slots();
}

CIMPLE_NAMESPACE_END
