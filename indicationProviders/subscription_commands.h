// Commands that change the listeners and subscriptions that the switch keeps.
#ifndef INDICATIONPROVIDERS_SUBSCRIPTION_COMMANDS_H
#define INDICATIONPROVIDERS_SUBSCRIPTION_COMMANDS_H

#include "delivery/delivery.h"
#include "switchaccess/Sml_Writes.h"

namespace cimple
{

// Sends them in one batch; true when none was refused. Whatever the switch says, it may have carried out
// some, so the delivery looks again at who has subscribed.
inline bool sendCommands(Sml_Writes& writes)
{
    const bool accepted = writes.send(xpl_smlBatchCimSet);
    subscriptionsChanged();
    return accepted;
}

} // namespace cimple

#endif
