// What a request makes of the instances and paths that providers return.
#ifndef AGENT_SERVICE_RESULT_SHAPING_H
#define AGENT_SERVICE_RESULT_SHAPING_H

#include "agent/broker/result.h"
#include "agent/requests/Sink.h"

#include <string>
#include <unordered_set>

namespace cimd
{

// Passes instances on with the properties that were asked for; everything at once and without a copy if all
// were.
class InstanceShaper : public ResultReceiver
{
  public:
    // `visible` limits the properties to those of a class; null for no limit. All arguments must outlive the
    // shaper.
    InstanceShaper(Sink<Instance>& sink,
                   const PropertyList& properties,
                   bool includeClassOrigin,
                   const ClassInfo* visible = nullptr)
        : _sink(sink), _properties(properties), _includeClassOrigin(includeClassOrigin), _visible(visible)
    {
    }

    void instance(const Instance& instance, const ClassInfo& info) override;

  private:
    void put(const Instance& instance, const ClassInfo& info);

    Sink<Instance>& _sink;
    const PropertyList& _properties;
    bool _includeClassOrigin;
    const ClassInfo* _visible;
};

class PathForwarder : public ResultReceiver
{
  public:
    explicit PathForwarder(Sink<ObjectPath>& sink) : _sink(sink) {}

    void path(const ObjectPath& path, const ClassInfo& info) override;

  private:
    Sink<ObjectPath>& _sink;
};

// Passes each object on once, by its path.
template <class Item>
class OnceEach : public Sink<Item>
{
  public:
    explicit OnceEach(Sink<Item>& sink) : _sink(sink) {}

    void put(const Item& item) override
    {
        if (_seen.insert(pathOf(item).text()).second)
            _sink.put(item);
    }

  private:
    static const ObjectPath& pathOf(const ObjectPath& path) { return path; }
    static const ObjectPath& pathOf(const Instance& instance) { return instance.path(); }

    Sink<Item>& _sink;
    std::unordered_set<std::string> _seen;
};

// For operations that return nothing a client sees; a path returned by a modification is accepted.
class PathIgnorer : public ResultReceiver
{
  public:
    void path(const ObjectPath&, const ClassInfo&) override {}
};

} // namespace cimd

#endif
