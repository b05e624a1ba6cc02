// The line that says who changed what, or tried to.
#ifndef AGENT_OPS_AUDIT_H
#define AGENT_OPS_AUDIT_H

#include "agent/cim/ObjectPath.h"
#include "agent/requests/requests.h"

#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

// What an operation is about to change. Values are left out on purpose: any of them may be a secret.
struct Change
{
    std::string object;         ///< path or class; empty if the request did not say it properly
    std::string method;         ///< of an extrinsic call
    std::vector<CimName> names; ///< of the properties or the parameters that were sent
    std::string returned;       ///< what a method returned, where that is a number
};

// Writes, whatever the log level, `user="admin" from=192.0.2.7:49152 operation=ModifyInstance result=ok
// object="..." properties=Name,Speed`. In quoted texts quotation marks and backslashes have a backslash
// before them and everything but printable ASCII is written as "\xNN", so that no client can forge a line or
// part of one; long texts are cut.
// @param result  "ok", the name of a CIM status, or "unfinished" for an operation that is late.
void audit(const RequestContext& context,
           std::string_view operation,
           const Change& change,
           std::string_view result);

} // namespace cimd

#endif
