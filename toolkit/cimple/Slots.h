// Numbers for the elements of an array that stay the same when others are removed. Internal.
#ifndef CIMPLE_SLOTS_H
#define CIMPLE_SLOTS_H

#include <cimple/Array.h>

CIMPLE_NAMESPACE_BEGIN

// Numbers ascend with positions, and that of a removed element is not given again, until renumber(). As long
// as nothing has been removed, numbers and positions are the same.
class Slots
{
  public:
    size_t size() const { return _gapless ? _end : _live.size(); }

    // For the next position. Nothing changes if memory runs out.
    uint32 add();

    // Takes back the number of the last position, which may then be given again. Does not throw.
    void take_back();

    // The position is gone; those behind it move up. Nothing changes if memory runs out.
    void remove(size_t pos);

    uint32 at(size_t pos) const { return _gapless ? static_cast<uint32>(pos) : _live[pos]; }

    // size_t(-1): gone.
    size_t position_of(uint32 slot) const;

    // More numbers are gone than in use.
    bool sparse() const { return _end > 2 * size() + kFew; }

    // Numbers become positions again. Does not throw.
    void renumber();

    void clear();

  private:
    static constexpr size_t kFew = 64;

    uint32 _end = 0; // the next number
    bool _gapless = true;
    Array<uint32> _live; // by position, unless gapless
};

CIMPLE_NAMESPACE_END

#endif
