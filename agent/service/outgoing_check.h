// What must hold for every instance and path that leaves the service, whoever made it.
#ifndef AGENT_SERVICE_OUTGOING_CHECK_H
#define AGENT_SERVICE_OUTGOING_CHECK_H

#include "agent/cim/Instance.h"
#include "agent/cim/ObjectPath.h"
#include "agent/repository/ClassInfo.h"

namespace cimd
{

// CimError (failed), naming class and property, unless
//   - names of class, keys and properties are spelled as declared, host is empty and the namespace is not;
//   - the path has exactly the keys of the class, with their declared types;
//   - properties are declared, in class order, each once and of the declared type;
//   - a key property holds what the path says.
// A selection of the properties is all right. What comes from providers is completed on its way in, so a
// failure is this program's own: only debug builds look, at the one place that all results pass.
void checkOutgoing(const Instance& instance, const ClassInfo& info);
void checkOutgoing(const ObjectPath& path, const ClassInfo& info);

#ifdef NDEBUG
constexpr bool kChecksOutgoing = false;
#else
constexpr bool kChecksOutgoing = true;
#endif

} // namespace cimd

#endif
