// The sub-profiles that the switch implements.
#ifndef SERVERPROVIDERS_VRAX_REGISTEREDSUBPROFILE_PROVIDER_H
#define SERVERPROVIDERS_VRAX_REGISTEREDSUBPROFILE_PROVIDER_H

#include "common/Composite_Provider.h"
#include "serverProviders/VRAX_RegisteredProfile_Provider.h"

#include "VRAX_RegisteredSubProfile_Methods.h"

namespace cimple
{

struct Sub_Profile_Entry
{
    std::uint8_t organization; // not published: a sub-profile is of its parent's organisation
    char name[56];
    char parent[41]; // the profile of which it is a part
    char version[9];
    std::uint32_t flags; // for VRAX_Maps::checkFlags
};

constexpr std::size_t registered_sub_profile_count = 9;
extern const Sub_Profile_Entry registered_sub_profile_entries[registered_sub_profile_count];

// A sub-profile is published with its parent profile only.
class VRAX_RegisteredSubProfile_Provider
    : public Composite_Provider<VRAX_RegisteredSubProfile, VRAX_RegisteredProfile>
{
  public:
    static constexpr Failure_Text kCreationFailed = "Failed to create instance";

    void buildFrom(Map_Writer<VRAX_RegisteredSubProfile>& map, const Locked_Ends& ends);
};

} // namespace cimple

#endif
