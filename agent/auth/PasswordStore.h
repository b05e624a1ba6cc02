// The password file as the running agent sees it.
#ifndef AGENT_AUTH_PASSWORDSTORE_H
#define AGENT_AUTH_PASSWORDSTORE_H

#include "agent/auth/PasswordTable.h"
#include "agent/auth/private_file.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace cimd
{

// One state of the file.
struct PasswordState
{
    PasswordTable table;
    unsigned long generation; ///< Another one after each change.
};

// What a faulty file means when it is read for the first time.
enum class FirstRead
{
    MustSucceed, ///< The start fails: somebody is there to read why.
    MayFail      ///< Nobody can log in until it is mended: a process that replaces another has to serve.
};

// Follows the file. All members may be called from any thread.
class PasswordStore
{
  public:
    // Throws std::runtime_error, "path: reason" or "path:line: reason".
    PasswordStore(std::string path, FirstRead firstRead);

    // The generation in force, or nothing if the file has changed: current() reads it. Does not wait.
    std::optional<unsigned long> settledGeneration() const;

    // Reads the file if it changed. One that is faulty is reported once and leaves the users as they were.
    std::shared_ptr<const PasswordState> current();

  private:
    void load();

    const std::string _path;
    std::mutex _loading; // held while the file is read; before _mutex
    mutable std::mutex _mutex;
    std::optional<FileStamp> _seen; // of the latest try to read
    std::shared_ptr<const PasswordState> _state;
};

} // namespace cimd

#endif
