// An attached node port as the model keeps it.
#ifndef SIMULATOR_MODEL_NODE_H
#define SIMULATOR_MODEL_NODE_H

#include "simulator/scenario/Scenario.h"

#include <array>
#include <memory>
#include <string_view>

namespace simulator
{

// A fabric has thousands, so its texts share one piece of memory.
class Node
{
  public:
    explicit Node(const NodeScenario& facts);

    NodeScenario facts() const;

    int domain() const { return _domain; }
    int port() const { return _port; }
    std::uint32_t address() const { return _address; }
    NodeRole role() const { return _role; }
    NodePortType type() const { return _type; }
    LinkSpeed speed() const { return _speed; }

    // Valid as long as the node.
    std::string_view text(std::string NodeScenario::*member) const;

  private:
    static constexpr std::string NodeScenario::*kTexts[] = {&NodeScenario::portWwn,
                                                            &NodeScenario::nodeWwn,
                                                            &NodeScenario::portName,
                                                            &NodeScenario::nodeName,
                                                            &NodeScenario::classes,
                                                            &NodeScenario::protocols};
    static constexpr std::size_t kTextCount = sizeof kTexts / sizeof kTexts[0];

    int _domain;
    int _port;
    std::uint32_t _address;
    NodeRole _role;
    NodePortType _type;
    LinkSpeed _speed;
    std::array<std::uint16_t, kTextCount> _ends{}; // of each text, in order
    std::unique_ptr<char[]> _texts;
};

} // namespace simulator

#endif
