// Life time of the objects that providers get: until the call on this thread returns.
#ifndef AGENT_BROKER_CALLSCOPE_H
#define AGENT_BROKER_CALLSCOPE_H

#include "agent/cim/Instance.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace cimd
{

class CallScope;
class ClassInfo;
class ClassRepository;

// Base of everything the broker hands out. Either a call scope owns it, or (a clone) whoever calls release.
class Tracked
{
  public:
    Tracked() = default;
    Tracked(const Tracked&) {} // a copy starts without an owner
    Tracked& operator=(const Tracked&) = delete;
    virtual ~Tracked() = default;

    CallScope* owner() const { return _owner; }
    virtual bool isMark() const { return false; }

  private:
    friend class CallScope;

    CallScope* _owner = nullptr;
    Tracked* _previous = nullptr;
    Tracked* _next = nullptr;
};

// Scopes of a thread nest: a provider that calls the broker opens another one on top of its own. A scope must
// end on the thread that opened it, and not before those opened after it.
class CallScope
{
  public:
    // Calls from provider to broker to provider ... deeper than this are refused with
    // CIM_ERR_SERVER_LIMITS_EXCEEDED: a provider that calls itself would otherwise end the process by running
    // out of stack.
    static constexpr std::size_t kMaxDepth = 32;

    explicit CallScope(const ClassRepository& repository);
    ~CallScope();
    CallScope(const CallScope&) = delete;
    CallScope& operator=(const CallScope&) = delete;

    // The innermost scope of this thread; null on a thread that is not attached.
    static CallScope* current();

    const ClassRepository& repository() const { return _repository; }

    void adopt(std::unique_ptr<Tracked> object);

    // The class of that name, or null; the one that was asked for last is found at once.
    const ClassInfo* findClass(std::string_view name);

    // An instance of the class with all properties NULL and any path, and the keys of a path without values:
    // those of one that has gone, or new ones. Providers mostly make one after the other of a class, and
    // naming the properties and keys of each anew takes time.
    Instance blankInstance(const ClassInfo& info);
    std::vector<KeyBinding> blankKeys(const ClassInfo& info);
    // Take back what these gave, all NULL again.
    void keepBlank(const ClassInfo& info, Instance instance);
    void keepBlank(const ClassInfo& info, std::vector<KeyBinding> keys);

    // Levels within the scope: release frees what was adopted since, and ends levels opened since. False if
    // the mark is not one of this scope.
    const void* mark();
    bool release(const void* mark);

    // Ends the life of an object: one of this thread's scopes, or a clone. False if another thread owns it.
    static bool discard(Tracked* object);

  private:
    void unlink(Tracked& object);
    void freeLast();

    const ClassRepository& _repository;
    CallScope* _outer;
    std::size_t _depth;
    std::thread::id _thread;
    Tracked* _last = nullptr;
    const ClassInfo* _found = nullptr;
    const ClassInfo* _instanceClass = nullptr; // null if there is no blank one
    Instance _instance;
    const ClassInfo* _keysClass = nullptr; // likewise
    std::vector<KeyBinding> _keys;
};

// The innermost scope; CmpiError (invalid handle) on a thread that is not attached.
CallScope& currentScope();

// Makes an object that lives until the current call returns.
template <class Object, class... Arguments>
Object* track(Arguments&&... arguments)
{
    auto object = std::make_unique<Object>(std::forward<Arguments>(arguments)...);
    Object* result = object.get();
    currentScope().adopt(std::move(object));
    return result;
}

} // namespace cimd

#endif
