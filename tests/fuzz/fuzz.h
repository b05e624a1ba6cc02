// What every fuzz target defines, and how it says that it found something.
#ifndef TESTS_FUZZ_FUZZ_H
#define TESTS_FUZZ_FUZZ_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

// Runs the target on one input; called by libFuzzer, or by replay.cpp for the files of a corpus.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz
{

inline std::string_view textOf(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

// The first line without its end, and what follows it.
inline std::pair<std::string_view, std::string_view> splitLine(std::string_view text)
{
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos)
        return {text, {}};
    return {text.substr(0, end), text.substr(end + 1)};
}

// Two texts that must be equal; ends the program, which makes the input a finding, if they are not.
inline void requireEqual(const char* what, std::string_view expected, std::string_view found)
{
    if (expected == found)
        return;
    std::fprintf(stderr,
                 "%s: expected\n%.*s\nfound\n%.*s\n",
                 what,
                 static_cast<int>(expected.size()),
                 expected.data(),
                 static_cast<int>(found.size()),
                 found.data());
    std::abort();
}

} // namespace fuzz

#endif
