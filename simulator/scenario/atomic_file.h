// Whole files: replaced in one step, read at once.
#ifndef SIMULATOR_SCENARIO_ATOMIC_FILE_H
#define SIMULATOR_SCENARIO_ATOMIC_FILE_H

#include <string>
#include <string_view>

namespace simulator
{

// Writes `text` beside `path`, syncs it and renames it over `path`. On failure `path` is as before, nothing
// is left beside it, and a std::system_error says which step failed on which file.
void replaceFile(const std::string& path, std::string_view text);

// Throws a std::system_error when the file cannot be read, or is longer than `limit` bytes.
std::string readFile(const std::string& path, std::size_t limit = std::string::npos);

// False also when the file cannot be read.
bool holdsText(const std::string& path, std::string_view text);

} // namespace simulator

#endif
