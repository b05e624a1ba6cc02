// The record logs conform to the profile of their own.
#ifndef SWITCHPROVIDERS_VRAX_RECORDLOGCONFORMSTOPROFILE_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_RECORDLOGCONFORMSTOPROFILE_PROVIDER_H

#include "common/Association_Provider.h"
#include "common/profiles.h"
#include "serverProviders/VRAX_RegisteredProfile_Provider.h"
#include "switchProviders/VRAX_RecordLog_Provider.h"

#include "VRAX_RecordLogConformsToProfile_Methods.h"

namespace cimple
{

class VRAX_RecordLogConformsToProfile_Provider
    : public Association_Provider<&VRAX_RecordLogConformsToProfile::ConformantStandard,
                                  &VRAX_RecordLogConformsToProfile::ManagedElement>
{
  public:
    void build(Pairs& pairs)
    {
        const VRAX_RegisteredProfile* profile = profileOf(pairs.all<VRAX_RegisteredProfile>(), "Record Log");
        if (profile == nullptr)
            return;
        for (const VRAX_RecordLog* log : pairs.all<VRAX_RecordLog>())
            pairs.join(*profile, *log);
    }
};

} // namespace cimple

#endif
