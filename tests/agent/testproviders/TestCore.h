// The agent's core with the test providers, and requests in short form.
#ifndef TESTS_AGENT_TESTPROVIDERS_TESTCORE_H
#define TESTS_AGENT_TESTPROVIDERS_TESTCORE_H

#include "agent/service/AgentCore.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cimd::test
{

inline const std::string kNameSpace = "root/test";

std::string repositoryFile();
std::string providerDirectory();

// One core with freshly seeded providers. There may be one at a time: the providers' data is the library's.
class TestCore
{
  public:
    TestCore();

    CimService& service() { return _core.service(); }
    const ClassRepository& repository() const { return _core.repository(); }

    // Names of the instances of a class, "Class:Name", in order of arrival.
    std::vector<std::string> names(const std::string& className);

    RequestContext context{"alice", "192.0.2.1:40000", "en"};

  private:
    AgentCore _core;
};

// The path of an instance with the key Name.
ObjectPath named(const std::string& className, const std::string& name, const char* key = "Name");

// "Class:Name" of a path of such an instance.
std::string label(const ObjectPath& path);

// "4 text" of the CimError that an action ends with; "OK" without one.
std::string outcome(const std::function<void()>& action);

} // namespace cimd::test

#endif
