// The calling thread's stack of contexts.
#include <cimple/Thread_Context.h>
#include <vector>

CIMPLE_NAMESPACE_BEGIN

namespace
{
std::vector<Thread_Context*>& stack()
{
    static thread_local std::vector<Thread_Context*> contexts;
    return contexts;
}
} // namespace

Instance_Source::~Instance_Source() = default;

Thread_Context::~Thread_Context() = default;

void Thread_Context::push(Thread_Context* context)
{
    stack().push_back(context);
}

void Thread_Context::pop()
{
    stack().pop_back();
}

Thread_Context* Thread_Context::top()
{
    return stack().empty() ? nullptr : stack().back();
}

CIMPLE_NAMESPACE_END
