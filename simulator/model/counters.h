// The counters that a port keeps, with the names by which attribute keys know them.
#ifndef SIMULATOR_MODEL_COUNTERS_H
#define SIMULATOR_MODEL_COUNTERS_H

#include <cstddef>
#include <optional>
#include <string_view>

namespace simulator
{

// What makes a counter move.
enum class CounterKind
{
    rxWords,
    txWords,
    rxFrames,
    txFrames,
    rxClass2,
    txClass2,
    rxClass3,
    txClass3,
    error // at the port's error rate, in the counter's share
};

struct CounterName
{
    std::string_view name; // as in "Oper.UserPort.0.7.C64.TotalLIPRecv"
    CounterKind kind;
    unsigned errorShare; // thousandths of the port's errors
};

constexpr CounterName kCounters[] = {
    {"TotalLIPRecv", CounterKind::error, 20},      {"RxLinkResets", CounterKind::error, 10},
    {"TxLinkResets", CounterKind::error, 10},      {"PrimSeqErrors", CounterKind::error, 30},
    {"InvDestAddr", CounterKind::error, 50},       {"Class3FramesIn", CounterKind::rxClass3, 0},
    {"Class3FramesOut", CounterKind::txClass3, 0}, {"Class2FramesIn", CounterKind::rxClass2, 0},
    {"Class2FramesOut", CounterKind::txClass2, 0}, {"DecodeErrors", CounterKind::error, 400},
    {"LinkFailures", CounterKind::error, 10},      {"LossOfSyncs", CounterKind::error, 40},
    {"InvalidCRCs", CounterKind::error, 200},      {"TotalRxWords", CounterKind::rxWords, 0},
    {"TotalTxWords", CounterKind::txWords, 0},     {"TotalRxFrames", CounterKind::rxFrames, 0},
    {"TotalTxFrames", CounterKind::txFrames, 0},   {"FBusys", CounterKind::error, 60},
    {"ShortFramesIn", CounterKind::error, 40},     {"LongFramesIn", CounterKind::error, 20},
    {"FRejects", CounterKind::error, 60},          {"BBCR_FrameFailures", CounterKind::error, 25},
    {"BBCR_RRDYFailures", CounterKind::error, 25},
};

constexpr std::size_t kCounterCount = sizeof kCounters / sizeof kCounters[0];

// The counter's place in kCounters.
constexpr std::optional<std::size_t> counterNamed(std::string_view name)
{
    for (std::size_t i = 0; i < kCounterCount; ++i)
        if (kCounters[i].name == name)
            return i;
    return std::nullopt;
}

} // namespace simulator

#endif
