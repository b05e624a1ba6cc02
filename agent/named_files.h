// The files that options name, read at start and checked without one.
#ifndef AGENT_NAMED_FILES_H
#define AGENT_NAMED_FILES_H

#include "agent/auth/TlsIdentity.h"
#include "agent/settings/Settings.h"
#include "agent/settings/StartError.h"

#include <exception>
#include <string>

namespace cimd
{

// Runs a step of the start and puts the option that is to blame before its complaint.
template <class Step>
auto starting(const Settings& settings, const char* option, Step step)
{
    try
    {
        return step();
    }
    catch (const StartError&)
    {
        throw;
    }
    catch (const std::exception& error)
    {
        throw StartError(settings.place(option) + ": " + error.what());
    }
}

// Certificate and key; both empty if the options name none. Throws StartError.
TlsIdentity readTlsIdentity(const Settings& settings);

// Throws StartError if other machines can reach the address, which this option has, and it was not said who
// may use cimd.
void checkUsersAreKnown(const Settings& settings, const char* option, const std::string& address);

// Reads each file of the agent that an option names, and tries the address; writes nothing and loads no
// library, so that of what the switch and providers read it only looks whether it is there. Sockets are left
// out: the service manager may make their directory when cimd starts. Throws StartError with everything that
// is wrong.
void checkNamedFiles(const Settings& settings);

} // namespace cimd

#endif
