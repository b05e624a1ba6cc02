// What scripted providers of all classes have in common.
#include "Scripted.h"

using namespace cimple;

namespace demo
{

namespace
{
std::map<std::string, Script>& scripts()
{
    static std::map<std::string, Script> all;
    return all;
}
} // namespace

Script& script(const char* className)
{
    return scripts()[className];
}

void resetScripts()
{
    for (auto& entry : scripts())
        entry.second.reset();
}

void Script::reset()
{
    load = unload = status = 0;
    answers.clear();
    inside = insideCreate = insideLoad = nullptr;
    instances.clear();
    enumerate = nullptr;
    nativeAssociators = nativeReferences = nullptr;
    enable = nullptr;
    disable = nullptr;
    indicate = nullptr;
    method = nullptr;
    loads = unloads = enumerations = handed = 0;
    model.clear();
    keepModels = true;
}

void Script::enter(const Instance* given)
{
    if (keepModels && given)
    {
        model = text_of(given);
        modelNameSpace = given->__name_space.c_str();
    }
    if (inside)
        inside();
}

Ref<Instance>* Script::find(const Instance* keys)
{
    for (Ref<Instance>& instance : instances)
        if (key_eq(keys, instance.ptr()))
            return &instance;
    return nullptr;
}

Answer Script::answer(int operation, bool fine, int otherwise) const
{
    const auto found = answers.find(operation);
    if (found != answers.end())
        return {found->second};
    return {status || fine ? status : otherwise};
}

void Script::handOut(const Instances& all, const Hand& hand)
{
    for (const Ref<Instance>& instance : all)
    {
        ref(instance.ptr());
        if (!hand(const_cast<Instance*>(instance.ptr())))
            break;
    }
}

Answer Script::native(int operation,
                      const Instances* own,
                      std::initializer_list<const String*> asked,
                      const Hand& hand)
{
    if (!own && answers.empty())
        return {-1};
    filters.clear();
    for (const String* filter : asked)
        filters += filter->c_str() + std::string(";");
    if (own)
        handOut(*own, hand);
    return answer(operation);
}

Answer Script::modify(const Instance* changed, const Instance* instance)
{
    enter(changed);
    Ref<Instance>* const found = find(instance);
    const Answer result = answer(OPERATION_MODIFY_INSTANCE, found, MODIFY_INSTANCE_NOT_FOUND);
    if (result.status == 0)
        copy(found->ptr(), instance, changed);
    return result;
}

Answer Script::invoke(const Instance* self, Instance* object)
{
    enter(self);
    if (!method)
        return {-1};
    method(object);
    return {status};
}

} // namespace demo
