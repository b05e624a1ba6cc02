// Telling the system's service manager how cimd is doing.
#ifndef AGENT_RUN_READINESS_H
#define AGENT_RUN_READINESS_H

#include <string>

namespace cimd
{

// As sd_notify(3) describes: a message to the socket that NOTIFY_SOCKET names, nothing if it names none. The
// process that was started has to say it, for a service manager listens to no other.

// Clients can be served, after a start or after a reload. `status` is a line for people.
void tellReady(const std::string& status);
void tellReloading();
void tellStopping();

} // namespace cimd

#endif
