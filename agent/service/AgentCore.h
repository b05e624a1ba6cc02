// The agent without its wire side: repository, broker, providers and the service over them.
#ifndef AGENT_SERVICE_AGENTCORE_H
#define AGENT_SERVICE_AGENTCORE_H

#include "agent/providers/ProviderManager.h"
#include "agent/repository/ClassRepository.h"
#include "agent/service/ServiceBroker.h"

#include <string>

namespace cimd
{

// The last operation must have ended when this object does; providers are cleaned up then.
class AgentCore
{
  public:
    // RepositoryError or RegistrationError, naming file, line and reason, if the agent cannot start.
    AgentCore(const std::string& repositoryFile,
              const std::string& registrationFile,
              const std::string& providerDirectory)
        : AgentCore(
              ClassRepository::load(repositoryFile), loadRegistrations(registrationFile), providerDirectory)
    {
    }

    AgentCore(ClassRepository repository,
              std::vector<Registration> registrations,
              const std::string& providerDirectory)
        : _repository(std::move(repository)), _broker(_repository),
          _providers(_broker, std::move(registrations), providerDirectory),
          _service(_repository, _broker, _providers)
    {
        _broker.connect(_service);
    }

    AgentCore(const AgentCore&) = delete;
    AgentCore& operator=(const AgentCore&) = delete;

    // Safe to use from any number of threads.
    const CimService& service() const { return _service; }

    const ClassRepository& repository() const { return _repository; }
    Broker& broker() { return _broker; }
    ProviderManager& providers() { return _providers; }

  private:
    const ClassRepository _repository;
    ServiceBroker _broker;
    ProviderManager _providers;
    CimService _service;
};

} // namespace cimd

#endif
