// Providers of the demo classes that do what a test tells them.
#ifndef TESTS_TOOLKIT_DEMO_SCRIPTED_H
#define TESTS_TOOLKIT_DEMO_SCRIPTED_H

#include "demo_objects.h"

#include <atomic>
#include <functional>
#include <map>
#include <vector>

namespace demo
{

typedef std::vector<cimple::Ref<cimple::Instance>> Instances;

template <class... Classes>
Instances shared(cimple::Ref<Classes>... instances)
{
    return {cimple::Ref<cimple::Instance>(instances.steal())...};
}

// Any status of a provider operation.
struct Answer
{
    template <class Status>
    operator Status() const
    {
        return static_cast<Status>(status);
    }
    int status;
};

// What the providers of one class do, and what they have seen. Reset by each test before the first request.
struct Script
{
    typedef cimple::Instance Instance;
    typedef std::function<bool(Instance* instance)> Hand; // hands an instance to whoever asked, shared

    int load = 0;                       // status of load()
    int unload = 0;                     // status of unload()
    int status = 0;                     // status of every other operation, if not 0
    std::map<int, int> answers;         // the same by operation, even if 0
    std::function<void()> inside;       // runs in every operation except load and unload
    std::function<void()> insideCreate; // runs in the constructor
    std::function<void()> insideLoad;   // runs in load()
    Instances instances;                // what the provider has; handed out shared, not copied
    // Hands out something else when the instances are enumerated.
    std::function<void(const Instance* model, const Hand& hand)> enumerate;
    // What an association provider answers itself; null leaves it to the caller.
    const Instances* nativeAssociators = nullptr; // and their names
    const Instances* nativeReferences = nullptr;
    // What the indication provider does when it is switched on and off: 0 or a status. `indicate` hands over.
    std::function<int(const Hand& indicate)> enable;
    std::function<int()> disable;
    Hand indicate;
    std::function<void(Instance* method)> method; // fills in the outputs of a method

    std::atomic<int> alive{0}; // provider objects
    std::atomic<int> loads{0};
    std::atomic<int> unloads{0};
    std::atomic<int> enumerations{0};
    std::atomic<int> handed{0}; // instances handed to a handler
    std::string filters;        // of the last request for associations
    std::string model;          // the last model, as printed; not for several threads at once
    std::string modelNameSpace;
    bool keepModels = true;

    void reset();

    void enter(const Instance* model);
    cimple::Ref<Instance>* find(const Instance* keys);
    // With nothing said of the operation, 0 or what stands in the way.
    Answer answer(int operation, bool fine = true, int otherwise = 0) const;
    // Hands out until it is enough.
    void handOut(const Instances& all, const Hand& hand);
    Answer native(int operation,
                  const Instances* own,
                  std::initializer_list<const cimple::String*> asked,
                  const Hand& hand);
    Answer modify(const Instance* model, const Instance* instance);
    Answer invoke(const Instance* self, Instance* object);
};

// Hands out what a map chooses by the model.
template <class Class>
void handOutOf(cimple::Instance_Map<Class>& map, const cimple::Instance* model, Script::Hand hand)
{
    const auto receive = [](cimple::Instance* instance, cimple::Enum_Instances_Status, void* to)
    { return (*static_cast<Script::Hand*>(to))(instance); };
    cimple::Enum_Instances_Handler<Class> handler(receive, &hand);
    map.enum_instances(static_cast<const Class*>(model), &handler);
}

// The script of the providers of a class.
Script& script(const char* className);
template <class Class>
Script& script()
{
    return script(Class::static_meta_class.name);
}

// Of all classes, for a new test.
void resetScripts();

template <class CLASS>
struct Scripted
{
    typedef CLASS Class;
    typedef cimple::Instance Instance;
    typedef cimple::String String;

    Script& s = script<CLASS>();

    Scripted()
    {
        if (s.insideCreate)
            s.insideCreate();
        s.alive++;
    }
    ~Scripted() { s.alive--; }
    Answer load()
    {
        s.loads++;
        if (s.insideLoad)
            s.insideLoad();
        return {s.load};
    }
    Answer unload()
    {
        s.unloads++;
        return {s.unload};
    }
    Answer get_instance(const Class* model, Class*& instance)
    {
        s.enter(model);
        const auto* const found = s.find(model);
        instance = found ? static_cast<Class*>(cimple::clone(found->ptr())) : nullptr;
        const Answer answer = s.answer(cimple::OPERATION_GET_INSTANCE, found, cimple::GET_INSTANCE_NOT_FOUND);
        if (answer.status != 0)
            cimple::unref(std::exchange(instance, nullptr));
        return answer;
    }
    template <class Handler>
    Answer enum_instances(const Class* model, Handler* handler)
    {
        s.enter(model);
        s.enumerations++;
        if (s.enumerate)
            s.enumerate(model, handing(handler));
        else
            s.handOut(s.instances, handing(handler));
        return s.answer(cimple::OPERATION_ENUM_INSTANCES);
    }
    Answer create_instance(Class* instance)
    {
        s.enter(instance);
        const bool fine = !s.find(instance);
        if (fine && s.status == 0)
            s.instances.emplace_back(cimple::clone(instance));
        return s.answer(cimple::OPERATION_CREATE_INSTANCE, fine, cimple::CREATE_INSTANCE_DUPLICATE);
    }
    Answer delete_instance(const Class* instance)
    {
        s.enter(instance);
        auto* const found = s.find(instance);
        if (found && s.status == 0)
            s.instances.erase(s.instances.begin() + (found - s.instances.data()));
        return s.answer(cimple::OPERATION_DELETE_INSTANCE, found, cimple::DELETE_INSTANCE_NOT_FOUND);
    }
    Answer modify_instance(const Class* model, const Class* instance) { return s.modify(model, instance); }
    template <class Handler>
    Answer enum_associator_names(
        const Instance*, const String& resultClass, const String& role, const String& resultRole, Handler* h)
    {
        return s.native(cimple::OPERATION_ENUM_ASSOCIATOR_NAMES,
                        s.nativeAssociators,
                        {&resultClass, &role, &resultRole},
                        handing(h));
    }
    template <class Handler>
    Answer enum_associators(
        const Instance*, const String& resultClass, const String& role, const String& resultRole, Handler* h)
    {
        return s.native(cimple::OPERATION_ENUM_ASSOCIATORS,
                        s.nativeAssociators,
                        {&resultClass, &role, &resultRole},
                        handing(h));
    }
    template <class Handler>
    Answer enum_references(const Instance*, const Class*, const String& role, Handler* handler)
    {
        return s.native(cimple::OPERATION_ENUM_REFERENCES, s.nativeReferences, {&role}, handing(handler));
    }
    Answer enable_indications(cimple::Indication_Handler<Class>* handler)
    {
        const std::shared_ptr<cimple::Indication_Handler<Class>> owned(handler);
        s.indicate = [owned](Instance* indication) { return owned->handle(static_cast<Class*>(indication)); };
        const Answer answer =
            s.enable ? Answer{s.enable(s.indicate)} : s.answer(cimple::OPERATION_ENABLE_INDICATIONS);
        if (answer.status != 0)
            s.indicate = nullptr;
        return answer;
    }
    Answer disable_indications()
    {
        return s.disable ? Answer{s.disable()} : s.answer(cimple::OPERATION_DISABLE_INDICATIONS);
    }

  private:
    template <class Handler>
    Script::Hand handing(Handler* handler)
    {
        return [this, handler](Instance* instance)
        {
            s.handed++;
            return handler->handle(static_cast<Class*>(instance));
        };
    }
};

} // namespace demo

#endif
