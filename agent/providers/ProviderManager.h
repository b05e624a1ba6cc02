// All registered providers, found by class.
#ifndef AGENT_PROVIDERS_PROVIDERMANAGER_H
#define AGENT_PROVIDERS_PROVIDERMANAGER_H

#include "agent/broker/Broker.h"
#include "agent/providers/CallCount.h"
#include "agent/providers/Provider.h"
#include "agent/providers/Registration.h"
#include "agent/repository/ClassRepository.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace cimd
{

// One class served by one provider.
struct ProviderEntry
{
    const ClassInfo* info;
    Provider* provider;
    Registration registration;
    std::unique_ptr<CallCount> calls; ///< Never null.

    bool serves(const std::string& nameSpace) const;
};

class ProviderManager
{
  public:
    // Loads the libraries of all entries from `directory`; providers are created when first needed.
    // RegistrationError naming the entry if its class is not in the repository or its library cannot be
    // loaded.
    ProviderManager(const Broker& broker,
                    std::vector<Registration> registrations,
                    const std::string& directory);
    // Calls cleanUp.
    ~ProviderManager();
    ProviderManager(const ProviderManager&) = delete;
    ProviderManager& operator=(const ProviderManager&) = delete;

    // In order of registration.
    const std::vector<ProviderEntry>& entries() const { return _entries; }
    // The entry of exactly this class; null if there is none.
    const ProviderEntry* find(const ClassInfo& info, ProviderKind kind, const std::string& nameSpace) const;
    // The entries of this class and its subclasses, in order of registration.
    std::vector<const ProviderEntry*>
    family(const ClassInfo& info, ProviderKind kind, const std::string& nameSpace) const;

    // Every namespace an entry serves, in order of registration.
    const std::vector<std::string>& nameSpaces() const { return _nameSpaces; }

    // Has the libraries log from the agent's present level up.
    void followLogLevel() const;

    // Lets the libraries send indications: calls, in each that exports it,
    //     extern "C" int vrax_start_indications(void);
    // A library that returns other than 0 has started nothing, which is logged.
    void startIndications();
    // Calls the reverse in those that started, the last one first:
    //     extern "C" int vrax_stop_indications(void);
    // False when they do not come back in time; they are then still running.
    bool stopIndications(std::chrono::milliseconds atMost);

    // Gets a counter of a library: what it counts, and of which kind ("" if there is one only).
    using CounterSink =
        std::function<void(const std::string& name, const std::string& label, std::uint64_t value)>;
    // What the libraries count of the indications that they send. Calls, in each that exports it,
    //     extern "C" void vrax_indication_counters(
    //         void (*sink)(void* context, const char* name, const char* label, unsigned long long value),
    //         void* context);
    void indicationCounters(const CounterSink& sink) const;

    // Ends all providers. No operation may be in progress, and none may follow.
    void cleanUp();

  private:
    const ProviderLibrary& library(const std::string& directory, const Registration& registration);
    Provider& provider(const Broker& broker, const std::string& directory, const Registration& registration);
    void addNameSpaces(const Registration& registration);

    struct NamedLibrary
    {
        std::string location;
        std::unique_ptr<ProviderLibrary> library;
    };

    struct NamedProvider
    {
        std::string location;
        std::unique_ptr<Provider> provider;
    };

    std::vector<NamedLibrary> _libraries;
    std::vector<NamedProvider> _providers;
    std::vector<ProviderEntry> _entries;
    std::vector<std::string> _nameSpaces;
    std::vector<const ProviderLibrary*> _sending; // have started indications
};

} // namespace cimd

#endif
