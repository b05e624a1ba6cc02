// The I/O blades that are present in the local switch, as the cards that they are.
#include "switchProviders/VRAX_PhysicalIOBlade_Provider.h"

#include "switchaccess/Switch_Brand.h"

#include <optional>

namespace cimple
{

namespace
{

// Values of CIM_PhysicalPackage.
constexpr uint16 kPackageTypeBlade = 16;
constexpr uint16 kRemovableWhenOnOrOff = 4;

} // namespace

// The brand is asked for once, with the first blade.
void VRAX_PhysicalIOBlade_Provider::build(Map_Writer<VRAX_PhysicalIOBlade>& map)
{
    std::optional<Switch_Brand> brand;
    const auto fill = [&brand](VRAX_PhysicalIOBlade& blade, std::uint16_t, const Attribute_Reader<Is>&)
    {
        if (!brand)
            brand.emplace(Caller{kSource, "load"});
        blade.PackageType.set(kPackageTypeBlade);
        blade.RemovalConditions.set(kRemovableWhenOnOrOff);
        blade.Manufacturer.set(brand->manufacturer());
    };
    publish(map, fill);
}

} // namespace cimple
