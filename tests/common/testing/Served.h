// What a provider serves, as plain values.
#ifndef TESTS_COMMON_TESTING_SERVED_H
#define TESTS_COMMON_TESTING_SERVED_H

#include <cimple/cimple.h>

#include <functional>
#include <string>

// The outcome of one enumeration.
struct Served
{
    int status = -1;
    std::size_t count = 0;
};

// Enumerates and calls visit(const CLASS&) for each instance.
template <class PROVIDER>
Served serve(PROVIDER& provider, const std::function<void(const typename PROVIDER::Class&)>& visit = nullptr)
{
    typedef typename PROVIDER::Class Class;
    struct Context
    {
        const std::function<void(const Class&)>& visit;
        Served served;
    } context{visit, {}};
    const auto receive = [](cimple::Instance* instance, cimple::Enum_Instances_Status, void* data)
    {
        Context& target = *static_cast<Context*>(data);
        ++target.served.count;
        if (target.visit)
            target.visit(*static_cast<Class*>(instance));
        cimple::unref(instance);
        return true;
    };
    cimple::Enum_Instances_Handler<Class> handler(receive, &context);
    context.served.status = provider.enum_instances(nullptr, &handler);
    return context.served;
}

template <class PROVIDER>
Served serve(const std::function<void(const typename PROVIDER::Class&)>& visit = nullptr)
{
    PROVIDER provider;
    return serve(provider, visit);
}

#endif
