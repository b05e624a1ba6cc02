// The agent's core with the built module: a client's view of it, without XML.
#ifndef TESTS_MODULE_MODULE_TEST_AGENT_H
#define TESTS_MODULE_MODULE_TEST_AGENT_H

#include "agent/service/AgentCore.h"

#include <string>
#include <utility>
#include <vector>

// The next one starts with empty maps. It must not outlive the simulated switch.
class Module_Agent
{
  public:
    Module_Agent()
        : _core(std::string(VRAX_BUILD_DIR) + "/share/cimd/repository.xml",
                std::string(VRAX_BUILD_DIR) + "/share/cimd/providers.reg",
                std::string(VRAX_BUILD_DIR) + "/lib")
    {
    }
    ~Module_Agent()
    {
        // A map that was only loaded as the end of an association belongs to no provider yet, and only
        // providers are unloaded.
        for (const cimd::ProviderEntry& entry : _core.providers().entries())
            entry.provider->instance();
    }
    Module_Agent(const Module_Agent&) = delete;
    Module_Agent& operator=(const Module_Agent&) = delete;

    std::vector<cimd::Instance> enumerate(const char* className)
    {
        cimd::EnumerateInstancesRequest request;
        request.nameSpace = kNameSpace;
        request.className = cimd::CimName(className);
        cimd::Collector<cimd::Instance> found;
        _core.service().enumerateInstances(_client, request, found);
        return std::move(found.items);
    }

    cimd::Instance get(const cimd::ObjectPath& path)
    {
        cimd::GetInstanceRequest request;
        request.nameSpace = kNameSpace;
        request.path = path;
        return _core.service().getInstance(_client, request);
    }

    // The return value of RequestStateChange.
    cimd::CimValue requestState(const cimd::ObjectPath& path, std::uint16_t state)
    {
        cimd::InvokeMethodRequest request;
        request.nameSpace = kNameSpace;
        request.path = path;
        request.method = cimd::CimName("RequestStateChange");
        request.arguments.push_back({cimd::CimName("RequestedState"), cimd::CimValue::uint16(state)});
        return _core.service().invokeMethod(_client, request).returnValue;
    }

  private:
    static constexpr char kNameSpace[] = "root/interop";

    cimd::AgentCore _core;
    const cimd::RequestContext _client;
};

#endif
