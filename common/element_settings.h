// What associations of an element with its settings have in common.
#ifndef COMMON_ELEMENT_SETTINGS_H
#define COMMON_ELEMENT_SETTINGS_H

#include <cimple/cimple.h>

namespace cimple
{

// Values of CIM_ElementSettingData's IsCurrent and IsDefault.
constexpr uint16 kIs = 1;
constexpr uint16 kIsNot = 2;

// For settings that are in force, and that the element need not start with. PAIR derives from
// CIM_ElementSettingData.
template <class PAIR>
void setInForce(PAIR& pair)
{
    pair.IsCurrent.set(kIs);
    pair.IsDefault.set(kIsNot);
}

} // namespace cimple

#endif
