// Instances of CIM classes and the operations on them.
#ifndef CIMPLE_INSTANCE_H
#define CIMPLE_INSTANCE_H

#include <cimple/Array.h>
#include <cimple/Atomic.h>
#include <cimple/Meta_Class.h>
#include <cimple/Meta_Method.h>
#include <cimple/Meta_Property.h>
#include <cimple/Meta_Reference.h>
#include <cimple/Property.h>
#include <cimple/String.h>
#include <type_traits>

#define CIMPLE_INSTANCE_MAGIC 0xF00DFACE
#define CIMPLE_MAX_REFERENCES_PER_CLASS 16

CIMPLE_NAMESPACE_BEGIN

// What every generated class and method object begins with. A class of a CIM subclass does not derive from
// that of its superclass but repeats its members first, so that the superclass's description fits both.
//
// References and embedded instances are pointer members (null: NULL); the instance owns one count on each,
// also on those in its arrays of references.
struct CIMPLE_CIMPLE_LINKAGE Instance
{
    uint32 __magic; // CIMPLE_INSTANCE_MAGIC
    Atomic __refs;  // 1 when created
    const Meta_Class* meta_class;
    String __name_space; // may be empty
    static const Meta_Class static_meta_class;
};

// Makes an instance whose count is 1. Properties are zero or empty. Without defaults they are not null; with
// defaults each has its default from the schema or is null. References are null; arrays of references are
// empty and never null. Throws std::bad_alloc.
Instance* create(const Meta_Class* meta_class, bool defaults = false);

// The same for the object that carries a method's parameters; its meta_class points to the Meta_Method.
Instance* create(const Meta_Method* meta_method);

// Destroys and frees regardless of the count. Not for null.
void destroy(Instance* instance);

// The same, and null is let through.
void destroyer(Instance* instance);

// Deep copies whose count is 1. key_clone copies only the keys; the rest is null and the namespace empty.
Instance* clone(const Instance* instance);
Instance* key_clone(const Instance* instance);

// Count up and down; the last unref destroys. Null is let through.
void ref(const Instance* instance);
void unref(const Instance* instance);

// Resets every feature and makes it null, releases references, empties the namespace.
void clear(Instance* instance);

// Copies all features (not the namespace), references deeply. Both must be of the same class (the same
// description); otherwise nothing is copied. With a model: only features that are not null in the model.
void copy(Instance* dest, const Instance* src);
void copy(Instance* dest, const Instance* src, const Instance* model);

// Copies the keys.
void copy_keys(Instance* dest, const Instance* src);

// Whether `b` has every key of `a` with the same name, type and value. Referenced instances compare by their
// keys if the declared classes are related. Names of classes and namespaces do not count.
bool key_eq(const Instance* a, const Instance* b);

// Same class, same namespace, all features equal, referenced instances identical.
bool identical(const Instance* a, const Instance* b);

bool keys_non_null(const Instance* instance);

// Sets the null flags of properties (scalar and array; never of references), values stay.
void __set_null_flags(const Instance* instance, bool include_keys, bool include_non_keys, uint8 flag);

inline void nullify_properties(const Instance* instance)
{
    __set_null_flags(instance, true, true, 1);
}
inline void de_nullify_properties(const Instance* instance)
{
    __set_null_flags(instance, true, true, 0);
}
inline void nullify_keys(const Instance* instance)
{
    __set_null_flags(instance, true, false, 1);
}
inline void nullify_non_keys(const Instance* instance)
{
    __set_null_flags(instance, false, true, 1);
}
inline void de_nullify_keys(const Instance* instance)
{
    __set_null_flags(instance, true, false, 0);
}

// Turns an instance into a model (a mask): listed properties that are no keys become not null, other non-keys
// null; keys stay, or become null without keepKeys. A listed null reference gets a blank instance. Without a
// list all properties become not null. Unknown names are ignored. The list ends with a null pointer. 0, or -1
// if it names a method.
int filter_properties(Instance* instance, const char* const* properties, boolean keepKeys = true);

inline const char* class_name_of(const Instance* instance)
{
    return instance->meta_class->name;
}

// The instance if its class is `meta_class` or derives from it, otherwise null; for null as well.
Instance* __cast(const Meta_Class* meta_class, const Instance* instance);

// cast<T*>(x): x as a T if its class is T or a subclass, otherwise null; for null as well.
template <class P>
inline P cast(const Instance* instance)
{
    typedef typename std::remove_cv<typename std::remove_pointer<P>::type>::type Class;
    return static_cast<P>(__cast(&Class::static_meta_class, instance));
}

