// Runs a fuzz target on files, so that its corpus is part of the ordinary tests and of any compiler's.
#include "tests/fuzz/fuzz.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace
{

namespace fs = std::filesystem;

void replay(const fs::path& file)
{
    std::ifstream in(file, std::ios::binary);
    std::ostringstream content;
    if (!(content << in.rdbuf()))
        throw std::runtime_error(file.string() + ": cannot be read, or is empty");
    std::printf("%s\n", file.c_str()); // the last one names the culprit
    std::fflush(stdout);
    const std::string text = content.str();
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
}

} // namespace

// Arguments are files and folders of files. 0 when every file was run and there was one.
int main(int argc, char* argv[])
try
{
    std::size_t files = 0;
    for (int i = 1; i < argc; ++i)
    {
        if (!fs::is_directory(argv[i]))
        {
            replay(argv[i]);
            ++files;
            continue;
        }
        for (const fs::directory_entry& entry : fs::directory_iterator(argv[i]))
        {
            replay(entry.path());
            ++files;
        }
    }
    std::printf("%zu files\n", files);
    return files != 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
catch (const std::exception& error)
{
    std::fprintf(stderr, "%s\n", error.what());
    return EXIT_FAILURE;
}
