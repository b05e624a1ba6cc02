// The file that follows the durable part of the simulated switch.
#ifndef SIMULATOR_ENGINE_STATEFILE_H
#define SIMULATOR_ENGINE_STATEFILE_H

#include "simulator/FileDescriptor.h"
#include "simulator/thread_annotations.h"

#include <atomic>
#include <functional>
#include <string>

namespace simulator
{

// One process writes a state file at a time: it has a lock on "FILE.lock", which ends with the process. Each
// state is written in one step, so that whoever reads the file at any moment, or after a crash, finds one
// whole state.
class StateFile
{
  public:
    using Text = std::function<std::string()>; // the present state

    // Whether there is such a file, to be kept next; nobody else can keep it from then on up to stop().
    // Throws ScenarioError when another process does.
    bool claim(const std::string& path) VRAX_EXCLUDES(_mutex);

    // Begins with the present state. Throws ScenarioError when it cannot be written; nothing is kept then.
    void keepIn(const std::string& path, const Text& text) VRAX_EXCLUDES(_mutex);
    void stop() VRAX_EXCLUDES(_mutex);

    // Writes the present state unless the file holds it. The caller's change is in the file when this
    // returns, whichever of several callers wrote it. A failure is told on standard error and leaves the file
    // as it was; the next change tries again.
    void update(const Text& text) noexcept VRAX_EXCLUDES(_mutex);

  private:
    void write(std::string text) VRAX_REQUIRES(_mutex);

    std::atomic<bool> _keeps{false};
    Mutex _mutex;
    std::string _path VRAX_GUARDED_BY(_mutex);
    FileDescriptor _lock VRAX_GUARDED_BY(_mutex); // the file that is locked
    std::string _written VRAX_GUARDED_BY(_mutex); // what the file holds
    std::string
        _complaint VRAX_GUARDED_BY(_mutex); // the last failure that was told; empty: none since a success
};

} // namespace simulator

#endif
