// Entering a provider, and the texts of failures.
#include "Call.h"

#include <cmpimacs.h>

namespace cimple_cmpi
{

using namespace cimple;

namespace
{

// A thread that has a context is inside the module already: in a call, or a thread that a provider started.
// Whoever takes the provider down may be waiting for it, so it must not wait in turn.
Gate::Pass::Manner manner()
{
    return Thread_Context::top() ? Gate::Pass::kNoWait : Gate::Pass::kWait;
}

Adapter& enter(StaticData& data, const Gate::Pass& pass)
{
    if (!pass)
        throw Failure(CMPI_RC_ERR_FAILED, "the provider is being unloaded");
    return data.adapter();
}

} // namespace

CMPIStatus statusOfException(const StaticData& data, const Operation& operation) noexcept
{
    CMPIStatus status = {CMPI_RC_ERR_FAILED, nullptr};
    try
    {
        const Failure failure = Failure::current();
        status.rc = failure.code();
        std::string where = operation.verb;
        if (operation.object)
            where += std::string(" ") + operation.object;
        const std::string text = failure.in(where).in(data.className()).what();
        CIMPLE_ERR(("%s", text.c_str()));
        status.msg = CMNewString(data.broker, text.c_str(), nullptr);
    }
    catch (const std::exception&)
    {
        // Out of memory: the code has to do without the text.
    }
    return status;
}

Call::Call(StaticData& data, const CMPIContext* context)
    : _data(data), _pass(data.calls, manner()), _adapter(enter(data, _pass)),
      _context(data.broker, context, data.allowUnload), _scope(_context)
{
}

const Meta_Class* Call::modelClass(const std::string& className) const
{
    const Meta_Class* const own = providerClass();
    if (eqi(className.c_str(), own->name))
        return own;
    const Meta_Class* requested = from().classNamed(className);
    if (is_subclass(requested, own))
        return own;
    if (is_subclass(own, requested))
        return requested;
    throw Failure(CMPI_RC_ERR_INVALID_CLASS, "class " + className + " is not served here");
}

} // namespace cimple_cmpi
