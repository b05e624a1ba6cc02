// Calls of management interfaces with arguments made of plain values.
#include "test_client.h"

namespace test_broker
{

namespace
{

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

} // namespace

Client::Client(Broker& broker, const Factories& factories) : _broker(broker)
{
    create(factories.instance, _instance);
    create(factories.method, _method);
    create(factories.association, _association);
    create(factories.indication, _indication);
}

template <class Mi>
void Client::create(Factory factory, Mi*& mi)
{
    if (!factory)
        return;
    // As left behind by some other call: not all brokers clear it.
    CMPIStatus status = {CMPI_RC_ERROR, nullptr};
    _broker.call(
        [&](const CMPIContext* context, const CMPIResult*)
        {
            mi = static_cast<Mi*>(
                factory(const_cast<CMPIBroker*>(_broker.cmpi()), const_cast<CMPIContext*>(context), &status));
            return status;
        },
        Broker::kWithoutResult);
    if ((status.rc == CMPI_RC_OK) != (mi != nullptr))
        _broker.journal().violation("an interface was made or not against the status of its factory");
}

// Calls a function of an interface with a path made in the call's session.
template <class Mi, class Function, class... Args>
Outcome Client::run(Mi* mi, Function function, const Path& path, const Args&... args)
{
    return _broker.call(
        [&](auto* c, auto* r)
        { return (mi->ft->*function)(mi, c, r, make<CMPIObjectPath>(_broker.journal(), path), args...); });
}

Outcome Client::enumerateInstances(const Path& path, const Properties& list)
{
    return run(_instance, &CMPIInstanceMIFT::enumerateInstances, path, CList(list).get());
}

Outcome Client::enumerateInstanceNames(const Path& path)
{
    return run(_instance, &CMPIInstanceMIFT::enumerateInstanceNames, path);
}

Outcome Client::getInstance(const Path& path, const Properties& list)
{
    return run(_instance, &CMPIInstanceMIFT::getInstance, path, CList(list).get());
}

Outcome Client::createInstance(const Path& path, const Inst& inst)
{
    return run(_instance, &CMPIInstanceMIFT::createInstance, path, Argument{_broker, inst});
}

Outcome Client::modifyInstance(const Path& path, const Inst& inst, const Properties& list)
{
    return run(
        _instance, &CMPIInstanceMIFT::modifyInstance, path, Argument{_broker, inst}, CList(list).get());
}

Outcome Client::deleteInstance(const Path& path)
{
    return run(_instance, &CMPIInstanceMIFT::deleteInstance, path);
}

Outcome Client::execQuery(const Path& path, const char* query, const char* language)
{
    return run(_instance, &CMPIInstanceMIFT::execQuery, path, query, language);
}

Outcome Client::invokeMethod(const Path& path, const char* method, const std::vector<Named>& in)
{
    std::vector<Named> out;
    Outcome outcome = _broker.call(
        [&](auto* c, auto* r)
        {
            CMPIArgs* outArgs = make<CMPIArgs>(_broker.journal(), {});
            const CMPIStatus status = _method->ft->invokeMethod(_method,
                                                                c,
                                                                r,
                                                                make<CMPIObjectPath>(_broker.journal(), path),
                                                                method,
                                                                make<CMPIArgs>(_broker.journal(), in),
                                                                outArgs);
            out = contentOf(outArgs);
            return status;
        });
    outcome.out = std::move(out);
    return outcome;
}

Outcome Client::associators(const Path& path, const Filters& f, const Properties& list)
{
    return run(_association,
               &CMPIAssociationMIFT::associators,
               path,
               f.assocClass,
               f.resultClass,
               f.role,
               f.resultRole,
               CList(list).get());
}

Outcome Client::associatorNames(const Path& path, const Filters& f)
{
    return run(_association,
               &CMPIAssociationMIFT::associatorNames,
               path,
               f.assocClass,
               f.resultClass,
               f.role,
               f.resultRole);
}

Outcome Client::references(const Path& path, const Filters& f, const Properties& list)
{
    return run(_association, &CMPIAssociationMIFT::references, path, f.assocClass, f.role, CList(list).get());
}

Outcome Client::referenceNames(const Path& path, const Filters& f)
{
    return run(_association, &CMPIAssociationMIFT::referenceNames, path, f.assocClass, f.role);
}

template <class Function>
Outcome Client::filter(Function function, const Path& path)
{
    return _broker.call(
        [&](auto* c, auto*)
        {
            CMPIObjectPath* made = make<CMPIObjectPath>(_broker.journal(), path);
            return (_indication->ft->*function)(_indication, c, nullptr, path.className.c_str(), made, 1);
        },
        Broker::kWithoutResult);
}

Outcome Client::activateFilter(const Path& path)
{
    return filter(&CMPIIndicationMIFT::activateFilter, path);
}

Outcome Client::deactivateFilter(const Path& path)
{
    return filter(&CMPIIndicationMIFT::deActivateFilter, path);
}

Outcome Client::enableIndications()
{
    return _broker.call([&](auto* c, auto*) { return _indication->ft->enableIndications(_indication, c); },
                        Broker::kWithoutResult);
}

Outcome Client::disableIndications()
{
    return _broker.call([&](auto* c, auto*) { return _indication->ft->disableIndications(_indication, c); },
                        Broker::kWithoutResult);
}

template <class Mi>
void Client::cleanup(Mi* mi, bool terminating, Outcome& worst)
{
    if (!mi)
        return;
    const Outcome outcome = _broker.call([&](auto* c, auto*) { return mi->ft->cleanup(mi, c, terminating); },
                                         Broker::kWithoutResult);
    if (worst.ok())
        worst = outcome;
}

Outcome Client::cleanup(bool terminating)
{
    Outcome worst;
    worst.rc = CMPI_RC_OK;
    cleanup(_instance, terminating, worst);
    cleanup(_association, terminating, worst);
    cleanup(_method, terminating, worst);
    cleanup(_indication, terminating, worst);
    return worst;
}

} // namespace test_broker
