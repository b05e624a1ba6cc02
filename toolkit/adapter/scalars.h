// One-to-one mapping between the toolkit's scalar types and CMPI's.
#ifndef TOOLKIT_ADAPTER_SCALARS_H
#define TOOLKIT_ADAPTER_SCALARS_H

#include <cimple/Features.h>
#include <cimple/cimple.h>
#include <cmpift.h>

#include <stdexcept>

namespace cimple_cmpi
{

// Scalar<T>: the CMPI type code of a toolkit type and the member of CMPIValue that carries it. Strings and
// datetimes are objects of the broker and have no member here.
template <class T>
struct Scalar;

#define CIMPLE_CMPI_SCALAR(T, MEMBER)                                                                        \
    template <>                                                                                              \
    struct Scalar<cimple::T>                                                                                 \
    {                                                                                                        \
        static constexpr CMPIType kType = CMPI_##MEMBER;                                                     \
        static constexpr auto kMember = &CMPIValue::MEMBER;                                                  \
    }
CIMPLE_CMPI_SCALAR(boolean, boolean);
CIMPLE_CMPI_SCALAR(uint8, uint8);
CIMPLE_CMPI_SCALAR(sint8, sint8);
CIMPLE_CMPI_SCALAR(uint16, uint16);
CIMPLE_CMPI_SCALAR(sint16, sint16);
CIMPLE_CMPI_SCALAR(uint32, uint32);
CIMPLE_CMPI_SCALAR(sint32, sint32);
CIMPLE_CMPI_SCALAR(uint64, uint64);
CIMPLE_CMPI_SCALAR(sint64, sint64);
CIMPLE_CMPI_SCALAR(real32, real32);
CIMPLE_CMPI_SCALAR(real64, real64);
CIMPLE_CMPI_SCALAR(char16, char16);
#undef CIMPLE_CMPI_SCALAR

template <>
struct Scalar<cimple::String>
{
    static constexpr CMPIType kType = CMPI_string;
};
template <>
struct Scalar<cimple::Datetime>
{
    static constexpr CMPIType kType = CMPI_dateTime;
};

// Calls f(T()) for the C++ type of a type code and returns its result.
template <class F>
auto withType(cimple::uint16 type, F f)
{
    switch (type)
    {
#define CIMPLE_CMPI_CASE(T, CODE)                                                                            \
    case cimple::CODE:                                                                                       \
        return f(cimple::T());
        CIMPLE_FOR_EACH_TYPE(CIMPLE_CMPI_CASE)
#undef CIMPLE_CMPI_CASE
    default:
        throw std::logic_error("a class description names an unknown type");
    }
}

// The CMPI type of a property, with the array bit for arrays.
inline CMPIType typeOf(const cimple::Meta_Property* mp)
{
    const CMPIType type = withType(mp->type, [](auto x) { return Scalar<decltype(x)>::kType; });
    return static_cast<CMPIType>(mp->subscript == 0 ? type : type | CMPI_ARRAY);
}

// The CMPI type of a reference or an embedded instance.
inline CMPIType typeOf(const cimple::Meta_Reference* mr)
{
    const bool embedded = mr->flags & (CIMPLE_FLAG_EMBEDDED_INSTANCE | CIMPLE_FLAG_EMBEDDED_OBJECT);
    const CMPIType type = embedded ? CMPI_instance : CMPI_ref;
    return static_cast<CMPIType>(mr->subscript == 0 ? type : type | CMPI_ARRAY);
}

} // namespace cimple_cmpi

#endif
