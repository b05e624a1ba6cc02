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

// A property list as C code expects it.
class CList
{
  public:
    explicit CList(const Properties& properties) : _all(!properties)
    {
        if (properties)
            _names = *properties;
        _names.push_back(nullptr);
    }
    const char** get() { return _all ? nullptr : _names.data(); }

  private:
    bool _all;
    std::vector<const char*> _names;
};

// An instance that is made when the interface is called, in the session of the call.
struct Argument
{
    Broker& broker;
    const Inst& inst;

    operator const CMPIInstance*() const { return make<CMPIInstance>(broker.journal(), inst); }
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

    Outcome enumerateInstances(const Path& classPath, const Properties& list = {})
    {
        return run(_instance, &CMPIInstanceMIFT::enumerateInstances, classPath, CList(list).get());
    }
    Outcome enumerateInstanceNames(const Path& classPath)
    {
        return run(_instance, &CMPIInstanceMIFT::enumerateInstanceNames, classPath);
    }
    Outcome getInstance(const Path& path, const Properties& list = {})
    {
        return run(_instance, &CMPIInstanceMIFT::getInstance, path, CList(list).get());
    }
    Outcome createInstance(const Path& classPath, const Inst& inst)
    {
        return run(_instance, &CMPIInstanceMIFT::createInstance, classPath, Argument{_broker, inst});
    }
    Outcome modifyInstance(const Path& path, const Inst& inst, const Properties& list = {})
    {
        const Argument argument = {_broker, inst};
        return run(_instance, &CMPIInstanceMIFT::modifyInstance, path, argument, CList(list).get());
    }
    Outcome deleteInstance(const Path& path)
    {
        return run(_instance, &CMPIInstanceMIFT::deleteInstance, path);
    }
    Outcome execQuery(const Path& classPath, const char* query, const char* language)
    {
        return run(_instance, &CMPIInstanceMIFT::execQuery, classPath, query, language);
    }
    Outcome invokeMethod(const Path& path, const char* method, const std::vector<Named>& in = {});
    Outcome associators(const Path& path, const Filters& f = {}, const Properties& list = {});
    Outcome associatorNames(const Path& path, const Filters& f = {});
    Outcome references(const Path& path, const Filters& f = {}, const Properties& list = {})
    {
        const auto function = &CMPIAssociationMIFT::references;
        return run(_association, function, path, f.assocClass, f.role, CList(list).get());
    }
    Outcome referenceNames(const Path& path, const Filters& f = {})
    {
        return run(_association, &CMPIAssociationMIFT::referenceNames, path, f.assocClass, f.role);
    }
    Outcome activateFilter(const Path& path) { return filter(&CMPIIndicationMIFT::activateFilter, path); }
    Outcome deactivateFilter(const Path& path) { return filter(&CMPIIndicationMIFT::deActivateFilter, path); }
    Outcome enableIndications() { return switchTo(&CMPIIndicationMIFT::enableIndications); }
    Outcome disableIndications() { return switchTo(&CMPIIndicationMIFT::disableIndications); }

    // Calls the cleanup of each interface; the first answer that is not OK, otherwise OK.
    Outcome cleanup(bool terminating = false);

  private:
    template <class Mi>
    void create(Factory factory, Mi*& mi);
    // Calls a function of an interface with a path made in the call's session.
    template <class Mi, class Function, class... Args>
    Outcome run(Mi* mi, Function function, const Path& path, const Args&... args)
    {
        return _broker.call(
            [&](auto* c, auto* r) {
                return (mi->ft->*function)(mi, c, r, make<CMPIObjectPath>(_broker.journal(), path), args...);
            });
    }
    template <class Function>
    Outcome filter(Function function, const Path& path)
    {
        return _broker.call(
            [&](auto* c, auto*)
            {
                CMPIObjectPath* made = make<CMPIObjectPath>(_broker.journal(), path);
                return (_indication->ft->*function)(_indication, c, nullptr, path.className.c_str(), made, 1);
            },
            Broker::kWithoutResult);
    }
    template <class Function>
    Outcome switchTo(Function function)
    {
        return _broker.call([&](auto* c, auto*) { return (_indication->ft->*function)(_indication, c); },
                            Broker::kWithoutResult);
    }
    template <class Mi>
    void cleanup(Mi* mi, bool terminating, Outcome& worst);

    Broker& _broker;
    CMPIInstanceMI* _instance = nullptr;
    CMPIMethodMI* _method = nullptr;
    CMPIAssociationMI* _association = nullptr;
    CMPIIndicationMI* _indication = nullptr;
};

} // namespace test_broker
