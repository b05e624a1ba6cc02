// The brand that the switch is sold under, and the manufacturer that it stands for.
#ifndef SWITCHACCESS_SWITCH_BRAND_H
#define SWITCHACCESS_SWITCH_BRAND_H

#include "platform/switch_server.h"
#include "switchaccess/Switch_Text.h"

#include <cstring>

namespace cimple
{

// The manufacturer that a brand stands for: the maker's own brand for the company, any other for itself. As
// long-lived as the brand.
inline const char* manufacturerOf(const char* brand)
{
    return std::strcmp(brand, "Tarvel") == 0 ? "Tarvel Corporation" : brand;
}

// The switch's own brand; owns the platform's text until the end of the scope.
class Switch_Brand : public Switch_Text
{
  public:
    // Asks the switch; throws the failure in the caller's name when there is no brand.
    explicit Switch_Brand(const Caller& caller)
        : Switch_Text(get_Switch_Brand_Name(), caller, "Failed to get brand name")
    {
    }

    const char* manufacturer() const { return manufacturerOf(text()); }
};

} // namespace cimple

#endif
