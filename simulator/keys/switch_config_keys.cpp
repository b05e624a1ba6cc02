// Keys of the local switch's firmware, location, address and management services.
#include "simulator/keys/attribute_keys.h"

namespace simulator
{
namespace
{

using Facts = SwitchScenario;

// A configuration that can be written. `store` returns false for a value that it does not take.
template <class Tell, class Store>
void addWritable(ReadKeys& reads, WriteKeys& writes, const std::string& key, Tell tell, Store store)
{
    reads.add(key, ofLocalSwitch(tell));
    writes.add(key + ".%*",
               [store](FabricModel& model, const KeyArguments& arguments, std::uint64_t)
               {
                   const bool taken = store(model.local().facts, arguments[0]);
                   return std::int32_t{taken ? XPL_OK : XPL_INVALID_PARAMETER};
               });
}

void addService(ReadKeys& reads, WriteKeys& writes, const char* key, bool ServiceFlags::*service)
{
    addWritable(
        reads,
        writes,
        key,
        [service](const Facts& one, Answer& a) { return a.flag(one.services.*service); },
        [service](Facts& one, std::string_view text)
        {
            const auto value = flagNamed(text);
            one.services.*service = value.value_or(one.services.*service);
            return value.has_value();
        });
}

} // namespace

void addSwitchConfigKeys(ReadKeys& reads, WriteKeys& writes)
{
    reads.add("Oper.Switch.FirmwareVersion",
              ofLocalSwitch([](const Facts& one, Answer& a) { return a.present(one.firmwareVersion); }));
    reads.add(
        "Oper.Switch.StandbyFirmwareVersion",
        ofLocalSwitch([](const Facts& one, Answer& a) { return a.present(one.standbyFirmwareVersion); }));
    reads.add("Oper.Switch.IPAddress",
              ofLocalSwitch([](const Facts& one, Answer& a) { return a.present(one.ipAddress); }));
    addWritable(
        reads,
        writes,
        "Config.Switch.Location",
        [](const Facts& one, Answer& a) { return a.text(one.location); },
        [](Facts& one, std::string_view text)
        {
            const bool taken = text.size() <= kLocationSize;
            if (taken)
                one.location = text;
            return taken;
        });
    addService(reads, writes, "Config.Switch.SNMPEnabled", &ServiceFlags::snmp);
    addService(reads, writes, "Config.Switch.WebEnabled", &ServiceFlags::web);
    addService(reads, writes, "Config.Switch.TelnetEnabled", &ServiceFlags::telnet);
    addService(reads, writes, "Config.Switch.SSHEnabled", &ServiceFlags::ssh);
}

} // namespace simulator
