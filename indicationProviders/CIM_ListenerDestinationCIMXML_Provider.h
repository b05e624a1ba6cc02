// Where the switch sends indications.
#ifndef INDICATIONPROVIDERS_CIM_LISTENERDESTINATIONCIMXML_PROVIDER_H
#define INDICATIONPROVIDERS_CIM_LISTENERDESTINATIONCIMXML_PROVIDER_H

#include "common/Map_Provider.h"
#include "switchaccess/subscription_keys.h"

#include "CIM_ListenerDestinationCIMXML_Methods.h"

namespace cimple
{

class CIM_ListenerDestinationCIMXML_Provider : public Instance_Provider<CIM_ListenerDestinationCIMXML>
{
  public:
    static constexpr Failure_Text kReadFailed = subscription_keys::kListenerMissing;
    static constexpr Failure_Text kCreationFailed = "Failes to create CIM_ListenerDestinationCIMXML instance";
    static constexpr Failure_Text kInsertionFailed = "Failed to insert instance in map";

    void build(Map_Writer<CIM_ListenerDestinationCIMXML>& map);

    // Makes the listener in the switch. 80 when there is one of that name, 82 when CreationClassName is not
    // that of the class, 84 when the switch refuses it. Afterwards the instance has the keys under which the
    // listener is published, whatever system the client took it to belong to.
    Create_Instance_Status create_instance(CIM_ListenerDestinationCIMXML* instance);

    // 90 when there is none, 93 when the switch keeps it. What becomes of its subscriptions is the switch's
    // affair.
    Delete_Instance_Status delete_instance(const CIM_ListenerDestinationCIMXML* instance);

    // Deletes the transient listeners that have exactly this destination and returns how many; those among
    // the instances of the last load, since it makes none. Ends with the first that the switch keeps. Takes
    // the lock of the listeners' map and no other, so any thread without a map lock may call it.
    static std::uint32_t expire_listener_destination(const String& destination);
};

} // namespace cimple

#endif
