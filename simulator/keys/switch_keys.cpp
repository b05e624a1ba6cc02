// Keys of the local switch and of the fabric's list of switches.
#include "simulator/keys/attribute_keys.h"
#include "simulator/model/hex.h"

namespace simulator
{
namespace
{

template <class Read> // int32_t(const SwitchScenario& facts, Answer& answer), of the switch whose domain is
                      // the first argument
ReadHandler ofFabricEntry(Read read)
{
    return [read](const FabricModel& model, const KeyArguments& arguments, std::uint64_t, Answer& answer)
    {
        int domain = 0;
        const Switch* found = parseDecimal(arguments[0], domain) ? model.switchOf(domain) : nullptr;
        return found != nullptr ? read(found->facts, answer) : std::int32_t{XPL_UNKNOWN_KEY};
    };
}

} // namespace

void addSwitchKeys(ReadKeys& keys)
{
    using Facts = SwitchScenario;
    keys.add("Oper.Switch.WWN", ofLocalSwitch([](const Facts& one, Answer& a) { return a.text(one.wwn); }));
    keys.add("Config.Switch.SymName",
             ofLocalSwitch([](const Facts& one, Answer& a) { return a.text(one.name); }));
    keys.add("Oper.Switch.OperState",
             ofLocalSwitch([](const Facts& one, Answer& a) { return a.text(toText(one.adminState)); }));
    keys.add("Oper.Switch.AdminState",
             ofLocalSwitch([](const Facts& one, Answer& a) { return a.text(toText(one.adminState)); }));
    keys.add(
        "Config.Switch.AdminState",
        ofLocalSwitch([](const Facts& one, Answer& a) { return a.text(toText(one.configuredAdminState)); }));
    keys.add("Oper.Switch.DomainID",
             ofLocalSwitch([](const Facts& one, Answer& a)
                           { return a.decimal(static_cast<std::uint64_t>(one.domain)); }));
    keys.add("Oper.Switch.Type", ofLocalSwitch([](const Facts& one, Answer& a) { return a.text(one.type); }));

    // Carries an argument of the caller's through a batch.
    keys.add("Oper.Switch.Echo.%*",
             [](const FabricModel&, const KeyArguments& arguments, std::uint64_t, Answer& answer)
             { return answer.text(arguments[0]); });
    keys.add("Oper.Switch.WhoIsPrincipal",
             [](const FabricModel& model, const KeyArguments&, std::uint64_t, Answer& answer)
             {
                 // An error, not a missing value: who names node ports by the fabric must not go on without
                 // its name.
                 const Switch* principal = model.principal();
                 return principal != nullptr ? answer.text(principal->facts.wwn)
                                             : std::int32_t{XPL_UNREACHABLE};
             });

    keys.add("Oper.Fabric.Entry.%d.WWN",
             ofFabricEntry([](const Facts& one, Answer& a) { return a.text(one.wwn); }));
    keys.add("Oper.Fabric.Entry.%d.SymNodeName",
             ofFabricEntry([](const Facts& one, Answer& a) { return a.text(one.name); }));
}

} // namespace simulator
