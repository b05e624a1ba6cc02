// Calls of a provider to the CIM server it runs in, on any thread that has a context.
#ifndef CIMPLE_CIMOM_H
#define CIMPLE_CIMOM_H

#include <cimple/Ref.h>
#include <memory>

CIMPLE_NAMESPACE_BEGIN

class Instance_Source;

// Walks through the result of cimom::enum_instances: for (; e; e++) { Ref<Instance> x = e(); }
class CIMPLE_CIMPLE_LINKAGE Instance_Enumerator
{
  public:
    Instance_Enumerator();
    ~Instance_Enumerator();
    Instance_Enumerator(const Instance_Enumerator&) = delete;
    Instance_Enumerator& operator=(const Instance_Enumerator&) = delete;

    operator bool() const { return _current; } // there is a current instance
    void operator++(int);
    Ref<Instance> operator()() const { return _current; }

  private:
    friend struct cimom;

    void start(std::unique_ptr<Instance_Source> source);

    std::unique_ptr<Instance_Source> _source;
    Ref<Instance> _current;
};

// 0, or -1 on failure and on a thread without a context. Instances passed in stay the caller's.
struct CIMPLE_CIMPLE_LINKAGE cimom
{
    static int enum_instances(const char* name_space, const Instance* model, Instance_Enumerator& enumerator);
    static Ref<Instance> get_instance(const char* name_space, const Instance* model); // null on failure
    static int create_instance(const char* name_space, const Instance* instance);
    static int delete_instance(const char* name_space, const Instance* instance);
    static int modify_instance(const char* name_space, const Instance* instance);

    // Fills in the OUT parameters and return_value of `method`.
    static int invoke_method(const char* name_space, const Instance* instance, Instance* method);

    static void allow_unload(bool flag);
    static bool get_username(String& user_name); // false if unknown
};

CIMPLE_NAMESPACE_END

#endif
