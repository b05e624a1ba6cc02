// Traffic keys of the local switch's ports: 64-bit counters as hexadecimal texts, rates as decimal texts.
#include "simulator/keys/attribute_keys.h"

namespace simulator
{

void addStatisticsKeys(ReadKeys& keys)
{
    for (std::size_t i = 0; i < kCounterCount; ++i)
    {
        keys.add("Oper.UserPort.0.%s.C64." + std::string(kCounters[i].name),
                 ofLocalPort([i](const Switch&, const Port& port, std::uint64_t now, Answer& answer)
                             { return answer.hex(port.meter->counter(i, now)); }));
    }
    const std::pair<const char*, std::uint64_t Rates::*> rates[] = {{"RxBytePerf", &Rates::rxBytes},
                                                                    {"TxBytePerf", &Rates::txBytes},
                                                                    {"RxFramePerf", &Rates::rxFrames},
                                                                    {"TxFramePerf", &Rates::txFrames}};
    for (const auto& rate : rates)
    {
        const auto member = rate.second;
        keys.add(std::string("Oper.UserPort.0.%s.") + rate.first,
                 ofLocalPort([member](const Switch&, const Port& port, std::uint64_t now, Answer& answer)
                             { return answer.decimal(port.meter->rates(now).*member); }));
    }
}

} // namespace simulator
