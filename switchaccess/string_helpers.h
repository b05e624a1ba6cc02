// Small conversions of switch texts.
#ifndef SWITCHACCESS_STRING_HELPERS_H
#define SWITCHACCESS_STRING_HELPERS_H

#include <string>

namespace cimple
{

// The decimal reading at the start of `text` in hundredths, rounded to the nearest: "12.34" gives 1234.
// Text behind the number is ignored; 0 when there is no number. Readings that do not fit are limited to the
// largest or smallest int.
int strToInt(const char* text);

// Upper-case `text` in place and return it.
char* strToUpper(char* text);
char* convertToUpper(char* text);
// The upper-cased copy of `text`.
std::string upperCased(const char* text);

// 1 when every character is a hexadecimal digit, also for the empty text; otherwise 0.
int IS_HEX_STR(const char* text);

} // namespace cimple

#endif
