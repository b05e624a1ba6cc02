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

Outcome Client::enumerateInstances(const Path& classPath, const Properties& properties)
{
    CList list(properties);
    return _broker.call(
        [&](auto* c, auto* r)
        {
            return _instance->ft->enumerateInstances(
                _instance, c, r, newPath(_broker.journal(), classPath), list.get());
        });
}

Outcome Client::enumerateInstanceNames(const Path& classPath)
{
    return _broker.call(
        [&](auto* c, auto* r) {
            return _instance->ft->enumerateInstanceNames(
                _instance, c, r, newPath(_broker.journal(), classPath));
        });
}

Outcome Client::getInstance(const Path& path, const Properties& properties)
{
    CList list(properties);
    return _broker.call(
        [&](auto* c, auto* r) {
            return _instance->ft->getInstance(_instance, c, r, newPath(_broker.journal(), path), list.get());
        });
}

Outcome Client::createInstance(const Path& classPath, const Inst& inst)
{
    return _broker.call(
        [&](auto* c, auto* r)
        {
            return _instance->ft->createInstance(
                _instance, c, r, newPath(_broker.journal(), classPath), newInstance(_broker.journal(), inst));
        });
}

Outcome Client::modifyInstance(const Path& path, const Inst& inst, const Properties& properties)
{
    CList list(properties);
    return _broker.call(
        [&](auto* c, auto* r)
        {
            return _instance->ft->modifyInstance(_instance,
                                                 c,
                                                 r,
                                                 newPath(_broker.journal(), path),
                                                 newInstance(_broker.journal(), inst),
                                                 list.get());
        });
}

Outcome Client::deleteInstance(const Path& path)
{
    return _broker.call(
        [&](auto* c, auto* r)
        { return _instance->ft->deleteInstance(_instance, c, r, newPath(_broker.journal(), path)); });
}

Outcome Client::execQuery(const Path& classPath, const char* query, const char* language)
{
    return _broker.call(
        [&](auto* c, auto* r)
        {
            return _instance->ft->execQuery(
                _instance, c, r, newPath(_broker.journal(), classPath), query, language);
        });
}

Outcome Client::invokeMethod(const Path& path, const char* method, const std::vector<Named>& in)
{
    std::vector<Named> out;
    Outcome outcome = _broker.call(
        [&](auto* c, auto* r)
        {
            CMPIArgs* outArgs = newArgs(_broker.journal(), {});
            const CMPIStatus status = _method->ft->invokeMethod(_method,
                                                                c,
                                                                r,
                                                                newPath(_broker.journal(), path),
                                                                method,
                                                                newArgs(_broker.journal(), in),
                                                                outArgs);
            out = argsOf(outArgs);
            return status;
        });
    outcome.out = std::move(out);
    return outcome;
}

Outcome Client::associators(const Path& path, const Filters& filters, const Properties& properties)
{
    CList list(properties);
    return _broker.call(
        [&](auto* c, auto* r)
        {
            return _association->ft->associators(_association,
                                                 c,
                                                 r,
                                                 newPath(_broker.journal(), path),
                                                 filters.assocClass,
                                                 filters.resultClass,
                                                 filters.role,
                                                 filters.resultRole,
                                                 list.get());
        });
}

Outcome Client::associatorNames(const Path& path, const Filters& filters)
{
    return _broker.call(
        [&](auto* c, auto* r)
        {
            return _association->ft->associatorNames(_association,
                                                     c,
                                                     r,
                                                     newPath(_broker.journal(), path),
                                                     filters.assocClass,
                                                     filters.resultClass,
                                                     filters.role,
                                                     filters.resultRole);
        });
}

Outcome Client::references(const Path& path, const Filters& filters, const Properties& properties)
{
    CList list(properties);
    return _broker.call(
        [&](auto* c, auto* r)
        {
            return _association->ft->references(_association,
                                                c,
                                                r,
                                                newPath(_broker.journal(), path),
                                                filters.assocClass,
                                                filters.role,
                                                list.get());
        });
}

Outcome Client::referenceNames(const Path& path, const Filters& filters)
{
    return _broker.call(
        [&](auto* c, auto* r)
        {
            return _association->ft->referenceNames(
                _association, c, r, newPath(_broker.journal(), path), filters.assocClass, filters.role);
        });
}

Outcome Client::activateFilter(const Path& classPath)
{
    return _broker.call(
        [&](auto* c, auto*)
        {
            return _indication->ft->activateFilter(_indication,
                                                   c,
                                                   nullptr,
                                                   classPath.className.c_str(),
                                                   newPath(_broker.journal(), classPath),
                                                   1);
        },
        Broker::kWithoutResult);
}

Outcome Client::deactivateFilter(const Path& classPath)
{
    return _broker.call(
        [&](auto* c, auto*)
        {
            return _indication->ft->deActivateFilter(_indication,
                                                     c,
                                                     nullptr,
                                                     classPath.className.c_str(),
                                                     newPath(_broker.journal(), classPath),
                                                     1);
        },
        Broker::kWithoutResult);
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
