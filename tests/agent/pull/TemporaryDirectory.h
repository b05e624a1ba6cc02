// A directory that goes with its scope.
#ifndef TESTS_AGENT_PULL_TEMPORARYDIRECTORY_H
#define TESTS_AGENT_PULL_TEMPORARYDIRECTORY_H

#include <cstdlib>
#include <filesystem>
#include <string>

namespace cimd
{

class TemporaryDirectory
{
  public:
    TemporaryDirectory() : _path(::mkdtemp(_name)) {}
    ~TemporaryDirectory() { std::filesystem::remove_all(_path); }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& path() const { return _path; }
    bool isEmpty() const { return std::filesystem::is_empty(_path); }

  private:
    char _name[32] = "/tmp/cimd-test-XXXXXX";
    const std::string _path;
};

} // namespace cimd

#endif
