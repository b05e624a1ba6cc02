// The operations: each reads its parameters, asks the service and writes what goes into the answer.
#ifndef AGENT_OPS_CALLS_H
#define AGENT_OPS_CALLS_H

#include "agent/ops/Call.h"

#include <initializer_list>
#include <string_view>

namespace cimd
{

struct Operation
{
    std::string_view name;
    void (*run)(Call& call); ///< throws CimError when it fails; what it wrote until then is no answer
    bool returnsValue;       ///< IRETURNVALUE in the answer
    bool changes = false;    ///< is audited
};

// The intrinsic operations, each list behind its functions in the file of its name. A new operation is a
// function and a row there, and a function of CimService if none has its results yet.
using OperationList = std::initializer_list<Operation>;
extern const OperationList kInstanceCalls;
extern const OperationList kAssociationCalls;
extern const OperationList kClassCalls;
extern const OperationList kPropertyCalls;
extern const OperationList kPullCalls;

extern const Operation kInvokeMethod; // of every extrinsic method

} // namespace cimd

#endif
