// The I/O blades that are present in the local switch, as what they do.
#include "switchProviders/VRAX_LogicalIOBlade_Provider.h"

namespace cimple
{

namespace
{

constexpr uint16 kModuleTypeBlade = 4; // LogicalModuleType
constexpr uint16 kEnabled = 2;         // EnabledState, EnabledDefault
constexpr uint16 kDisabled = 3;        // EnabledDefault
constexpr uint16 kNoChange = 5;        // RequestedState

} // namespace

void VRAX_LogicalIOBlade_Provider::fill(VRAX_LogicalIOBlade& blade,
                                        std::uint16_t number,
                                        const Attribute_Reader<VRAX_LogicalIOBlade>&)
{
    blade.ModuleNumber.set(number);
    blade.LogicalModuleType.set(kModuleTypeBlade);
    blade.RequestedState.set(kNoChange);
    blade.EnabledDefault.set(blade.EnabledState.value == kEnabled ? kEnabled : kDisabled);
}

} // namespace cimple
