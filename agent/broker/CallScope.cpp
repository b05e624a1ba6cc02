// Ownership of call-bound objects, per thread.
#include "agent/broker/CallScope.h"

#include "agent/broker/boundary.h"
#include "agent/cim/CimError.h"
#include "agent/repository/ClassRepository.h"

namespace cimd
{
namespace
{

thread_local CallScope* innermost = nullptr;

class Mark : public Tracked
{
  public:
    bool isMark() const override { return true; }
};

} // namespace

CallScope::CallScope(const ClassRepository& repository)
    : _repository(repository), _outer(innermost), _depth(innermost ? innermost->_depth + 1 : 1),
      _thread(std::this_thread::get_id())
{
    if (_depth > kMaxDepth)
        throw CimError(CimStatus::ServerLimitsExceeded,
                       "providers called each other more than " + std::to_string(kMaxDepth) + " levels deep");
    innermost = this;
}

CallScope::~CallScope()
{
    while (_last)
        freeLast();
    if (innermost == this) // not so when the broker ends before a thread that never detached
        innermost = _outer;
}

CallScope* CallScope::current()
{
    return innermost;
}

void CallScope::adopt(std::unique_ptr<Tracked> object)
{
    object->_owner = this;
    object->_previous = _last;
    if (_last)
        _last->_next = object.get();
    _last = object.release();
}

void CallScope::unlink(Tracked& object)
{
    if (object._previous)
        object._previous->_next = object._next;
    if (object._next)
        object._next->_previous = object._previous;
    else
        _last = object._previous;
}

void CallScope::freeLast()
{
    Tracked* object = _last;
    unlink(*object);
    delete object;
}

const ClassInfo* CallScope::findClass(std::string_view name)
{
    if (!_found || _found->name().str() != name)
        _found = _repository.find(CimName(name));
    return _found;
}

Instance CallScope::blankInstance(const ClassInfo& info)
{
    if (std::exchange(_instanceClass, nullptr) == &info)
        return std::move(_instance);
    Instance instance(info.name());
    instance.properties() = info.blank();
    return instance;
}

void CallScope::keepBlank(const ClassInfo& info, Instance instance)
{
    _instanceClass = &info;
    _instance = std::move(instance);
}

std::vector<KeyBinding> CallScope::blankKeys(const ClassInfo& info)
{
    if (std::exchange(_keysClass, nullptr) == &info)
        return std::move(_keys);
    return info.blankKeys();
}

void CallScope::keepBlank(const ClassInfo& info, std::vector<KeyBinding> keys)
{
    _keysClass = &info;
    _keys = std::move(keys);
}

const void* CallScope::mark()
{
    adopt(std::make_unique<Mark>());
    return _last;
}

bool CallScope::release(const void* mark)
{
    const Tracked* object = _last;
    while (object && object != mark)
        object = object->_previous;
    if (!object || !object->isMark())
        return false;
    while (_last != mark)
        freeLast();
    freeLast();
    return true;
}

bool CallScope::discard(Tracked* object)
{
    if (CallScope* scope = object->_owner)
    {
        if (scope->_thread != std::this_thread::get_id())
            return false;
        scope->unlink(*object);
    }
    delete object;
    return true;
}

CallScope& currentScope()
{
    if (!innermost)
        throw CmpiError(CMPI_RC_ERR_INVALID_HANDLE, "the thread is not attached to the broker");
    return *innermost;
}

} // namespace cimd
