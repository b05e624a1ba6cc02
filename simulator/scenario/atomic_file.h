// Replaces a file in one step.
#ifndef SIMULATOR_SCENARIO_ATOMIC_FILE_H
#define SIMULATOR_SCENARIO_ATOMIC_FILE_H

#include <string>
#include <string_view>

namespace simulator
{

// Writes `text` beside `path`, syncs it and renames it over `path`. On failure `path` is as before, nothing
// is left beside it, and a std::system_error says which step failed on which file.
void replaceFile(const std::string& path, std::string_view text);

} // namespace simulator

#endif
