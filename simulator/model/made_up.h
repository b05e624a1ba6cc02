// Everything made up comes from here: numbers that follow from a seed, the same on every machine.
#ifndef SIMULATOR_MODEL_MADE_UP_H
#define SIMULATOR_MODEL_MADE_UP_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace simulator
{

// A well-mixed number of a seed and a place.
std::uint64_t mix(std::uint64_t seed, std::uint64_t place);

std::vector<std::uint8_t> madeUpBytes(std::uint64_t seed, std::size_t size);

} // namespace simulator

#endif
