// Conversion and delivery of results one by one.
#include "ResultSink.h"

#include <cmpimacs.h>
#include <cmpiresults.h>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

// The broker's objects that are made in a scope end with it.
class ObjectLevel
{
  public:
    // Null: they stay.
    explicit ObjectLevel(const CMPIBroker* broker)
        : _broker(broker), _level(broker ? broker->mft->mark(broker, nullptr) : nullptr)
    {
    }
    ~ObjectLevel()
    {
        if (_level)
            _broker->mft->release(_broker, _level);
    }
    ObjectLevel(const ObjectLevel&) = delete;
    ObjectLevel& operator=(const ObjectLevel&) = delete;

  private:
    const CMPIBroker* _broker;
    CMPIGcStat* _level;
};

} // namespace

bool ResultSink::copiesResults(const Call& call)
{
    if (!call.broker()->mft)
        return false;
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    const CMPIData promise = CMGetContextEntry(call.context(), CMPIResultsAreCopied, &status);
    return status.rc == CMPI_RC_OK && promise.type == CMPI_boolean && promise.state == CMPI_goodValue &&
           promise.value.boolean;
}

CMPIStatus ResultSink::deliver(const Instance* instance)
{
    return _what == Deliver::Paths ? CMReturnObjectPath(_result, _to.path(instance))
                                   : CMReturnInstance(_result, _to.instance(instance, _filter));
}

bool ResultSink::take(const Instance* instance) noexcept
{
    if (_failure)
        return false;
    try
    {
        if (_wanted && instance->meta_class != _wanted && !is_subclass(_wanted, instance->meta_class))
            return true;
        const ObjectLevel level(_copies ? _broker : nullptr);
        checkBroker(deliver(instance), "a result");
        _to.release();
        _taken++;
    }
    catch (const Failure& failure)
    {
        _failure = failure;
    }
    catch (const std::exception& e)
    {
        _failure = Failure(CMPI_RC_ERR_FAILED, e.what());
    }
    return !_failure;
}

void ResultSink::finish()
{
    if (_failure)
        throw Failure(*_failure);
    checkBroker(CMReturnDone(_result), "the end of the result");
}

} // namespace cimple_cmpi
