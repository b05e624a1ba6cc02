// Where the local switch stands.
#include "switchProviders/VRAX_Location_Provider.h"

#include "switchaccess/Attribute.h"

#include <string>

namespace cimple
{

namespace
{

constexpr Attribute<VRAX_Location> kAttributes[] = {
    {"Config.Switch.Location", putUnlessEmpty<&VRAX_Location::PhysicalPosition>},
};

} // namespace

void VRAX_Location_Provider::fill(VRAX_Location& location, const char* localWwn)
{
    Attribute_Reader<VRAX_Location> attributes(kAttributes);
    if (!attributes.read({}))
        fail(kReadFailed);
    location.Name.set((std::string("VRAX:Location:") + localWwn).c_str());
    location.PhysicalPosition.set("Unknown"); // a key: there must be one while nobody has said where
    location.ElementName.set("Switch Location");
    attributes.fill(location);
}

} // namespace cimple
