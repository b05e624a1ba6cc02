// What connects a thread to the CIM server on whose behalf it runs. Adapters implement it; providers use
// cimom.
#ifndef CIMPLE_THREAD_CONTEXT_H
#define CIMPLE_THREAD_CONTEXT_H

#include <cimple/Instance.h>
#include <cimple/Ref.h>
#include <memory>

CIMPLE_NAMESPACE_BEGIN

// Instances that an enumeration of the server delivers one after the other.
class CIMPLE_CIMPLE_LINKAGE Instance_Source
{
  public:
    virtual ~Instance_Source();
    virtual Ref<Instance> next() = 0; // null at the end
};

class CIMPLE_CIMPLE_LINKAGE Thread_Context
{
  public:
    Thread_Context() = default;
    virtual ~Thread_Context();
    Thread_Context(const Thread_Context&) = delete;
    Thread_Context& operator=(const Thread_Context&) = delete;

    // The calling thread's stack. push() does not take ownership; top() is null on an empty stack; pop() must
    // match.
    static void push(Thread_Context* context);
    static void pop();
    static Thread_Context* top();

    // Called in the thread that creates another: the new thread's context, or null if it gets none.
    virtual std::unique_ptr<Thread_Context> create_child() = 0;

    // Called on a child's context in the new thread, before and after what it runs.
    virtual void thread_started() = 0;
    virtual void thread_ended() = 0;

    // Operations of the server, 0 or -1 (null, false) on any failure. Instances passed in stay the caller's;
    // those returned are of the model's class.
    virtual std::unique_ptr<Instance_Source> enum_instances(const char* name_space,
                                                            const Instance* model) = 0;
    virtual Ref<Instance> get_instance(const char* name_space, const Instance* model) = 0;
    virtual int create_instance(const char* name_space, const Instance* instance) = 0;
    virtual int delete_instance(const char* name_space, const Instance* instance) = 0;
    virtual int modify_instance(const char* name_space, const Instance* instance) = 0;
    virtual int invoke_method(const char* name_space, const Instance* instance, Instance* method) = 0;

    virtual void allow_unload(bool flag) = 0;
    virtual bool get_username(String& user_name) = 0;
};

CIMPLE_NAMESPACE_END

#endif
