// The broker whose providers may make requests of their own.
#ifndef AGENT_SERVICE_SERVICEBROKER_H
#define AGENT_SERVICE_SERVICEBROKER_H

#include "agent/service/CimService.h"

namespace cimd
{

class ServiceBroker : public Broker
{
  public:
    explicit ServiceBroker(const ClassRepository& repository);

    // Who answers the providers' requests; not supported before it is set. Set it before providers run.
    void connect(const CimService& service) { _service = &service; }
    const CimService& service() const;

    static const ServiceBroker& of(const CMPIBroker* handle);

  private:
    const CimService* _service = nullptr;
};

} // namespace cimd

#endif
