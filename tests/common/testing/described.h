// An instance as a table of texts, for comparing it whole.
#ifndef TESTS_COMMON_TESTING_DESCRIBED_H
#define TESTS_COMMON_TESTING_DESCRIBED_H

#include <map>
#include <string>

namespace cimple
{
struct Instance;
}

// Name and value of every property that is not null: numbers in decimal, booleans as "true" or "false",
// arrays as "[a, b]", references as "-> Class". A property that should be null and is not shows as a row too
// many.
std::map<std::string, std::string> described(const cimple::Instance& instance);

#endif
