// The failure path of CIMPLE_ASSERT and the symbol that ties a module to this version of the library.
#include <cimple/config.h>

int __cimple_version_2_0_12 = 0;

CIMPLE_NAMESPACE_BEGIN

void __cimple_assert(const char* file, size_t line, const char* condition)
{
    fprintf(stderr, "CIMPLE_ASSERT: %s(%zu): %s\n", file, line, condition);
    abort();
}

CIMPLE_NAMESPACE_END
