// A port of the local switch is on an I/O blade.
#include "switchProviders/VRAX_LogicalIOBladeFCPort_Provider.h"

#include "common/topology_keys.h"
#include "switchaccess/Attribute.h"
#include "switchaccess/CacheLock.h"
#include "switchaccess/fabric_walk.h"

#include <string>
#include <unordered_map>

namespace cimple
{

namespace
{

// By the index of a local port.
constexpr Attribute<VRAX_FCPort> kAttributes[] = {{"Oper.UserPort.0.%s.IOBlade"}};

// The blade numbers of the ports that are on one, as decimal texts.
typedef std::unordered_map<const VRAX_FCPort*, std::string> Blade_Numbers;

Blade_Numbers readBladeNumbers(const Map_View<VRAX_FCPort>& ports)
{
    const Text_Index<VRAX_FCPort, Two_Texts> published(ports, portSystemAndWwn);
    const DataCache& cache = *DataCache::instance();
    const Wwn switchWwn = cache.getRootSwitchWwn();
    Attribute_Reader<VRAX_FCPort> attributes(kAttributes);
    Blade_Numbers numbers;
    for (const Local_Port port : Local_Ports(cache, switchWwn))
    {
        const VRAX_FCPort* one = published.find({switchWwn.c_str(), port.wwn.c_str()});
        if (one == nullptr || !attributes.read({port.index.c_str()}) || *attributes.text(0) == '\0')
            continue;
        numbers[one] = std::to_string(decimal16(attributes.text(0)));
    }
    return numbers;
}

} // namespace

void VRAX_LogicalIOBladeFCPort_Provider::build(Pairs& pairs)
{
    // Most switches have no blades, and their ports need not be asked.
    if (pairs.all<VRAX_LogicalIOBlade>().first() == nullptr)
        return;
    const CacheLock cacheLock;
    requireCacheLock(cacheLock, kSource);
    const Blade_Numbers numbers = readBladeNumbers(pairs.all<VRAX_FCPort>());

    const auto numberOf = [](const VRAX_LogicalIOBlade& blade)
    { return std::to_string(blade.ModuleNumber.value); };
    const auto bladeOf = [&numbers](const VRAX_FCPort& port)
    {
        const auto found = numbers.find(&port);
        return found != numbers.end() ? found->second : std::string();
    };
    pairs.equal<VRAX_LogicalIOBlade, VRAX_FCPort>(numberOf, bladeOf);
}

} // namespace cimple
