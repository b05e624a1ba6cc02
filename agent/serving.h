// The serving process: answers clients until it is told to stop.
#ifndef AGENT_SERVING_H
#define AGENT_SERVING_H

#include "agent/auth/TlsIdentity.h"
#include "agent/control/ControlSocket.h"
#include "agent/listening.h"
#include "agent/log/XmlTrace.h"
#include "agent/run/InFlight.h"
#include "agent/run/Supervisor.h"
#include "agent/run/signals.h"
#include "agent/settings/Settings.h"

#include <string>

namespace cimd
{

// Everything that outlives a serving process, and how the one that reads this is told to behave.
struct Setting
{
    const Settings& settings;
    Sockets& sockets;
    const std::string urls; ///< of the sockets
    const TlsIdentity& tls;
    InFlight& inFlight;
    const Terminal& terminal;
    const ControlSocket* control; ///< null: none is wanted
    XmlTrace* trace;              ///< null: none is wanted
    Supervisor* supervisor;       ///< null: nobody watches
};

// What --list-providers asks for at the control socket.
constexpr const char* kListProviders = "list-providers";

// @return the exit status. Throws std::exception when it cannot begin. May end the process itself, with a
// status of its own, rather than return, when something hangs.
int serve(const Setting& setting);

} // namespace cimd

#endif
