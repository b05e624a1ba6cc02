// Platform facts and general macros that every other toolkit header builds on.
#ifndef CIMPLE_CONFIG_H
#define CIMPLE_CONFIG_H

#include <cassert>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/types.h>

#define CIMPLE_MAJOR 2
#define CIMPLE_MINOR 0
#define CIMPLE_REVISION 12
#define CIMPLE_VERSION ((CIMPLE_MAJOR << 24) | (CIMPLE_MINOR << 16) | (CIMPLE_REVISION << 8))
#define CIMPLE_VERSION_STRING "2.0.12"

#define CIMPLE_UNIX
#define CIMPLE_OS_LINUX
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#define CIMPLE_LITTLE_ENDIAN
#else
#define CIMPLE_BIG_ENDIAN
#endif

#define CIMPLE_LLU "%llu"
#define CIMPLE_LLD "%lld"

#define CIMPLE_NAMESPACE_BEGIN                                                                               \
    namespace cimple                                                                                         \
    {
#define CIMPLE_NAMESPACE_END }

#define CIMPLE_ENTRY_POINT extern "C"
#define CIMPLE_EXPORT __attribute__((visibility("default")))
#define CIMPLE_IMPORT
#define CIMPLE_HIDE __attribute__((visibility("hidden")))

// The library is archived and becomes a hidden part of whatever links it.
#define CIMPLE_CIMPLE_LINKAGE
#ifdef CIMPLE_INTERNAL
#define CIMPLE_LINKAGE CIMPLE_EXPORT
#else
#define CIMPLE_LINKAGE CIMPLE_IMPORT
#endif

#define CIMPLE_UNUSED __attribute__((unused))
#define CIMPLE_PRINTF_ATTR(FORMAT_INDEX, ARGS_INDEX) __attribute__((format(printf, FORMAT_INDEX, ARGS_INDEX)))

#define CIMPLE_FUNCTION __FUNCTION__
#define CIMPLE_FL __FILE__, __LINE__
#define CIMPLE_TRACE printf("CIMPLE_TRACE: %s(%d)\n", __FILE__, __LINE__)
#define CIMPLE_WARNING(X) fprintf(stderr, "CIMPLE_WARNING: %s(%d): %s\n", __FILE__, __LINE__, #X)
#define CIMPLE_RETURN(X)                                                                                     \
    do                                                                                                       \
    {                                                                                                        \
        fprintf(stderr, "CIMPLE_RETURN: %s(%d)\n", __FILE__, __LINE__);                                      \
        return X;                                                                                            \
    } while (0)

#define CIMPLE_ARRAY_SIZE(X) (sizeof(X) / sizeof((X)[0]))
#define CIMPLE_BIT(N) (1U << (N))
#define CIMPLE_PASTE_AUX(X, Y) X##Y
#define CIMPLE_PASTE(X, Y) CIMPLE_PASTE_AUX(X, Y)

// Byte offset of a member as a constant. Classes derive from Instance and so are not of standard layout; both
// supported compilers define the offset all the same, since no base is virtual.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#define CIMPLE_OFF(CLASS, FIELD) offsetof(CLASS, FIELD)

#define CIMPLE_RESTART(EXPR, RC)                                                                             \
    do                                                                                                       \
    {                                                                                                        \
        (RC) = (EXPR);                                                                                       \
    } while ((RC) == -1 && errno == EINTR)

#define CIMPLE_MALLOC(T) static_cast<T*>(malloc(sizeof(T)))
#define CIMPLE_CALLOC(T) static_cast<T*>(calloc(1, sizeof(T)))
#define CIMPLE_REALLOC(P, N, T) static_cast<T*>(realloc((P), (N) * sizeof(T)))

CIMPLE_NAMESPACE_BEGIN

typedef bool boolean;
typedef unsigned char uint8;
typedef signed char sint8;
typedef unsigned short uint16;
typedef signed short sint16;
typedef unsigned int uint32;
typedef signed int sint32;
typedef unsigned long long uint64;
typedef signed long long sint64;
typedef float real32;
typedef double real64;

static_assert(sizeof(boolean) == 1 && sizeof(uint8) == 1 && sizeof(uint16) == 2 && sizeof(uint32) == 4 &&
                  sizeof(uint64) == 8 && sizeof(real32) == 4 && sizeof(real64) == 8,
              "CIM's fixed-width types (DSP0004, intrinsic data types)");

// Prints the failed condition to stderr and aborts.
[[noreturn]] void __cimple_assert(const char* file, size_t line, const char* condition);

CIMPLE_NAMESPACE_END

#define CIMPLE_UINT64_LITERAL(X) (static_cast<cimple::uint64>(X##ULL))
#define CIMPLE_SINT64_LITERAL(X) (static_cast<cimple::sint64>(X##LL))

#define CIMPLE_UINT8_MIN static_cast<cimple::uint8>(0)
#define CIMPLE_UINT8_MAX static_cast<cimple::uint8>(UCHAR_MAX)
#define CIMPLE_SINT8_MIN static_cast<cimple::sint8>(SCHAR_MIN)
#define CIMPLE_SINT8_MAX static_cast<cimple::sint8>(SCHAR_MAX)
#define CIMPLE_UINT16_MIN static_cast<cimple::uint16>(0)
#define CIMPLE_UINT16_MAX static_cast<cimple::uint16>(USHRT_MAX)
#define CIMPLE_SINT16_MIN static_cast<cimple::sint16>(SHRT_MIN)
#define CIMPLE_SINT16_MAX static_cast<cimple::sint16>(SHRT_MAX)
#define CIMPLE_UINT32_MIN static_cast<cimple::uint32>(0)
#define CIMPLE_UINT32_MAX static_cast<cimple::uint32>(UINT_MAX)
#define CIMPLE_SINT32_MIN static_cast<cimple::sint32>(INT_MIN)
#define CIMPLE_SINT32_MAX static_cast<cimple::sint32>(INT_MAX)
#define CIMPLE_UINT64_MIN static_cast<cimple::uint64>(0)
#define CIMPLE_UINT64_MAX static_cast<cimple::uint64>(ULLONG_MAX)
#define CIMPLE_SINT64_MIN static_cast<cimple::sint64>(LLONG_MIN)
#define CIMPLE_SINT64_MAX static_cast<cimple::sint64>(LLONG_MAX)

#ifdef CIMPLE_DEBUG
#define CIMPLE_ASSERT(COND)                                                                                  \
    do                                                                                                       \
    {                                                                                                        \
        if (!(COND))                                                                                         \
            cimple::__cimple_assert(__FILE__, __LINE__, #COND);                                              \
    } while (0)
#else
#define CIMPLE_ASSERT(COND)
#endif

// Every object that includes this header refers to the version it was compiled against, so that linking it
// with another version of the library fails instead of misreading instances.
extern int __cimple_version_2_0_12;
#ifndef CIMPLE_NO_VERSION_SYMBOL
CIMPLE_UNUSED static int& __cimple_version_symbol = __cimple_version_2_0_12;
#endif

#endif
