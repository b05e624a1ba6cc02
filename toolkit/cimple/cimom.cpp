// Calls to the CIM server through the calling thread's context.
#include <cimple/Thread_Context.h>
#include <cimple/cimom.h>

CIMPLE_NAMESPACE_BEGIN

Instance_Enumerator::Instance_Enumerator() = default;
Instance_Enumerator::~Instance_Enumerator() = default;

void Instance_Enumerator::start(std::unique_ptr<Instance_Source> source)
{
    _source = std::move(source);
    (*this)++;
}

void Instance_Enumerator::operator++(int)
{
    _current = _source ? _source->next() : Ref<Instance>();
    if (!_current)
        _source.reset();
}

int cimom::enum_instances(const char* name_space, const Instance* model, Instance_Enumerator& enumerator)
{
    Thread_Context* const context = Thread_Context::top();
    std::unique_ptr<Instance_Source> source = context ? context->enum_instances(name_space, model) : nullptr;
    const bool ok = source != nullptr;
    enumerator.start(std::move(source));
    return ok ? 0 : -1;
}

Ref<Instance> cimom::get_instance(const char* name_space, const Instance* model)
{
    Thread_Context* const context = Thread_Context::top();
    return context ? context->get_instance(name_space, model) : Ref<Instance>();
}

int cimom::create_instance(const char* name_space, const Instance* instance)
{
    Thread_Context* const context = Thread_Context::top();
    return context ? context->create_instance(name_space, instance) : -1;
}

int cimom::delete_instance(const char* name_space, const Instance* instance)
{
    Thread_Context* const context = Thread_Context::top();
    return context ? context->delete_instance(name_space, instance) : -1;
}

int cimom::modify_instance(const char* name_space, const Instance* instance)
{
    Thread_Context* const context = Thread_Context::top();
    return context ? context->modify_instance(name_space, instance) : -1;
}

int cimom::invoke_method(const char* name_space, const Instance* instance, Instance* method)
{
    Thread_Context* const context = Thread_Context::top();
    return context ? context->invoke_method(name_space, instance, method) : -1;
}

void cimom::allow_unload(bool flag)
{
    if (Thread_Context* const context = Thread_Context::top())
        context->allow_unload(flag);
}

bool cimom::get_username(String& user_name)
{
    Thread_Context* const context = Thread_Context::top();
    return context && context->get_username(user_name);
}

CIMPLE_NAMESPACE_END
