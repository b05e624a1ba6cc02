// Message texts with placeholders, as CMPI passes them.
#ifndef AGENT_BROKER_MESSAGE_H
#define AGENT_BROKER_MESSAGE_H

#include <cmpift.h>
#include <cstdarg>
#include <string>

namespace cimd
{

// Replaces $0 to $9 in `text` by the values of `count` pairs of type and value. 32-bit integers are read as
// int, whatever integer type they were passed as. CmpiError (type mismatch) for a type that messages cannot
// carry.
std::string formatMessage(const char* text, CMPICount count, std::va_list values);

} // namespace cimd

#endif
