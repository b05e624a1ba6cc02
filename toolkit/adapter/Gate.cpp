// Counting of the threads inside a gate.
#include "Gate.h"

namespace cimple_cmpi
{

namespace
{

thread_local Gate::Pass* innermost = nullptr;

} // namespace

Gate::Pass::Pass(Gate& gate, Manner manner) : _gate(gate), _outer(innermost), _entered(true)
{
    std::unique_lock<std::mutex> lock(gate._mutex);
    if (gate.passesOfThisThread() == 0)
    {
        if (manner == kWait)
            gate._changed.wait(lock, [&] { return !gate._closed; });
        else
            _entered = !gate._closed;
    }
    if (_entered)
    {
        gate._inside++;
        innermost = this;
    }
}

Gate::Pass::~Pass()
{
    if (!_entered)
        return;
    innermost = _outer;
    std::lock_guard<std::mutex> lock(_gate._mutex);
    _gate._inside--;
    if (_gate._closed)
        _gate._changed.notify_all();
}

void Gate::close()
{
    std::unique_lock<std::mutex> lock(_mutex);
    _changed.wait(lock, [&] { return !_closed; });
    _closed = true;
    const unsigned own = passesOfThisThread();
    _changed.wait(lock, [&] { return _inside == own; });
}

void Gate::open()
{
    std::lock_guard<std::mutex> lock(_mutex);
    _closed = false;
    _changed.notify_all();
}

unsigned Gate::passesOfThisThread() const
{
    unsigned count = 0;
    for (const Pass* pass = innermost; pass; pass = pass->_outer)
        count += &pass->_gate == this;
    return count;
}

} // namespace cimple_cmpi
