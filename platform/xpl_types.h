// Types and status codes shared by the services of the switch-access library.
#ifndef PLATFORM_XPL_TYPES_H
#define PLATFORM_XPL_TYPES_H

#include <cstddef>
#include <cstdint>

// Calls return 0 for success or one of these codes; attribute-store entries carry them one by one.
// The switch may return codes that are not listed here; callers treat every non-zero code as a failure
// unless a call says otherwise.
enum xpl_Status : std::int32_t
{
    XPL_OK = 0,
    XPL_UNKNOWN_KEY = 2,           // no such attribute, or no such switch, port or address in the key
    XPL_UNREACHABLE = 5,           // the service behind the call does not answer
    XPL_INVALID_PARAMETER = 9,     // a value that the attribute or record does not take
    XPL_NOT_AVAILABLE = 16,        // the attribute exists, but has no value at present (see isErrors)
    XPL_INVALID_HANDLE = 20,       // not the handle of an open switch
    XPL_END_OF_WALK = 24,          // a First/Next key has no further element
    XPL_INVALID_NAME = 77,         // a name with characters or a length that the switch refuses
    XPL_LISTENER_EXISTS = 235,     // creating a listener that is already there
    XPL_SUBSCRIPTION_EXISTS = 237, // creating a subscription that is already there
};

// An open switch. Opaque; valid for the life of the process.
struct xpl_SwitchSession;
using xpl_Handle = xpl_SwitchSession*;

// The local switch, opened when the library is loaded.
extern "C" xpl_Handle hSwitch;

#endif
