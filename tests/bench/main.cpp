// Runs every benchmark: vrax_bench <build directory>.
#include "tests/bench/benches.h"

#include <cstdio>
#include <exception>

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: %s <build directory>\n", argv[0]);
        return 2;
    }
    try
    {
        bench::benchMaps();
        bench::benchLoads();
        bench::benchTopology();
        bench::benchDispatch();
        bench::benchCmpi(argv[1]);
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
        return 1;
    }
}
