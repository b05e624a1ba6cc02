// One load of a provider's map, which must succeed.
#ifndef TESTS_BENCH_COLD_LOAD_H
#define TESTS_BENCH_COLD_LOAD_H

#include <cimple/cimple.h>

#include <stdexcept>

namespace bench
{

template <class PROVIDER>
void load()
{
    if (PROVIDER().load() != cimple::LOAD_OK)
        throw std::runtime_error("the load failed");
}

} // namespace bench

#endif
