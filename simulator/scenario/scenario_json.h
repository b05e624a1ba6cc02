// Scenarios as JSON texts and files.
#ifndef SIMULATOR_SCENARIO_SCENARIO_JSON_H
#define SIMULATOR_SCENARIO_SCENARIO_JSON_H

#include "simulator/scenario/Scenario.h"

#include <string>
#include <string_view>

namespace simulator
{

// Parses and validates. `source` (a file name) begins every message: "site.json: /switches/0/domain: expected
// ...", or "site.json:12:7: ..." when the text is not JSON. Throws ScenarioError.
Scenario parseScenario(std::string_view text, const std::string& source);

// The same from a file. Throws ScenarioError, also when the file cannot be read.
Scenario readScenario(const std::string& path);

// A text that parseScenario reads back to the same scenario.
std::string formatScenario(const Scenario& scenario);

// Writes the scenario so that the file is, at any moment and after a power loss, either the old one or the
// new one whole. Throws ScenarioError and leaves the old file.
void writeScenario(const Scenario& scenario, const std::string& path);

} // namespace simulator

#endif
