// Two builds measured in one run, so that what else the machine does disturbs both alike.
#ifndef TESTS_BENCH_AGENT_AGAINST_H
#define TESTS_BENCH_AGENT_AGAINST_H

#include <string>
#include <vector>

namespace bench
{

// Prints the processor time of both agents for each instance of large answers.
// @param arguments  Of both, with the scenario of a large fabric.
void benchAgainst(const std::string& program,
                  const std::string& otherProgram,
                  const std::vector<std::string>& arguments);

} // namespace bench

#endif
