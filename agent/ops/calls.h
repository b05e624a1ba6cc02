// The operations: each reads its parameters, asks the service and writes what goes into the answer.
#ifndef AGENT_OPS_CALLS_H
#define AGENT_OPS_CALLS_H

#include "agent/ops/Call.h"

namespace cimd
{

// Each throws CimError when it fails; what it wrote until then is no answer.

void enumerateInstances(Call& call);
void enumerateInstanceNames(Call& call);
void getInstance(Call& call);
void createInstance(Call& call);
void modifyInstance(Call& call);
void deleteInstance(Call& call);
void associators(Call& call);
void associatorNames(Call& call);
void references(Call& call);
void referenceNames(Call& call);
void getClass(Call& call);
void enumerateClasses(Call& call);
void enumerateClassNames(Call& call);
void getQualifier(Call& call);
void enumerateQualifiers(Call& call);
void getProperty(Call& call);
void setProperty(Call& call);
void openEnumerateInstances(Call& call);
void openEnumerateInstancePaths(Call& call);
void openAssociatorInstances(Call& call);
void openAssociatorInstancePaths(Call& call);
void openReferenceInstances(Call& call);
void openReferenceInstancePaths(Call& call);
void pullInstancesWithPath(Call& call);
void pullInstances(Call& call);
void pullInstancePaths(Call& call);
void closeEnumeration(Call& call);
void invokeMethod(Call& call);

} // namespace cimd

#endif
