// Entry points of scripted providers, and what requests and answers are made of.
#ifndef TESTS_TOOLKIT_ADAPTER_TEST_PROVIDERS_H
#define TESTS_TOOLKIT_ADAPTER_TEST_PROVIDERS_H

#include <Scripted.h>

#include "test_client.h"

namespace adapter_test
{

using namespace demo;
using cimple::Instance;
using cimple::Ref;

// The entry points of a provider.
extern const test_broker::Factories rackProvider;
extern const test_broker::Factories elementProvider;
extern const test_broker::Factories sensorProvider;
extern const test_broker::Factories everythingProvider;
extern const test_broker::Factories labProvider;
extern const test_broker::Factories sensorInRackProvider;
extern const test_broker::Factories rackAboveRackProvider;
extern const test_broker::Factories dependencyProvider;
extern const test_broker::Factories alertProvider;

// A demo class as a server with a newer schema has it: every scalar with a default, and properties more.
std::vector<test_broker::Named> schemaOf(const std::string& className);

} // namespace adapter_test

#endif
