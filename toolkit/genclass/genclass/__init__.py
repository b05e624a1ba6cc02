"""Generator of C++ class descriptions, registration files and the agent's class repository from MOF."""
