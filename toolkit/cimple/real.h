// Conversion of text to floating point numbers.
#ifndef CIMPLE_REAL_H
#define CIMPLE_REAL_H

#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

// The whole text must be a number in the type's range. 0, or -1 with `x` unchanged.
int str_to_real32(const char* str, real32& x);
int str_to_real64(const char* str, real64& x);

CIMPLE_NAMESPACE_END

#endif
