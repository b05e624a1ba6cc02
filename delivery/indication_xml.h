// Indications as CIM-XML (DSP0200, DSP0201): the export message.
#ifndef DELIVERY_INDICATION_XML_H
#define DELIVERY_INDICATION_XML_H

#include <cimple/cimple.h>

#include <string>
#include <string_view>

namespace cimple
{

// The body of a request that exports the indication. Properties without a value are left out. Text that is
// not UTF-8, or that XML cannot carry, is replaced by U+FFFD. Embedded instances are texts of XML.
std::string exportMessage(const Instance& indication, std::string_view messageId);

// What a listener answered with: 0, or the code of its CIM error (DSP0200, status codes), or
// kMalformedCimError when there is an error without one. The description, as it stands, goes to
// `description`.
constexpr unsigned kMalformedCimError = 0xFFFF;
unsigned cimErrorOf(std::string_view answer, std::string& description);

} // namespace cimple

#endif
