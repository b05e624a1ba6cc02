// Cost of a warm enumeration at the module's dispatch: no server, no conversion, no switch.
#include "tests/bench/benches.h"

#include "simulator/generator/generate.h"
#include "simulator/testing/SimSwitch.h"
#include "support/VRAX_Maps.h"
#include "tests/bench/report.h"

#include <cimple/Provider_Handle.h>
#include <cimple/cimple.h>

#include <cstring>
#include <stdexcept>

extern "C" cimple::Registration* cimple_module();

namespace bench
{

namespace
{

constexpr double kNano = 1e9;

const cimple::Registration& registrationOf(const char* className)
{
    for (const cimple::Registration* one = cimple_module(); one != nullptr; one = one->next)
        if (std::strcmp(one->meta_class->name, className) == 0)
            return *one;
    throw std::runtime_error("not registered");
}

bool count(cimple::Instance* instance, cimple::Enum_Instances_Status, void* data)
{
    if (instance != nullptr)
    {
        ++*static_cast<std::size_t*>(data);
        cimple::unref(instance);
    }
    return true;
}

} // namespace

void benchDispatch()
{
    Table table("Warm enumeration at the dispatch: VRAX_FCPortStatistics", "ports", "ns each");
    const cimple::Registration& registration = registrationOf("VRAX_FCPortStatistics");
    for (const std::size_t ports : kPortCounts)
    {
        simulator::FabricSize size;
        size.domains = 1;
        size.localPorts = static_cast<int>(ports);
        size.nodes = 0;
        const simulator::SimSwitch sim(simulator::generateFabric(size));
        cimple::VRAX_Maps::getInstance()->InstMapForceUnload(cimple::VRAX_FCPortStatistics_Idx);

        cimple::Provider_Handle provider(&registration);
        std::size_t delivered = 0;
        const auto enumerate = [&]
        {
            delivered = 0;
            provider.enum_instances(nullptr, count, &delivered);
        };
        enumerate();
        const double seconds = secondsPerCall(enumerate);
        table.row(
            ports, seconds / static_cast<double>(ports) * kNano, delivered == ports ? "" : "INCOMPLETE");
    }
    table.print();
}

} // namespace bench
