// The firmware images of the local switch: the running one, and the one that stands by, if any.
#include "switchProviders/VRAX_SoftwareIdentity_Provider.h"

#include "switchaccess/Attribute.h"
#include "switchaccess/Switch_Brand.h"
#include "switchaccess/local_switch.h"

#include <cstring>
#include <limits>
#include <string>

namespace cimple
{

namespace
{

using Is = VRAX_SoftwareIdentity;

constexpr Attribute<Is> kAttributes[] = {
    {"Oper.Switch.FirmwareVersion"},
    {"Oper.Switch.StandbyFirmwareVersion"},
};
constexpr std::size_t kRunning = entryOf(kAttributes, ".FirmwareVersion");
constexpr std::size_t kStandby = entryOf(kAttributes, ".StandbyFirmwareVersion");

constexpr uint16 kStatusOk = 2;                // OperationalStatus
constexpr uint16 kClassificationFirmware = 10; // Classifications

// The runs of digits in a version text, the first for MajorVersion. What is missing, or too large for its
// property, stays null.
void setVersion(Is& image, const char* version)
{
    static constexpr char kDigits[] = "0123456789";
    image.VersionString.set(version);
    for (Property<uint16> Is::*const part :
         {&Is::MajorVersion, &Is::MinorVersion, &Is::RevisionNumber, &Is::BuildNumber})
    {
        version += std::strcspn(version, kDigits);
        if (*version == '\0')
            return;
        const std::uint64_t number = decimal(version);
        if (number <= std::numeric_limits<uint16>::max())
            (image.*part).set(static_cast<uint16>(number));
        version += std::strspn(version, kDigits);
    }
}

} // namespace

void VRAX_SoftwareIdentity_Provider::build(Map_Writer<VRAX_SoftwareIdentity>& map)
{
    const Local_Switch_Wwn localWwn({kSource, "load"});
    const Switch_Brand brand({kSource, "load"});
    Attribute_Reader<Is> attributes(kAttributes);
    if (!attributes.read({}))
        fail(kReadFailed);

    const auto publish = [&](const char* version, const char* suffix)
    {
        Owned<Is> image = make();
        const std::string id = std::string("VRAX:SoftwareIdentity:") + localWwn.text() + suffix;
        image->InstanceID.set(id.c_str());
        image->Name.set("Switch Firmware");
        image->ElementName.set("Switch Firmware");
        setVersion(*image, version);
        image->Manufacturer.set(brand.manufacturer());
        image->Classifications.set(Array_uint16::make(kClassificationFirmware));
        image->IsEntity.set(true);
        image->OperationalStatus.set(Array_uint16::make(kStatusOk));
        add(map, image);
    };
    publish(attributes.text(kRunning), "");
    if (*attributes.text(kStandby) != '\0')
        publish(attributes.text(kStandby), ":Standby");
}

} // namespace cimple
