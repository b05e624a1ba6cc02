// Where the results of an operation go.
#ifndef AGENT_REQUESTS_SINK_H
#define AGENT_REQUESTS_SINK_H

#include <vector>

namespace cimd
{

// Takes results one at a time, on the thread that runs the operation, while the provider produces them. An
// exception ends the operation and reaches its caller. An operation may still fail after it delivered
// results; what was delivered is then not an answer.
template <class Item>
class Sink
{
  public:
    virtual ~Sink() = default;
    // The item lives only during the call: copy what must outlive it.
    virtual void put(const Item& item) = 0;
};

// Keeps what it is given.
template <class Item>
class Collector : public Sink<Item>
{
  public:
    void put(const Item& item) override { items.push_back(item); }

    std::vector<Item> items;
};

} // namespace cimd

#endif