template <class T>
inline bool is_a(const Instance* instance)
{
    return __cast(&T::static_meta_class, instance) != nullptr;
}

// Finds the other ends of an association instance as seen from `instance`. It can be followed from each
// reference that is the instance itself (of the reference's declared class, with the same keys) and named
// `role`, to all other references, of which those named `result_role` and of `result_class` or a subclass are
// collected. An instance that is joined to itself is its own other end, once. Empty or null texts filter
// nothing; null references are passed over. The collected pointers are borrowed. Their number, or -1 if the
// association cannot be followed.
ssize_t get_associators(const Instance* instance,
                        const Instance* association_instance,
                        const char* result_class,
                        const char* role,
                        const char* result_role,
                        const Instance* associators[CIMPLE_MAX_REFERENCES_PER_CLASS]);

// Whether some reference of `reference` (named `role`, unless that is empty or null) has the keys of
// `instance`.
bool is_reference_of(const Instance* instance, const Instance* reference, const char* role);

// Diagnostic text; only keys of nested instances are shown.
void print(const Instance* instance, bool keys_only = false);
void fprint(FILE* os, const Instance* instance, bool keys_only = false);

// "Class.k1=v1,k2=\"v2\"", references as quoted paths: 0, or -1 without keys, with a null or an array among
// them.
int instance_to_model_path(const Instance* instance, String& path);

// The inverse, for boolean, integer, string and reference keys. The class is looked up from `source`. Null on
// any error; the caller owns the result, whose other properties are null.
Instance* model_path_to_instance(const Meta_Class* source, const char* path);

// Parses one value into a property; appends it to an array. 0, or -1 if the text does not fit the type.
int __put_property_from_str(Instance* instance, const Meta_Property* mp, const char* str);

// Fields by description.
inline void* __property_of(const Instance* instance, const Meta_Property* mp)
{
    return reinterpret_cast<char*>(const_cast<Instance*>(instance)) + mp->offset;
}
inline Instance*& __ref_of(const Instance* instance, const Meta_Reference* mr)
{
    return *reinterpret_cast<Instance**>(reinterpret_cast<char*>(const_cast<Instance*>(instance)) +
                                         mr->offset);
}
inline Property<Array_Instance>& __array_ref_of(const Instance* instance, const Meta_Reference* mr)
{
    return *reinterpret_cast<Property<Array_Instance>*>(
        reinterpret_cast<char*>(const_cast<Instance*>(instance)) + mr->offset);
}

// Gives every null scalar reference a new instance of its declared class.
void __create_refs(Instance* instance);

// Calls `proc` for the instance and everything reachable through references. Null references are passed over.
typedef void (*__Visit_Proc)(Instance* instance, void* client_data);
void __visit(Instance* instance, __Visit_Proc proc, void* client_data);

// Sets the namespace of the instance and everything reachable where it is empty, or everywhere with `force`.
void __set_name_space_recursive(Instance* instance, const char* name_space, bool force);

CIMPLE_NAMESPACE_END

#define CIMPLE_CLASS(CLASS)                                                                                  \
  public:                                                                                                    \
    static const cimple::Meta_Class static_meta_class;                                                       \
    static CLASS* create(bool defaults = false)                                                              \
    {                                                                                                        \
        return static_cast<CLASS*>(cimple::create(&static_meta_class, defaults));                            \
    }                                                                                                        \
    CIMPLE_OBJECT(CLASS)

#define CIMPLE_METHOD(METHOD)                                                                                \
  public:                                                                                                    \
    static const cimple::Meta_Method static_meta_class;                                                      \
    static METHOD* create()                                                                                  \
    {                                                                                                        \
        return static_cast<METHOD*>(cimple::create(&static_meta_class));                                     \
    }                                                                                                        \
    CIMPLE_OBJECT(METHOD)

// What classes and method objects share: they exist only on the heap, made by create() or clone().
#define CIMPLE_OBJECT(CLASS)                                                                                 \
    static void destroy(CLASS* instance)                                                                     \
    {                                                                                                        \
        cimple::destroy(instance);                                                                           \
    }                                                                                                        \
    CLASS* clone() const                                                                                     \
    {                                                                                                        \
        return static_cast<CLASS*>(cimple::clone(this));                                                     \
    }                                                                                                        \
                                                                                                             \
  private:                                                                                                   \
    CLASS() {}                                                                                               \
    ~CLASS() {}                                                                                              \
                                                                                                             \
  public:

#endif
