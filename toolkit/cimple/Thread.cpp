// Starting threads under a context of their own.
#include <cimple/Thread.h>
#include <cimple/Thread_Context.h>

CIMPLE_NAMESPACE_BEGIN

namespace
{
struct Start
{
    Thread_Proc proc;
    void* arg;
    std::unique_ptr<Thread_Context> context;
};

// Lets a child context be the thread's for the length of a scope. Thread::exit unwinds scopes like a return.
class Context_Scope
{
  public:
    explicit Context_Scope(Thread_Context* context) : _context(context)
    {
        if (_context)
        {
            Thread_Context::push(_context);
            _context->thread_started();
        }
    }
    ~Context_Scope()
    {
        if (_context)
        {
            _context->thread_ended();
            Thread_Context::pop();
        }
    }
    Context_Scope(const Context_Scope&) = delete;
    Context_Scope& operator=(const Context_Scope&) = delete;

  private:
    Thread_Context* _context;
};

extern "C" void* run(void* data)
{
    const std::unique_ptr<Start> start(static_cast<Start*>(data));
    const Context_Scope scope(start->context.get());
    return start->proc(start->arg);
}

int create(pthread_t& id, int detach_state, Thread_Proc proc, void* arg)
{
    Thread_Context* const parent = Thread_Context::top();
    std::unique_ptr<Start> start(new Start{proc, arg, parent ? parent->create_child() : nullptr});

    pthread_attr_t attributes;
    if (const int error = pthread_attr_init(&attributes))
        return error;
    pthread_attr_setdetachstate(&attributes, detach_state);
    const int error = pthread_create(&id, &attributes, run, start.get());
    pthread_attr_destroy(&attributes);
    if (error == 0)
        static_cast<void>(start.release()); // the new thread's
    return error;
}
} // namespace

Thread::Thread() : _id(), _valid(false) {}

int Thread::create_joinable(Thread& thread, Thread_Proc proc, void* arg)
{
    const int error = create(thread._id, PTHREAD_CREATE_JOINABLE, proc, arg);
    thread._valid = error == 0;
    return error;
}

int Thread::create_detached(Thread& thread, Thread_Proc proc, void* arg)
{
    const int error = create(thread._id, PTHREAD_CREATE_DETACHED, proc, arg);
    thread._valid = error == 0;
    return error;
}

void Thread::exit(void* return_value)
{
    pthread_exit(return_value);
}

int Thread::join(Thread& thread, void*& return_value)
{
    return thread._valid ? pthread_join(thread._id, &return_value) : ESRCH;
}

bool Thread::equal(const Thread& t1, const Thread& t2)
{
    return t1._valid == t2._valid && (!t1._valid || pthread_equal(t1._id, t2._id) != 0);
}

Thread Thread::self()
{
    Thread thread;
    thread._id = pthread_self();
    thread._valid = true;
    return thread;
}

CIMPLE_NAMESPACE_END
