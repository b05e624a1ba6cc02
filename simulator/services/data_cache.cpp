// The data cache: views of the model that never dangle, because they hold a domain number and no pointer.
#include "platform/data_cache.h"

#include "simulator/engine/Engine.h"
#include "simulator/model/hex.h"
#include "simulator/services/session.h"

#include <array>
#include <cerrno>

namespace simulator
{
namespace
{

Engine& engine()
{
    return Engine::instance();
}

// Answers a cache call from the model; with the default value when a test makes the call fail.
template <class Result, class Read> // Result(const FabricModel&)
Result answer(Call call, Read read)
{
    if (beginCall(call) != XPL_OK)
        return Result();
    return engine().read([&read](const FabricModel& model, std::uint64_t) -> Result { return read(model); });
}

class SwitchView final : public SwitchCache
{
  public:
    void setDomain(int domain) { _domain = domain; }
    int domain() const { return _domain; }

    Wwn getWwn() const override
    {
        return answer<Wwn>(Call::getWwn,
                           [this](const FabricModel& model)
                           {
                               const Switch* found = model.switchOf(_domain);
                               return found != nullptr ? Wwn(found->facts.wwn) : Wwn();
                           });
    }

    int getDomainID() const override
    {
        beginCall(Call::getDomainId);
        return _domain;
    }

    bool isLocal() const override
    {
        return answer<bool>(Call::isLocal,
                            [this](const FabricModel& model)
                            { return model.local().facts.domain == _domain; });
    }

    PortCache getFirstPort() const override { return portAt(Call::getFirstPort, 0); }

    PortCache getNextPort(const PortCache& previous) const override
    {
        return portAt(Call::getNextPort, previous.isNull() ? -1 : previous.getEntryNumber() + 1);
    }

  private:
    // The entry number of a port is its place among the switch's ports.
    PortCache portAt(Call call, int entry) const
    {
        return answer<PortCache>(
            call,
            [this, entry](const FabricModel& model)
            {
                const Switch* found = model.switchOf(_domain);
                const bool exists =
                    found != nullptr && entry >= 0 && static_cast<std::size_t>(entry) < found->ports.size();
                return exists ? PortCache(entry, Wwn(found->ports[static_cast<std::size_t>(entry)].facts.wwn))
                              : PortCache();
            });
    }

    int _domain = 0;
};

class FabricView final : public FabricCache
{
  public:
    FabricView()
    {
        for (std::size_t i = 0; i < _switches.size(); ++i)
            _switches[i].setDomain(static_cast<int>(i));
    }

    Wwn getFabricWwn() const override
    {
        return answer<Wwn>(Call::getFabricWwn,
                           [](const FabricModel& model)
                           {
                               const Switch* principal = model.principal();
                               return principal != nullptr ? Wwn(principal->facts.wwn) : Wwn();
                           });
    }

    SwitchCache* getFirstSwitch() const override { return switchAfter(Call::getFirstSwitch, 0); }

    SwitchCache* getNextSwitch(const SwitchCache* previous) const override
    {
        const auto* view = static_cast<const SwitchView*>(previous);
        return view != nullptr ? switchAfter(Call::getNextSwitch, view->domain()) : nullptr;
    }

  private:
    SwitchCache* switchAfter(Call call, int domain) const
    {
        return answer<SwitchCache*>(call,
                                    [this, domain](const FabricModel& model) -> SwitchCache*
                                    {
                                        const auto next = model.switches().upper_bound(domain);
                                        return next != model.switches().end()
                                                   ? &_switches[static_cast<std::size_t>(next->first)]
                                                   : nullptr;
                                    });
    }

    mutable std::array<SwitchView, kMaxDomainId + 1>
        _switches; // the interface hands out pointers to non-const
};

std::string indexOf(const Port* port)
{
    return port != nullptr ? std::to_string(port->facts.number) : std::string();
}

class CacheView final : public DataCache
{
  public:
    int dcRdLock() override
    {
        if (beginCall(Call::dcRdLock) != XPL_OK)
            return EAGAIN;
        engine().cacheLock.lockShared();
        return 0;
    }

    void dcRdUnlock() override { engine().cacheLock.unlockShared(); }

    FabricCache* getFabric(int number) override
    {
        return beginCall(Call::getFabric) == XPL_OK && number == 1 ? &_fabric : nullptr;
    }

    Wwn getRootSwitchWwn() const override
    {
        return answer<Wwn>(Call::getRootSwitchWwn,
                           [](const FabricModel& model) { return Wwn(model.local().facts.wwn); });
    }

    bool isTransparentSwitch() const override
    {
        return answer<bool>(Call::isTransparentSwitch,
                            [](const FabricModel& model) { return model.local().facts.transparent; });
    }

    std::vector<std::uint16_t> getSwitchFaults() const override
    {
        return answer<std::vector<std::uint16_t>>(
            Call::getSwitchFaults, [](const FabricModel& model) { return model.local().facts.faults; });
    }

    std::string getFirstRootPortIndex() const override
    {
        return answer<std::string>(Call::getFirstRootPortIndex,
                                   [](const FabricModel& model)
                                   { return indexOf(model.local().portAfter(-1)); });
    }

    std::string getNextRootPortIndex(const std::string& previous) const override
    {
        return answer<std::string>(Call::getNextRootPortIndex,
                                   [&previous](const FabricModel& model)
                                   {
                                       const Port* port = model.localPort(previous);
                                       return port != nullptr
                                                  ? indexOf(model.local().portAfter(port->facts.number))
                                                  : std::string();
                                   });
    }

    int getPortHWType(const std::string& portIndex) const override
    {
        return answer<int>(Call::getPortHWType,
                           [&portIndex](const FabricModel& model)
                           {
                               const Port* port = model.localPort(portIndex);
                               if (port == nullptr)
                                   return 0;
                               return port->facts.hardware == PortHardware::ethernet
                                          ? kPortHWTypeEthernet
                                          : kPortHWTypeFibreChannel;
                           });
    }

    Wwn calcPortWwn(const Wwn& switchWwn, const std::string& portIndex) const override
    {
        return answer<Wwn>(
            Call::calcPortWwn,
            [&](const FabricModel& model)
            {
                const Port* port = isLocalWwn(model, switchWwn) ? model.localPort(portIndex) : nullptr;
                return port != nullptr ? Wwn(portWwn(model.local().facts.wwn, port->facts.number)) : Wwn();
            });
    }

    std::string calcPortIndex(const Wwn& switchWwn, const Wwn& portWwn) const override
    {
        return answer<std::string>(Call::calcPortIndex,
                                   [&](const FabricModel& model)
                                   {
                                       const auto number =
                                           portNumberOf(switchWwn.toString(), portWwn.toString());
                                       return isLocalWwn(model, switchWwn) && number
                                                  ? indexOf(model.local().port(*number))
                                                  : std::string();
                                   });
    }

  private:
    static bool isLocalWwn(const FabricModel& model, const Wwn& wwn)
    {
        return upperCase(wwn.toString()) == upperCase(model.local().facts.wwn);
    }

    FabricView _fabric;
};

} // namespace
} // namespace simulator

DataCache* DataCache::instance()
{
    static simulator::CacheView cache;
    return &cache;
}
