// Conversion of text to booleans.
#ifndef CIMPLE_BOOLEAN_H
#define CIMPLE_BOOLEAN_H

#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

// "true" or "false", letter case ignored. 0, or -1 with `x` unchanged.
int str_to_boolean(const char* str, boolean& x);

CIMPLE_NAMESPACE_END

#endif
