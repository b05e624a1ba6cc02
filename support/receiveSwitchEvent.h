// The receiver of the switch's events.
#ifndef SUPPORT_RECEIVESWITCHEVENT_H
#define SUPPORT_RECEIVESWITCHEVENT_H

#include "platform/switch_events.h"

namespace cimple
{

// Makes those maps stale whose instances the event has changed, and puts it in the list of every registered
// indication provider that knows its type. Quick, and calls nobody; throws nothing. A null event and those of
// unknown types are passed over.
void receiveSwitchEvent(const xpl_SwitchEvent* event);

} // namespace cimple

#endif
