// Where the simulated switch keeps its files, so that nothing else on the machine is touched.
#ifndef SIMULATOR_ENGINE_IMAGEDIRECTORY_H
#define SIMULATOR_ENGINE_IMAGEDIRECTORY_H

#include "simulator/thread_annotations.h"

#include <string>
#include <string_view>
#include <sys/types.h>

namespace simulator
{

// The directory that stands for the root of the switch's file system. The one that the environment variable
// VRAX_IMAGE_DIR names is made if need be and stays; without it the process makes one of its own below TMPDIR
// (or /tmp), which goes when the process exits. Only the process's user may enter what is made.
class ImageDirectory
{
  public:
    static ImageDirectory& instance();
    ~ImageDirectory();
    ImageDirectory(const ImageDirectory&) = delete;
    ImageDirectory& operator=(const ImageDirectory&) = delete;

    // Where the file with this absolute path of the switch is kept; makes the directory that it lies in.
    // Throws std::system_error, or std::invalid_argument for a path that is not absolute or leads upwards.
    std::string locate(std::string_view switchPath);

  private:
    ImageDirectory() = default;

    Mutex _mutex;
    std::string _root VRAX_GUARDED_BY(_mutex);    // empty until the first use
    pid_t _removedBy VRAX_GUARDED_BY(_mutex) = 0; // the process that made it for itself
};

} // namespace simulator

#endif
