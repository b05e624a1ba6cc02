// How a switch in transparent mode forwards its ports.
#ifndef SWITCHPROVIDERS_VRAX_PASSTHROUGHMAPENTRY_PROVIDER_H
#define SWITCHPROVIDERS_VRAX_PASSTHROUGHMAPENTRY_PROVIDER_H

#include "common/Association_Provider.h"
#include "fabricProviders/VRAX_FCPort_Provider.h"

#include "VRAX_PassThroughMapEntry_Methods.h"

namespace cimple
{

// An entry is a port of type TF in one of the two lists of a port of type TH. Other switches have none.
//
// Creating and deleting an entry writes the list in an edit of the switch's configuration, which needs its
// administrative mode: somebody else may have it. Both hold the locks of this map and of the ports', and the
// data cache's, from the first check to the end. The map shows the change at once; after a failure of any
// kind the next request asks the switch.
class VRAX_PassThroughMapEntry_Provider
    : public Association_Provider<&VRAX_PassThroughMapEntry::Antecedent, &VRAX_PassThroughMapEntry::Dependent>
{
  public:
    static constexpr bool kChecksKeys = true;
    static constexpr Failure_Text kReadFailed = "xpl_smlGetV failed";
    static constexpr Failure_Text kCreationFailed = "Failed to allocate VRAX_PassThroughMapEntry";
    static constexpr Failure_Text kKeysMissing =
        "VRAX_PassThroughMapEntry::One or more Key Properties are not Populated";

    void build(Pairs& pairs);

    // An entry without PrimaryMapping is one of the backup list. 84 when the data cache cannot be locked, 81
    // for every other failure.
    Create_Instance_Status create_instance(VRAX_PassThroughMapEntry* instance);

    // 93 when the data cache cannot be locked, 91 for every other failure.
    Delete_Instance_Status delete_instance(const VRAX_PassThroughMapEntry* instance);
};

} // namespace cimple

#endif
