// The CMPI broker: what provider libraries see of the agent.
#ifndef AGENT_BROKER_BROKER_H
#define AGENT_BROKER_BROKER_H

#include "agent/broker/objects.h"
#include "agent/repository/ClassRepository.h"

#include <cmpift.h>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace cimd
{

// One broker serves all libraries and threads. It must outlive every provider's cleanup.
class Broker
{
  public:
    // @param upCalls  What providers may ask of the server.
    Broker(const ClassRepository& repository, const CMPIBrokerFT& upCalls);
    Broker(const Broker&) = delete;
    Broker& operator=(const Broker&) = delete;

    const CMPIBroker* handle() const { return &_handle; }
    const ClassRepository& repository() const { return _repository; }

    // Threads that providers start. A prepared context belongs to the broker until its thread detaches.
    CMPIContext* prepareThread(const ContextObject& context);
    void attachThread(const CMPIContext* context);
    void detachThread(const CMPIContext* context);

    static Broker& of(const CMPIBroker* handle);

  private:
    struct Thread
    {
        std::unique_ptr<ContextObject> context;
        std::unique_ptr<CallScope> scope; // null until the thread attached
    };

    const ClassRepository& _repository;
    CMPIBroker _handle;
    std::mutex _mutex; // guards _threads
    std::unordered_map<const CMPIContext*, Thread> _threads;
};

} // namespace cimd

#endif
