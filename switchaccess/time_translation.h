// Conversion between the switch's time stamps and CIM date-times (DSP0004, datetime type).
//
// All of them work in the local time zone of the process (the environment's TZ) and may be called from any
// thread.
#ifndef SWITCHACCESS_TIME_TRANSLATION_H
#define SWITCHACCESS_TIME_TRANSLATION_H

#include <cimple/cimple.h>

#include <cstdint>

namespace cimple
{

// The moment that a text MMDDhhmmYYYY of local time names; what follows the twelve characters is ignored.
// Fields out of range carry over (month 13 is January of the next year). A shorter text gives the cleared
// Datetime.
Datetime smlTimeToCIMDatetime(const String& text);

// The text that the switch keeps of a moment: local month, day, abbreviated name of the month, minute,
// century and year, as in "1114Nov352026". There is no hour in it and smlTimeToCIMDatetime does not read it
// back. Seconds since the epoch are kept in 32 bits, as on the switch.
String CIMDatetimeTosmlTime(const Datetime& datetime);

// How far local time is ahead of UTC at the moment `t` (seconds since the epoch), as a sign and three digits
// in minutes: "+060". Daylight saving counts as one hour.
String calcLocalUTCOffset(long t);

// The moment as a CIM date-time of the local wall clock with a zero offset, as in
// "20261122140527.000000+000": clients compare it with the switch's own display of time.
String localWallClock(std::int64_t secondsSinceEpoch);

} // namespace cimple

#endif
