// Small helpers on C strings.
#ifndef CIMPLE_STRINGS_H
#define CIMPLE_STRINGS_H

#include <cimple/config.h>
#include <strings.h>

CIMPLE_NAMESPACE_BEGIN

// Lower-case form of each character of the ASCII set, other codes unchanged: independent of the locale.
extern const unsigned char __lower[256];

// Equality of two names, ASCII letter case ignored. CIM names compare this way (DSP0004, naming).
bool eqi(const char* s1, const char* s2);

// BSD semantics: copy or append with truncation to `size` bytes including the NUL; the length that was
// wanted.
size_t strlcpy(char* dest, const char* src, size_t size);
size_t strlcat(char* dest, const char* src, size_t size);

// Bounds of the first token of `str` that contains none of the delimiters: 0, or -1 if there is none.
int find_token(const char* str, const char* delims, const char*& start, const char*& end);

CIMPLE_NAMESPACE_END

#endif
