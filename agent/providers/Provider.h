// A provider: its management interfaces, created when first needed.
#ifndef AGENT_PROVIDERS_PROVIDER_H
#define AGENT_PROVIDERS_PROVIDER_H

#include "agent/broker/Broker.h"
#include "agent/providers/ProviderLibrary.h"

#include <atomic>
#include <cmpift.h>
#include <memory>
#include <mutex>
#include <string>

namespace cimd
{

// One interface of a provider; the library owns the object. Creation is tried again by the next request if it
// fails.
template <class Interface>
class InterfaceSlot
{
  public:
    Interface* get() const { return _created.load(std::memory_order_acquire); }

    template <class Create>
    Interface* getOrCreate(Create create)
    {
        if (Interface* existing = get())
            return existing;
        const std::lock_guard lock(_mutex);
        if (!get())
            _created.store(create(), std::memory_order_release);
        return get();
    }

    // Gives the interface up, for cleanup.
    Interface* take() { return _created.exchange(nullptr); }

  private:
    std::atomic<Interface*> _created{nullptr};
    std::mutex _mutex;
};

// Safe to use from several threads, cleanup apart.
class Provider
{
  public:
    Provider(const Broker& broker, const ProviderLibrary& library, std::string name, std::string nameSpace);

    const std::string& name() const { return _name; }
    const ProviderLibrary& library() const { return _library; }
    // "not loaded" until the first interface is created, then "loaded", or "failed: " and why the latest
    // could not be.
    std::string state() const;

    // CimError (failed) with the library's reason if the interface cannot be had.
    CMPIInstanceMI* instance();
    CMPIAssociationMI* association();
    CMPIMethodMI* method();

    // Ends all interfaces that were created. No call may be in progress.
    void cleanUp();

    // True for the first fault only, so that a fault of every call does not flood the log.
    bool isFirstFault() { return !_hadFault.exchange(true); }

  private:
    template <class Interface>
    Interface* create(const char* kind);
    template <class Interface>
    Interface* createWatched(const char* kind);
    template <class Interface>
    void cleanUp(InterfaceSlot<Interface>& slot, const char* kind);

    const Broker& _broker;
    const ProviderLibrary& _library;
    std::string _name;
    std::string _nameSpace;
    InterfaceSlot<CMPIInstanceMI> _instance;
    InterfaceSlot<CMPIAssociationMI> _association;
    InterfaceSlot<CMPIMethodMI> _method;
    std::atomic<bool> _hadFault{false};
    mutable std::mutex _stateMutex;
    std::string _state = "not loaded";
};

} // namespace cimd

#endif
