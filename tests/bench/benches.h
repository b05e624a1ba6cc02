// The benchmarks, each of which prints its own tables.
#ifndef TESTS_BENCH_BENCHES_H
#define TESTS_BENCH_BENCHES_H

#include <cstddef>
#include <string>

namespace bench
{

// Ports of the local switch, growing tenfold up to the largest switch.
constexpr std::size_t kPortCounts[] = {15, 384, 1536};

void benchMaps();
void benchLoads();
void benchTopology();
void benchZoning();
void benchLogs();
void benchWaiting();
void benchDispatch();
void benchToolkit();
void benchDelivery();
// `buildDir` holds share/cimd/ and the module in lib/.
void benchCmpi(const std::string& buildDir);
void benchAssociations(const std::string& buildDir);

} // namespace bench

#endif
