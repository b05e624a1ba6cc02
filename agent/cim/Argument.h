// A value under a name: an argument of a method, or the new value of a property.
#ifndef AGENT_CIM_ARGUMENT_H
#define AGENT_CIM_ARGUMENT_H

#include "agent/cim/CimName.h"
#include "agent/cim/CimValue.h"

namespace cimd
{

struct Argument
{
    CimName name;
    CimValue value;
    // False if the client did not say the type (no PARAMTYPE): the value is then a string, an array of
    // strings or NULL, and the service reads it as the type the parameter is declared with.
    bool typed = true;
};

} // namespace cimd

#endif
