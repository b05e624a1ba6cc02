// Cost of the toolkit's own parts: making and copying instances, strings, and removal from a map.
#include "tests/bench/benches.h"

#include "common/Owned.h"
#include "support/Inst_Map.h"
#include "tests/bench/report.h"

#include "VRAX_FCPort.h"
#include "VRAX_FabricFCPort.h"

#include <cstdio>
#include <memory>
#include <vector>

namespace bench
{

using namespace cimple;

namespace
{

constexpr double kNano = 1e9;
constexpr std::size_t kMapSizes[] = {100, 10000, 100000};
constexpr std::size_t kTextSizes[] = {16, 1000, 100000};

Owned<VRAX_FCPort> port(std::size_t number)
{
    char name[24];
    std::snprintf(name, sizeof(name), "100002a5c0de%04zx", number % 65536);
    Owned<VRAX_FCPort> instance = makeWithDefaults<VRAX_FCPort>();
    instance->SystemCreationClassName.set("VRAX_FCSwitch");
    instance->SystemName.set("100002a5c0de0001");
    instance->CreationClassName.set("VRAX_FCPort");
    instance->DeviceID.set(String(name, std::to_string(number).c_str()));
    instance->ElementName.set("port");
    return instance;
}

template <class RUN>
void print(const char* title, RUN run)
{
    Table table(title, "instances", "ns each");
    table.row(1, secondsPerCall(run) * kNano);
    table.print();
}

void benchInstances()
{
    const Owned<VRAX_FCPort> original = port(1);
    print("VRAX_FCPort: create with defaults and destroy", [] { destroy(VRAX_FCPort::create(true)); });
    print("VRAX_FCPort: clone and destroy", [&] { destroy(clone(original.get())); });

    const Owned<VRAX_FabricFCPort> pair(VRAX_FabricFCPort::create(true));
    __create_refs(pair.get());
    print("VRAX_FabricFCPort with both its ends: clone and destroy", [&] { destroy(clone(pair.get())); });
}

void benchText()
{
    Table table("String: append one character", "characters", "ns each");
    for (const std::size_t size : kTextSizes)
    {
        const double seconds = secondsPerCall(
            [size]
            {
                String text;
                for (std::size_t i = 0; i < size; ++i)
                    text.append('x');
            });
        table.row(size, seconds / static_cast<double>(size) * kNano);
    }
    table.print();
}

void benchRemoval()
{
    Table table("Instance map: _remove of the first until it is empty", "instances", "ns each");
    for (const std::size_t size : kMapSizes)
    {
        std::vector<Owned<VRAX_FCPort>> ports;
        Inst_Map map(&VRAX_FCPort::static_meta_class);
        for (std::size_t i = 0; i < size; ++i)
            ports.push_back(port(i));
        const double seconds = processorSeconds(
            [&]
            {
                while (map.size() > 0)
                    map._remove(0);
            },
            [&]
            {
                for (const Owned<VRAX_FCPort>& one : ports)
                    map._insert(one.get());
            });
        table.row(size, seconds / static_cast<double>(size) * kNano);
    }
    table.print();
}

} // namespace

void benchToolkit()
{
    benchInstances();
    benchText();
    benchRemoval();
}

} // namespace bench
