// Meta data of the test class that has one feature of every kind.
#include "demo_meta.h"

CIMPLE_NAMESPACE_BEGIN

namespace
{
template <class T>
struct Literal
{
    typedef T type;
};
template <>
struct Literal<String>
{
    typedef const char* type;
};
template <>
struct Literal<Datetime>
{
    typedef const char* type;
};

template <class T>
struct Code;
#define DEMO_CODE(T, CODE)                                                                                   \
    template <>                                                                                              \
    struct Code<T>                                                                                           \
    {                                                                                                        \
        static const Type value = CODE;                                                                      \
    };
CIMPLE_FOR_EACH_TYPE(DEMO_CODE)
#undef DEMO_CODE
} // namespace

DEMO_PROPERTY(Demo_Everything, Key, CIMPLE_FLAG_KEY | CIMPLE_FLAG_READ, UINT64, 0);

#define DEMO_DEFINE(T, NAME, X, Y)                                                                           \
    static const Meta_Value_Scalar<Literal<T>::type> _Default##NAME##_MV = {X};                              \
    static const Literal<T>::type _Default##NAME##Array_elements[] = {X, Y};                                 \
    static const Meta_Value_Array<Literal<T>::type> _Default##NAME##Array_MV = {                             \
        _Default##NAME##Array_elements, 2};                                                                  \
    DEMO_PROPERTY(Demo_Everything, The##NAME, CIMPLE_FLAG_READ, Code<T>::value, 0);                          \
    DEMO_PROPERTY(Demo_Everything, The##NAME##Array, CIMPLE_FLAG_READ, Code<T>::value, -1);                  \
    DEMO_PROPERTY_VALUE(                                                                                     \
        Demo_Everything, Default##NAME, CIMPLE_FLAG_READ, Code<T>::value, 0, &_Default##NAME##_MV);          \
    DEMO_PROPERTY_VALUE(Demo_Everything,                                                                     \
                        Default##NAME##Array,                                                                \
                        CIMPLE_FLAG_READ,                                                                    \
                        Code<T>::value,                                                                      \
                        2,                                                                                   \
                        &_Default##NAME##Array_MV);
DEMO_FOR_EACH_FEATURE(DEMO_DEFINE)
#undef DEMO_DEFINE

DEMO_REFERENCE(Demo_Everything, Embedded, CIMPLE_FLAG_EMBEDDED_INSTANCE, 0, Demo_Limits);
DEMO_REFERENCE(Demo_Everything, EmbeddedArray, CIMPLE_FLAG_EMBEDDED_INSTANCE, -1, Demo_Limits);
DEMO_REFERENCE(Demo_Everything, Object, CIMPLE_FLAG_EMBEDDED_OBJECT, 0, Instance);
DEMO_REFERENCE(Demo_Everything, ObjectArray, CIMPLE_FLAG_EMBEDDED_OBJECT, -1, Instance);

#define DEMO_ENTRIES(T, NAME, X, Y)                                                                          \
    DEMO_FEATURE_ENTRY(_Demo_Everything_The##NAME), DEMO_FEATURE_ENTRY(_Demo_Everything_The##NAME##Array),   \
        DEMO_FEATURE_ENTRY(_Demo_Everything_Default##NAME),                                                  \
        DEMO_FEATURE_ENTRY(_Demo_Everything_Default##NAME##Array),
static const Meta_Feature* _Demo_Everything_MFA[] = {DEMO_FEATURE_ENTRY(_Demo_Everything_Key),
                                                     DEMO_FOR_EACH_FEATURE(DEMO_ENTRIES)
                                                         DEMO_FEATURE_ENTRY(_Demo_Everything_Embedded),
                                                     DEMO_FEATURE_ENTRY(_Demo_Everything_EmbeddedArray),
                                                     DEMO_FEATURE_ENTRY(_Demo_Everything_Object),
                                                     DEMO_FEATURE_ENTRY(_Demo_Everything_ObjectArray)};
#undef DEMO_ENTRIES

#define DEMO_LOCALS(T, NAME, X, Y) {1}, {1}, {1}, {1},
static const Meta_Feature_Local _Demo_Everything_locals[] = {
    {1}, DEMO_FOR_EACH_FEATURE(DEMO_LOCALS){1}, {1}, {1}, {1}};
#undef DEMO_LOCALS

DEMO_CLASS(Demo_Everything, CIMPLE_FLAG_CLASS, nullptr, 1);

CIMPLE_NAMESPACE_END
