// Every sub-profile is a part of its parent profile.
#ifndef SERVERPROVIDERS_VRAX_SUBPROFILEREQUIRESPROFILE_PROVIDER_H
#define SERVERPROVIDERS_VRAX_SUBPROFILEREQUIRESPROFILE_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/profiles.h"
#include "serverProviders/VRAX_RegisteredProfile_Provider.h"
#include "serverProviders/VRAX_RegisteredSubProfile_Provider.h"

#include "VRAX_SubProfileRequiresProfile_Methods.h"

namespace cimple
{

class VRAX_SubProfileRequiresProfile_Provider
    : public Association_Provider<&VRAX_SubProfileRequiresProfile::Antecedent,
                                  &VRAX_SubProfileRequiresProfile::Dependent>
{
  public:
    void build(Pairs& pairs)
    {
        for (const Sub_Profile_Entry& row : registered_sub_profile_entries)
        {
            const VRAX_RegisteredProfile* parent = profileOf(pairs.all<VRAX_RegisteredProfile>(), row.parent);
            const VRAX_RegisteredSubProfile* part =
                profileOf(pairs.all<VRAX_RegisteredSubProfile>(), row.name);
            if (parent != nullptr && part != nullptr)
                pairs.join(*parent, *part);
        }
    }
};

} // namespace cimple

#endif
