// Octet strings: "0x", a length of eight hexadecimal digits that counts itself, and the data in hexadecimal
// (DSP0004, OctetString qualifier).
#ifndef CIMPLE_OCTETS_H
#define CIMPLE_OCTETS_H

#include <cimple/Array.h>
#include <cimple/String.h>

CIMPLE_NAMESPACE_BEGIN

String octets_to_string(const unsigned char* data, uint32 size);

// Decodes as many octets as fit into `size` and returns how many there are; -1: not a valid octet string.
ssize_t string_to_octets(const String& text, unsigned char* data, uint32 size);

// Replaces the array: 0, or -1 (array unchanged) if the text is not a valid octet string.
int string_to_octets(const String& text, Array<unsigned char>& array);

CIMPLE_NAMESPACE_END

#endif
