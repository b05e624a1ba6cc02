// Conversion between integers and decimal text.
#ifndef CIMPLE_INTEGER_H
#define CIMPLE_INTEGER_H

#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

// The whole text must be a decimal number in the type's range; a sign is allowed. 0, or -1 with `x`
// unchanged.
int str_to_uint8(const char* str, uint8& x);
int str_to_sint8(const char* str, sint8& x);
int str_to_uint16(const char* str, uint16& x);
int str_to_sint16(const char* str, sint16& x);
int str_to_uint32(const char* str, uint32& x);
int str_to_sint32(const char* str, sint32& x);
int str_to_uint64(const char* str, uint64& x);
int str_to_sint64(const char* str, sint64& x);

// The text, somewhere in the buffer, and its length.
const char* uint8_to_str(char buffer[22], uint8 x, size_t& size);
const char* sint8_to_str(char buffer[22], sint8 x, size_t& size);
const char* uint16_to_str(char buffer[22], uint16 x, size_t& size);
const char* sint16_to_str(char buffer[22], sint16 x, size_t& size);
const char* uint32_to_str(char buffer[22], uint32 x, size_t& size);
const char* sint32_to_str(char buffer[22], sint32 x, size_t& size);
const char* uint64_to_str(char buffer[22], uint64 x, size_t& size);
const char* sint64_to_str(char buffer[22], sint64 x, size_t& size);

CIMPLE_NAMESPACE_END

#endif
