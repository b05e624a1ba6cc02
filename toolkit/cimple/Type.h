// The CIM data types by code, and what can be asked about a code.
#ifndef CIMPLE_TYPE_H
#define CIMPLE_TYPE_H

#include <cimple/Array.h>
#include <cimple/Datetime.h>
#include <cimple/String.h>
#include <cimple/char16.h>
#include <cimple/config.h>

CIMPLE_NAMESPACE_BEGIN

enum Type
{
    BOOLEAN,
    UINT8,
    SINT8,
    UINT16,
    SINT16,
    UINT32,
    SINT32,
    UINT64,
    SINT64,
    REAL32,
    REAL64,
    CHAR16,
    STRING,
    DATETIME
};

extern size_t const type_size[];         // size of the C++ type, by code
extern size_t const literal_type_size[]; // the same, but strings and datetimes are const char*
extern const char* const type_name[];    // MOF's names: "boolean", "uint8", ...

// Calls MACRO(C++ type, code) for every type. Keeps the lists of overloads below and elsewhere complete.
#define CIMPLE_FOR_EACH_TYPE(MACRO)                                                                          \
    MACRO(boolean, BOOLEAN)                                                                                  \
    MACRO(uint8, UINT8)                                                                                      \
    MACRO(sint8, SINT8)                                                                                      \
    MACRO(uint16, UINT16)                                                                                    \
    MACRO(sint16, SINT16)                                                                                    \
    MACRO(uint32, UINT32)                                                                                    \
    MACRO(sint32, SINT32)                                                                                    \
    MACRO(uint64, UINT64)                                                                                    \
    MACRO(sint64, SINT64)                                                                                    \
    MACRO(real32, REAL32)                                                                                    \
    MACRO(real64, REAL64)                                                                                    \
    MACRO(char16, CHAR16)                                                                                    \
    MACRO(String, STRING)                                                                                    \
    MACRO(Datetime, DATETIME)

#define CIMPLE_DEFINE_TYPE_OF(T, CODE)                                                                       \
    inline Type type_of(const T&)                                                                            \
    {                                                                                                        \
        return CODE;                                                                                         \
    }                                                                                                        \
    inline void __clear(T& x)                                                                                \
    {                                                                                                        \
        x = T();                                                                                             \
    }
CIMPLE_FOR_EACH_TYPE(CIMPLE_DEFINE_TYPE_OF)
#undef CIMPLE_DEFINE_TYPE_OF

inline bool is_integer(Type type)
{
    return type >= UINT8 && type <= SINT64;
}
inline bool is_real(Type type)
{
    return type == REAL32 || type == REAL64;
}

// Letter case is ignored: 0, or -1 if the name is unknown.
int type_name_to_type(const char* name, Type& type);

// Diagnostic text of literal storage, in which strings and datetimes are const char*. Text is quoted and
// escaped.
void fprint_scalar(FILE* os, Type type, const void* value);
void print_scalar(Type type, const void* value);
void fprint_array(FILE* os, Type type, const void* elements, size_t n);
void print_array(Type type, const void* elements, size_t n);
void fprint_string(FILE* os, const char* text);
void print_string(const char* text);

CIMPLE_NAMESPACE_END

#endif
