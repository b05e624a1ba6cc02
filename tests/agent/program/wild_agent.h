// cimd on the test providers, and requests to it.
#ifndef TESTS_AGENT_PROGRAM_WILD_AGENT_H
#define TESTS_AGENT_PROGRAM_WILD_AGENT_H

#include "tests/agent/http/RawClient.h"

#include <cstdint>
#include <string>
#include <vector>

namespace cimd::test
{

// Options that start it; `more` come later and win.
std::vector<std::string> words(const std::vector<std::string>& more = {});

// A request for the instance of a class with the key Mode.
std::string getInstance(const std::string& className, const std::string& mode);

// Sets how many instances of Test_Wild an enumeration has.
std::string setCount(std::size_t count);
std::string enumerateInstances();

// What a new connection is answered.
std::string ask(std::uint16_t port, const std::string& mode, const std::string& className = "Test_Wild");

bool isInstance(const std::string& answer);

// A request that is still being answered when this returns.
RawClient askAndLeaveWaiting(std::uint16_t port);

} // namespace cimd::test

#endif
