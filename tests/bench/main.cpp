// Runs every benchmark: vrax_bench <build directory>.
#include "tests/bench/benches.h"

#include <cstdio>
#include <exception>

#include <malloc.h>

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        std::fprintf(stderr, "usage: %s <build directory>\n", argv[0]);
        return 2;
    }
    // Memory of a map that was emptied is kept for the next load, as in a server with other maps above it on
    // the heap; otherwise large loads alone would pay for getting theirs from the system again.
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    try
    {
        bench::benchToolkit();
        bench::benchMaps();
        bench::benchLoads();
        bench::benchTopology();
        bench::benchZoning();
        bench::benchLogs();
        bench::benchWaiting();
        bench::benchDelivery();
        bench::benchDispatch();
        bench::benchCmpi(argv[1]);
        bench::benchAssociations(argv[1]);
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "%s: %s\n", argv[0], failure.what());
        return 1;
    }
}
