// The chassis of the local switch.
#include "switchProviders/VRAX_PhysicalChassis_Provider.h"

#include "switchaccess/Switch_Brand.h"

namespace cimple
{

namespace
{

// Values of CIM_PhysicalPackage.
constexpr uint16 kPackageTypeChassis = 3;
constexpr uint16 kRemovalNotApplicable = 2;

} // namespace

// Each text is required, and the next one is only asked for when it is there.
void VRAX_PhysicalChassis_Provider::fill(VRAX_PhysicalChassis& chassis, const char* localWwn)
{
    const Switch_Text partNumber(
        get_Switch_ChassisPartNum(), {kSource, "load"}, "Falied to get model chassis part number");
    const Switch_Text serialNumber(
        get_Switch_ChassisSerialNum(), {kSource, "load"}, "Failed to get chassis serial num");
    const Switch_Text planarNumber(
        get_Switch_PlanarPartNum(), {kSource, "load"}, "Failed to planar part num");
    const Switch_Brand brand({kSource, "load"});

    chassis.CreationClassName.set("VRAX_PhysicalChassis");
    chassis.Tag.set(localWwn);
    chassis.Model.set(partNumber.text());
    chassis.SerialNumber.set(serialNumber.text());
    chassis.PartNumber.set(planarNumber.text());
    chassis.Manufacturer.set(brand.manufacturer());
    chassis.PackageType.set(kPackageTypeChassis);
    chassis.RemovalConditions.set(kRemovalNotApplicable);
}

} // namespace cimple
