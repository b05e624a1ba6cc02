// Attached node ports, packed.
#include "simulator/model/Node.h"

#include <algorithm>

namespace simulator
{

Node::Node(const NodeScenario& facts)
    : _domain(facts.domain), _port(facts.port), _address(facts.address), _role(facts.role), _type(facts.type),
      _speed(facts.speed)
{
    std::string all;
    for (std::size_t i = 0; i < kTextCount; ++i)
    {
        all += facts.*kTexts[i];
        _ends[i] = static_cast<std::uint16_t>(all.size());
    }
    if (all.size() != _ends.back())
        throw ScenarioError("", "the texts of " + facts.portWwn + " are too long");
    _texts = std::make_unique<char[]>(all.size());
    std::copy(all.begin(), all.end(), _texts.get());
}

NodeScenario Node::facts() const
{
    NodeScenario facts;
    facts.domain = _domain;
    facts.port = _port;
    facts.address = _address;
    facts.role = _role;
    facts.type = _type;
    facts.speed = _speed;
    for (const auto member : kTexts)
        facts.*member = text(member);
    return facts;
}

std::string_view Node::text(std::string NodeScenario::*member) const
{
    const auto index = static_cast<std::size_t>(std::find(std::begin(kTexts), std::end(kTexts), member) -
                                                std::begin(kTexts));
    const std::size_t start = index == 0 ? 0 : _ends[index - 1];
    return {_texts.get() + start, _ends[index] - start};
}

} // namespace simulator
