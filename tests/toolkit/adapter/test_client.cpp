// Calls of management interfaces with arguments made of plain values.
#include "test_client.h"

namespace test_broker
{

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
