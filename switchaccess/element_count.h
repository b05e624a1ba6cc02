// How many elements of a kind the switch has.
#ifndef SWITCHACCESS_ELEMENT_COUNT_H
#define SWITCHACCESS_ELEMENT_COUNT_H

#include "switchaccess/Switch_Text.h"

#include <cstdint>

namespace cimple
{

// The number that the key tells; 0 when the key has no value. Throws the failure in the caller's name when
// the key cannot be read.
std::uint16_t elementCount(const char* key, const Caller& caller, const Failure_Text& failed);

} // namespace cimple

#endif
