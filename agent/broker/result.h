// Where a provider's results go.
#ifndef AGENT_BROKER_RESULT_H
#define AGENT_BROKER_RESULT_H

#include "agent/broker/objects.h"

#include <exception>
#include <string>

namespace cimd
{

// Takes checked results on the provider's thread. What a receiver does not expect is an error of the
// provider. An exception ends the operation: the provider is told to stop and the exception is thrown again
// when it has.
class ResultReceiver
{
  public:
    virtual ~ResultReceiver() = default;
    // Complete: path, names, all properties in class order. Lives only during the call.
    virtual void instance(const Instance& instance, const ClassInfo& info);
    // False if instances are values, not objects of the server: they come without a path then.
    virtual bool needsPath() const { return true; }
    virtual void path(const ObjectPath& path, const ClassInfo& info);
    virtual void data(const CimValue& value);
};

struct ResultObject : CMPIResult, Tracked
{
    using Handle = CMPIResult;
    static constexpr const CMPIResultFT* kTable = &kResultTable;

    ResultObject(const ClassRepository& classes, std::string nameSpace, ResultReceiver& target)
        : CMPIResult{this, kTable}, repository(classes), requestNameSpace(std::move(nameSpace)),
          receiver(target)
    {
    }

    const ClassRepository& repository;
    const std::string requestNameSpace;
    ResultReceiver& receiver;
    bool isDone = false;
    std::exception_ptr failure; // the first one; nothing is accepted after it
};

} // namespace cimd

#endif
