// Makes scenarios of any size.
#ifndef SIMULATOR_GENERATOR_GENERATE_H
#define SIMULATOR_GENERATOR_GENERATE_H

#include "simulator/scenario/Scenario.h"

namespace simulator
{

struct FabricSize
{
    int domains = 3;     // 1 to kMaxDomainId
    int localPorts = 24; // 1 to kMaxLocalPorts
    int nodes = 20;      // 0 to kMaxNodes, spread evenly over the switches
    int seed = 1;
};

// A fabric of that size: domain 1 is the local switch and the principal, the switches form a binary tree, the
// ports that are left hold the nodes, a third of them hosts. The same size and seed give the same fabric on
// every machine. Throws ScenarioError for a size outside the limits or too many nodes for the ports.
Scenario generateFabric(const FabricSize& size);

} // namespace simulator

#endif
