// What of a fabric is the configuration of its local switch: what an administrator sets and an image of the
// configuration holds. Hardware, identity, counters, logs and neighbours are not.
#ifndef SIMULATOR_MODEL_CONFIGURATION_H
#define SIMULATOR_MODEL_CONFIGURATION_H

#include "simulator/scenario/Scenario.h"

namespace simulator
{

// A scenario of the local switch alone, with its zoning, in which everything that is not configured has its
// default.
Scenario configurationOf(const Scenario& fabric);

// The fabric with the configuration of such an image. Ports that the image does not name stay as they are.
// Throws ScenarioError when the image is of another switch, or holds what this one cannot be configured to.
Scenario withConfiguration(Scenario fabric, const Scenario& image);

// Give a switch or port everything that is configured of another.
void configureAs(SwitchScenario& one, const SwitchScenario& model);
void configureAs(PortScenario& one, const PortScenario& model);

const SwitchScenario& localSwitchOf(const Scenario& fabric); // throws ScenarioError when there is none

} // namespace simulator

#endif
