// The operations on values, one table for each type and for arrays of it.
#include <cimple/Value_Ops.h>
#include <string_view>

CIMPLE_NAMESPACE_BEGIN

namespace
{
template <class T>
size_t hash_of(const T& x)
{
    return std::hash<T>()(x);
}

size_t hash_of(const char16& x)
{
    return x.code();
}

size_t hash_of(const String& x)
{
    return std::hash<std::string_view>()(std::string_view(x.c_str(), x.size()));
}

size_t hash_of(const Datetime& x)
{
    return std::hash<uint64>()(x.usec()) + static_cast<size_t>(x.offset());
}

template <class T>
size_t hash_of(const Array<T>& x)
{
    size_t hash = x.size();
    for (size_t i = 0; i < x.size(); i++)
        hash = hash * 31 + hash_of(x[i]);
    return hash;
}

template <class T>
void print_one(FILE* os, const T& x)
{
    fprint_scalar(os, type_of(x), &x);
}

void print_one(FILE* os, const String& x)
{
    fprint_string(os, x.c_str());
}

void print_one(FILE* os, const Datetime& x)
{
    fputs(x.ascii().c_str(), os);
}

template <class T>
void print_one(FILE* os, const Array<T>& x)
{
    fputs("{", os);
    for (size_t i = 0; i < x.size(); i++)
    {
        fputs(i > 0 ? ", " : " ", os);
        print_one(os, x[i]);
    }
    fputs(x.size() > 0 ? " }" : "}", os);
}

// Defaults are literals: texts of strings and datetimes are const char*.
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
void assign_default(T& x, const Meta_Value* meta_value)
{
    x = T(reinterpret_cast<const Meta_Value_Scalar<typename Literal<T>::type>*>(meta_value)->value);
}

template <class T>
void assign_default(Array<T>& x, const Meta_Value* meta_value)
{
    const auto* const values =
        reinterpret_cast<const Meta_Value_Array<typename Literal<T>::type>*>(meta_value);
    x.clear();
    x.reserve(values->num_elements);
    for (size_t i = 0; i < values->num_elements; i++)
        x.append(T(values->elements[i]));
}

template <class T>
constexpr Value_Ops make_ops()
{
    return {sizeof(T),
            [](void* value) { new (value) T(); },
            [](void* value) { static_cast<T*>(value)->~T(); },
            [](void* value) { __clear(*static_cast<T*>(value)); },
            [](void* dest, const void* src) { *static_cast<T*>(dest) = *static_cast<const T*>(src); },
            [](void* value, const Meta_Value* mv) { assign_default(*static_cast<T*>(value), mv); },
            [](const void* v1, const void* v2)
            { return *static_cast<const T*>(v1) == *static_cast<const T*>(v2); },
            [](const void* value) { return hash_of(*static_cast<const T*>(value)); },
            [](FILE* os, const void* value) { print_one(os, *static_cast<const T*>(value)); }};
}

#define CIMPLE_SCALAR_OPS(T, CODE) make_ops<T>(),
#define CIMPLE_ARRAY_OPS(T, CODE) make_ops<Array<T>>(),
constexpr Value_Ops kScalarOps[] = {CIMPLE_FOR_EACH_TYPE(CIMPLE_SCALAR_OPS)};
constexpr Value_Ops kArrayOps[] = {CIMPLE_FOR_EACH_TYPE(CIMPLE_ARRAY_OPS)};
} // namespace

const Value_Ops& value_ops(const Meta_Property* mp)
{
    CIMPLE_ASSERT(mp->type <= DATETIME);
    return mp->subscript == 0 ? kScalarOps[mp->type] : kArrayOps[mp->type];
}

size_t type_size_of(const Meta_Property* mp)
{
    return value_ops(mp).size;
}

uint8& null_of(const Meta_Property* mp, const void* field)
{
    return static_cast<uint8*>(const_cast<void*>(field))[type_size_of(mp)];
}

bool property_eq(const Meta_Property* mp, const void* field1, const void* field2)
{
    const bool null1 = null_of(mp, field1) != 0;
    const bool null2 = null_of(mp, field2) != 0;
    return null1 == null2 && (null1 || value_ops(mp).equal(field1, field2));
}

CIMPLE_NAMESPACE_END
