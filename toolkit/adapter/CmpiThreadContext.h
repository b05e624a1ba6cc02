// The CIM server as the provider code of a thread sees it.
#ifndef TOOLKIT_ADAPTER_CMPITHREADCONTEXT_H
#define TOOLKIT_ADAPTER_CMPITHREADCONTEXT_H

#include <cimple/Thread_Context.h>
#include <cimple/cimple.h>
#include <cmpift.h>

#include <atomic>

namespace cimple_cmpi
{

// Answers the toolkit's calls to the server through CMPI's client services, with the context of the running
// MI function, or with the one a thread of the provider was attached with.
class CmpiThreadContext : public cimple::Thread_Context
{
  public:
    // All three outlive the context; `allowUnload` is what allow_unload() sets.
    CmpiThreadContext(const CMPIBroker* broker, const CMPIContext* context, std::atomic<bool>& allowUnload)
        : _broker(broker), _context(context), _allowUnload(allowUnload)
    {
    }

    const CMPIBroker* broker() const { return _broker; }
    const CMPIContext* context() const { return _context; }

    std::unique_ptr<cimple::Thread_Context> create_child() override;
    void thread_started() override;
    void thread_ended() override;

    std::unique_ptr<cimple::Instance_Source> enum_instances(const char* name_space,
                                                            const cimple::Instance* model) override;
    cimple::Ref<cimple::Instance> get_instance(const char* name_space,
                                               const cimple::Instance* model) override;
    int create_instance(const char* name_space, const cimple::Instance* instance) override;
    int delete_instance(const char* name_space, const cimple::Instance* instance) override;
    int modify_instance(const char* name_space, const cimple::Instance* instance) override;
    int invoke_method(const char* name_space,
                      const cimple::Instance* instance,
                      cimple::Instance* method) override;

    void allow_unload(bool flag) override { _allowUnload = flag; }
    bool get_username(cimple::String& user_name) override;

  private:
    const CMPIBroker* _broker;
    const CMPIContext* _context;
    std::atomic<bool>& _allowUnload;
};

// A context on the calling thread's stack for the length of a scope.
class ContextScope
{
  public:
    explicit ContextScope(cimple::Thread_Context& context) { cimple::Thread_Context::push(&context); }
    ~ContextScope() { cimple::Thread_Context::pop(); }
    ContextScope(const ContextScope&) = delete;
    ContextScope& operator=(const ContextScope&) = delete;
};

} // namespace cimple_cmpi

#endif
