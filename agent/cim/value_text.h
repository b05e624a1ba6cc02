// Text form of scalar CIM values, as CIM-XML carries them.
#ifndef AGENT_CIM_VALUE_TEXT_H
#define AGENT_CIM_VALUE_TEXT_H

#include "agent/cim/CimValue.h"

#include <optional>
#include <string>
#include <string_view>

namespace cimd
{

// Reads a scalar of an intrinsic type (not a reference, not an embedded object) from its DSP0201 text:
// integers decimal with optional sign or hexadecimal ("0x1f"), reals, TRUE/FALSE in any letter case, one
// UTF-8 character for char16, any text for string. White space around anything but strings and characters is
// allowed. Nothing if the text is not of the type or out of its range.
std::optional<CimValue> parseScalar(CimType type, std::string_view text);

// Appends the DSP0201 text of a non-null scalar of an intrinsic type; reals with enough digits to read back
// the same number.
void appendText(std::string& out, const CimValue& scalar);

// Without the white space around it.
std::string_view trimmed(std::string_view text);

// A text in quotation marks for messages, cut after 200 bytes: clients may send long ones.
std::string quoted(std::string_view text);

} // namespace cimd

#endif
