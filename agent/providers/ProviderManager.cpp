// Loading and finding providers.
#include "agent/providers/ProviderManager.h"

#include "agent/cim/CimName.h"
#include "agent/log/log.h"

#include <algorithm>
#include <exception>
#include <future>
#include <thread>

namespace cimd
{

namespace
{

// Turns indications on or off; false when the library does not export the switch, or fails.
bool turn(const ProviderLibrary& library, const char* name)
{
    const auto function = reinterpret_cast<int (*)()>(library.symbol(name));
    if (!function)
        return false;
    const int result = function();
    if (result != 0)
        log(LogLevel::Error,
            "providers",
            library.file() + ": " + name + " failed with " + std::to_string(result));
    else
        log(LogLevel::Debug, "providers", library.file() + ": " + name + " succeeded");
    return result == 0;
}

} // namespace

bool ProviderEntry::serves(const std::string& nameSpace) const
{
    const auto& served = registration.nameSpaces;
    return served.front() == "*" ||
           std::any_of(served.begin(),
                       served.end(),
                       [&](const std::string& name) { return equalNoCase(name, nameSpace); });
}

ProviderManager::ProviderManager(const Broker& broker,
                                 std::vector<Registration> registrations,
                                 const std::string& directory)
{
    for (Registration& registration : registrations)
    {
        const ClassInfo* info = broker.repository().find(registration.className);
        if (!info)
            throw RegistrationError(registration.place + ": class " + registration.className.str() +
                                    " is not in the class repository");
        Provider& served = provider(broker, directory, registration);
        addNameSpaces(registration);
        _entries.push_back({info, &served, std::move(registration), std::make_unique<CallCount>()});
    }
}

ProviderManager::~ProviderManager()
{
    cleanUp();
}

const ProviderLibrary& ProviderManager::library(const std::string& directory,
                                                const Registration& registration)
{
    const auto known =
        std::find_if(_libraries.begin(),
                     _libraries.end(),
                     [&](const NamedLibrary& l) { return l.location == registration.location; });
    if (known != _libraries.end())
        return *known->library;
    try
    {
        _libraries.push_back(
            {registration.location, std::make_unique<ProviderLibrary>(directory, registration.location)});
    }
    catch (const std::exception& error)
    {
        throw RegistrationError(registration.place + ": class " + registration.className.str() + ": " +
                                error.what());
    }
    return *_libraries.back().library;
}

Provider& ProviderManager::provider(const Broker& broker,
                                    const std::string& directory,
                                    const Registration& registration)
{
    const auto known = std::find_if(_providers.begin(),
                                    _providers.end(),
                                    [&](const NamedProvider& p) {
                                        return p.location == registration.location &&
                                               p.provider->name() == registration.provider;
                                    });
    if (known != _providers.end())
        return *known->provider;
    auto created = std::make_unique<Provider>(
        broker, library(directory, registration), registration.provider, registration.nameSpaces.front());
    _providers.push_back({registration.location, std::move(created)});
    return *_providers.back().provider;
}

void ProviderManager::addNameSpaces(const Registration& registration)
{
    for (const std::string& nameSpace : registration.nameSpaces)
    {
        const auto isSame = [&](const std::string& known) { return equalNoCase(known, nameSpace); };
        if (nameSpace != "*" && std::none_of(_nameSpaces.begin(), _nameSpaces.end(), isSame))
            _nameSpaces.push_back(nameSpace);
    }
}

const ProviderEntry*
ProviderManager::find(const ClassInfo& info, ProviderKind kind, const std::string& nameSpace) const
{
    const auto place = std::find_if(_entries.begin(),
                                    _entries.end(),
                                    [&](const ProviderEntry& entry) {
                                        return entry.info == &info && entry.registration.has(kind) &&
                                               entry.serves(nameSpace);
                                    });
    return place == _entries.end() ? nullptr : &*place;
}

std::vector<const ProviderEntry*>
ProviderManager::family(const ClassInfo& info, ProviderKind kind, const std::string& nameSpace) const
{
    std::vector<const ProviderEntry*> found;
    for (const ProviderEntry& entry : _entries)
        if (entry.registration.has(kind) && entry.serves(nameSpace) && entry.info->isA(info))
            found.push_back(&entry);
    return found;
}

void ProviderManager::followLogLevel() const
{
    for (const NamedLibrary& named : _libraries)
        named.library->connectLog();
}

void ProviderManager::startIndications()
{
    for (const NamedLibrary& named : _libraries)
        if (turn(*named.library, "vrax_start_indications"))
            _sending.push_back(named.library.get());
}

bool ProviderManager::stopIndications(std::chrono::milliseconds atMost)
{
    if (_sending.empty())
        return true;
    const std::vector<const ProviderLibrary*> sending(_sending.rbegin(), _sending.rend());
    _sending.clear();
    std::packaged_task<void()> stops(
        [sending]
        {
            for (const ProviderLibrary* library : sending)
                turn(*library, "vrax_stop_indications");
        });
    const std::future<void> stopped = stops.get_future();
    std::thread(std::move(stops)).detach(); // nobody can join what hangs
    return stopped.wait_for(atMost) == std::future_status::ready;
}

void ProviderManager::indicationCounters(const CounterSink& sink) const
{
    using Put = void (*)(void* context, const char* name, const char* label, unsigned long long value);
    using Tell = void (*)(Put put, void* context);
    struct Counter
    {
        std::string name;
        std::string label;
        std::uint64_t value;
    };
    // No exception may pass through the library: it comes after the call.
    struct Heard
    {
        std::vector<Counter> counters;
        std::exception_ptr problem;
    };
    const Put put = [](void* context, const char* name, const char* label, unsigned long long value)
    {
        Heard& heard = *static_cast<Heard*>(context);
        try
        {
            heard.counters.push_back({name, label, value});
        }
        catch (...)
        {
            heard.problem = std::current_exception();
        }
    };
    for (const NamedLibrary& named : _libraries)
    {
        Heard heard;
        if (const auto tell = reinterpret_cast<Tell>(named.library->symbol("vrax_indication_counters")))
            tell(put, &heard);
        if (heard.problem)
            std::rethrow_exception(heard.problem);
        for (const Counter& counter : heard.counters)
            sink(counter.name, counter.label, counter.value);
    }
}

void ProviderManager::cleanUp()
{
    for (const NamedProvider& named : _providers)
        named.provider->cleanUp();
}

} // namespace cimd
