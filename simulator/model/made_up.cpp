// Numbers that follow from a seed.
#include "simulator/model/made_up.h"

namespace simulator
{

std::uint64_t mix(std::uint64_t seed, std::uint64_t place)
{
    // The finaliser of the public-domain splitmix64 generator, on a sequence of odd stride.
    std::uint64_t z = seed + 0x9E3779B97F4A7C15ULL * (place + 1);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

std::vector<std::uint8_t> madeUpBytes(std::uint64_t seed, std::size_t size)
{
    std::vector<std::uint8_t> bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(mix(seed, i) >> 56);
    return bytes;
}

} // namespace simulator
