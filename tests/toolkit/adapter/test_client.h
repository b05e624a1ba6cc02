// Drives the management interfaces of one provider through the test broker, as a CIM server would.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "test_broker.h"

namespace test_broker
{

// <name>_Create_<kind>MI of a provider library.
typedef void* (*Factory)(void* broker, void* context, void* status);

// Those that the provider has; the others stay null.
struct Factories
{
    Factory instance = nullptr;
    Factory method = nullptr;
    Factory association = nullptr;
    Factory indication = nullptr;
};

// A property list; none asks for all properties.
typedef std::optional<std::vector<const char*>> Properties;

// Filters of association requests; null filters nothing.
struct Filters
{
    const char* assocClass = nullptr; // the class of the reference in reference requests
    const char* resultClass = nullptr;
    const char* role = nullptr;
    const char* resultRole = nullptr;
};

class Client
{
  public:
    // Creates all interfaces at once; those that could not be created are null.
    Client(Broker& broker, const Factories& factories);

    CMPIInstanceMI* const& instances = _instance;
    CMPIMethodMI* const& methods = _method;
    CMPIAssociationMI* const& associations = _association;
    CMPIIndicationMI* const& indications = _indication;

    Outcome enumerateInstances(const Path& classPath, const Properties& properties = {});
    Outcome enumerateInstanceNames(const Path& classPath);
    Outcome getInstance(const Path& path, const Properties& properties = {});
    Outcome createInstance(const Path& classPath, const Inst& inst);
    Outcome modifyInstance(const Path& path, const Inst& inst, const Properties& properties = {});
    Outcome deleteInstance(const Path& path);
    Outcome execQuery(const Path& classPath, const char* query, const char* language);
    Outcome invokeMethod(const Path& path, const char* method, const std::vector<Named>& in = {});
    Outcome associators(const Path& path, const Filters& filters = {}, const Properties& properties = {});
    Outcome associatorNames(const Path& path, const Filters& filters = {});
    Outcome references(const Path& path, const Filters& filters = {}, const Properties& properties = {});
    Outcome referenceNames(const Path& path, const Filters& filters = {});
    Outcome activateFilter(const Path& classPath);
    Outcome deactivateFilter(const Path& classPath);
    Outcome enableIndications();
    Outcome disableIndications();

    // Calls the cleanup of each interface; the first answer that is not OK, otherwise OK.
    Outcome cleanup(bool terminating = false);

  private:
    template <class Mi>
    void create(Factory factory, Mi*& mi);
    template <class Mi, class Function, class... Args>
    Outcome run(Mi* mi, Function function, const Path& path, const Args&... args);
    template <class Function>
    Outcome filter(Function function, const Path& path);
    template <class Mi>
    void cleanup(Mi* mi, bool terminating, Outcome& worst);

    Broker& _broker;
    CMPIInstanceMI* _instance = nullptr;
    CMPIMethodMI* _method = nullptr;
    CMPIAssociationMI* _association = nullptr;
    CMPIIndicationMI* _indication = nullptr;
};

} // namespace test_broker
