// The listeners and subscriptions that the local switch keeps for its CIM agent.
#ifndef SIMULATOR_SCENARIO_CIM_SCENARIO_H
#define SIMULATOR_SCENARIO_CIM_SCENARIO_H

#include <string>
#include <vector>

namespace simulator
{

// Bytes of a listener's, a subscription's or a filter's name.
constexpr std::size_t kCimNameSize = 128;
constexpr std::size_t kCimTextSize = 255; // of a destination

constexpr std::size_t kMaxListeners = 64;
constexpr std::size_t kMaxSubscriptions = 256;
constexpr int kMaxDurationSeconds = 1000000000;

struct ListenerScenario
{
    std::string name;
    bool permanent = false;
    std::string destination;
};

// Moments are texts such as "2026-11-14T20:35:10Z"; empty: when the scenario starts.
struct SubscriptionScenario
{
    std::string name;
    std::string filter;
    std::string enableState; // "True" or "False"; empty: "True"
    std::string enableStateChange;
    std::string startTime;
    int durationSeconds = 0; // 0: for ever
    std::vector<std::string> listeners;
};

} // namespace simulator

#endif
