// The switch's events: none happen.
#include "platform/switch_events.h"

extern "C" void xpl_swReceiveEvents(xpl_SwitchEventReceiver, void*) {}
