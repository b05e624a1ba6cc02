// Drives the management interfaces of one provider through the test broker, as a CIM server would.
#ifndef TESTS_TOOLKIT_ADAPTER_TEST_CLIENT_H
#define TESTS_TOOLKIT_ADAPTER_TEST_CLIENT_H

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

// A path or an instance of a request, as a text.
struct Path
{
    Path(const char* path) : text(path) {}
    Path(const std::string& path) : text(path) {}
    std::string text;
};
struct Inst
{
    Inst(const char* inst) : text(inst) {}
    Inst(const std::string& inst) : text(inst) {}
    std::string text;
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
    typedef CMPIInstanceMIFT I;
    typedef CMPIAssociationMIFT A;

  public:
    // Creates all interfaces at once; those that could not be created are null.
    Client(Broker& broker, const Factories& factories) : _broker(broker)
    {
        create(factories.instance, instances);
        create(factories.method, methods);
        create(factories.association, associations);
        create(factories.indication, indications);
    }

    CMPIInstanceMI* instances = nullptr;
    CMPIMethodMI* methods = nullptr;
    CMPIAssociationMI* associations = nullptr;
    CMPIIndicationMI* indications = nullptr;

    Outcome enumerateInstances(const Path& p, const Properties& l = {})
    {
        return many(&I::enumerateInstances, p, l);
    }
    Outcome enumerateInstanceNames(const Path& p) { return many(&I::enumerateInstanceNames, p); }
    Outcome getInstance(const Path& p, const Properties& l = {}) { return one(&I::getInstance, p, l); }
    Outcome createInstance(const Path& p, const Inst& inst) { return one(&I::createInstance, p, inst); }
    Outcome modifyInstance(const Path& p, const Inst& inst, const Properties& l = {})
    {
        return many(&I::modifyInstance, p, inst, l);
    }
    Outcome deleteInstance(const Path& p) { return many(&I::deleteInstance, p); }
    Outcome invokeMethod(const Path& path, const char* method, const std::string& in = "")
    {
        std::string out;
        const auto invoke = [&](auto* c, auto* r)
        {
            auto* const arguments = make<CMPIArgs>(_broker.journal(), in);
            auto* const outputs = make<CMPIArgs>(_broker.journal(), "");
            const CMPIStatus status =
                methods->ft->invokeMethod(methods, c, r, pass(path), method, arguments, outputs);
            out = listOf(self(outputs).items);
            return status;
        };
        Outcome outcome = _broker.call(invoke, Broker::kOneResult);
        outcome.out = std::move(out);
        return outcome;
    }
    Outcome associators(const Path& p, const Filters& f = {}, const Properties& l = {})
    {
        return many(&A::associators, p, f.assocClass, f.resultClass, f.role, f.resultRole, l);
    }
    Outcome associatorNames(const Path& p, const Filters& f = {})
    {
        return many(&A::associatorNames, p, f.assocClass, f.resultClass, f.role, f.resultRole);
    }
    Outcome references(const Path& p, const Filters& f = {}, const Properties& l = {})
    {
        return many(&A::references, p, f.assocClass, f.role, l);
    }
    Outcome referenceNames(const Path& p, const Filters& f = {})
    {
        return many(&A::referenceNames, p, f.assocClass, f.role);
    }
    Outcome activateFilter(const Path& path) { return filter(&CMPIIndicationMIFT::activateFilter, path); }
    Outcome deactivateFilter(const Path& path) { return filter(&CMPIIndicationMIFT::deActivateFilter, path); }
    Outcome enableIndications() { return manage(indications, &CMPIIndicationMIFT::enableIndications); }
    Outcome disableIndications() { return manage(indications, &CMPIIndicationMIFT::disableIndications); }

    // Calls the cleanup of each interface; the first answer that is not OK, otherwise OK.
    Outcome cleanup(bool terminating = false)
    {
        Outcome worst;
        worst.rc = CMPI_RC_OK;
        const auto end = [&](auto* mi, auto function)
        {
            const Outcome outcome = mi ? manage(mi, function, terminating) : worst;
            if (worst.ok())
                worst = outcome;
        };
        end(instances, &CMPIInstanceMIFT::cleanup);
        end(associations, &CMPIAssociationMIFT::cleanup);
        end(methods, &CMPIMethodMIFT::cleanup);
        end(indications, &CMPIIndicationMIFT::cleanup);
        return worst;
    }

    // Calls a function that returns nothing but its status.
    template <class Mi, class Function, class... Args>
    Outcome manage(Mi* mi, Function function, Args... args)
    {
        return _broker.call([&](auto* c, auto*) { return (mi->ft->*function)(mi, c, args...); },
                            Broker::kWithoutResult);
    }

  private:
    template <class Mi>
    void create(Factory factory, Mi*& mi)
    {
        if (!factory)
            return;
        // As left behind by some other call: not all brokers clear it.
        CMPIStatus status = {CMPI_RC_ERROR, nullptr};
        const auto make = [&](const CMPIContext* context, auto*)
        {
            mi = static_cast<Mi*>(
                factory(const_cast<CMPIBroker*>(_broker.cmpi()), const_cast<CMPIContext*>(context), &status));
            return status;
        };
        _broker.call(make, Broker::kWithoutResult);
        if ((status.rc == CMPI_RC_OK) != (mi != nullptr))
            _broker.journal().violation("an interface was made or not against the status of its factory");
    }

    // Arguments as they are passed, objects made in the session of the call.
    const char* pass(const char* text) { return text; }
    CMPIObjectPath* pass(const Path& path) { return make<CMPIObjectPath>(_broker.journal(), path.text); }
    CMPIInstance* pass(const Inst& inst)
    {
        CMPIInstance* const made = make<CMPIInstance>(_broker.journal(), inst.text);
        _broker.fill(made);
        return made;
    }
    const char** pass(Properties& list)
    {
        if (!list)
            return nullptr;
        list->push_back(nullptr);
        return list->data();
    }

    template <class Table, class Function, class... Args>
    Outcome many(Function Table::*function, const Args&... args)
    {
        return run(function, Broker::kManyResults, args...);
    }
    template <class Table, class Function, class... Args>
    Outcome one(Function Table::*function, const Args&... args)
    {
        return run(function, Broker::kOneResult, args...);
    }
    template <class Table, class Function, class... Args>
    Outcome run(Function Table::*function, Broker::ResultRule rule, Args... args)
    {
        const auto call = [&](auto* mi)
        {
            return _broker.call(
                [&](auto* c, auto* r) { return (mi->ft->*function)(mi, c, r, pass(args)...); }, rule);
        };
        if constexpr (std::is_same_v<Table, A>)
            return call(associations);
        else
            return call(instances);
    }
    template <class Function>
    Outcome filter(Function function, const Path& path)
    {
        const auto call = [&](auto* c, auto*)
        { return (indications->ft->*function)(indications, c, nullptr, "", pass(path), 1); };
        return _broker.call(call, Broker::kWithoutResult);
    }

    Broker& _broker;
};

} // namespace test_broker

#endif
