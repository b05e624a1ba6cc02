// Conversion and delivery of results one by one.
#include "ResultSink.h"

#include <cmpimacs.h>

namespace cimple_cmpi
{

using namespace cimple;

bool ResultSink::take(const Instance* instance) noexcept
{
    if (_failure)
        return false;
    try
    {
        if (_wanted && instance->meta_class != _wanted && !is_subclass(_wanted, instance->meta_class))
            return true;
        const CMPIStatus status = _what == Deliver::Paths
                                      ? CMReturnObjectPath(_result, _to.path(instance))
                                      : CMReturnInstance(_result, _to.instance(instance, _filter));
        checkBroker(status, "a result");
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
        throw *_failure;
    checkBroker(CMReturnDone(_result), "the end of the result");
}

} // namespace cimple_cmpi
