// Backing up and restoring the configuration of the switch as one image.
#ifndef PLATFORM_CONFIGURATION_H
#define PLATFORM_CONFIGURATION_H

#include <cstddef>

// The image of the switch's configuration: written by backupConfig(), read by restoreConfig().
constexpr const char* kConfigImage = "/norvik/conf/images/configdata";
// An image that was uploaded and waits to be put in the other's place.
constexpr const char* kNewConfigImage = "/norvik/conf/images/new_configdata";

// Makes kConfigImage the image of the present configuration. Returns 0, or an xpl_Status and the file is what
// it was: at any moment it is a whole image or none.
int backupConfig();

// Makes the configuration what kConfigImage says. The caller holds the administrative mode by reqAdminMode().
// Returns 0, or an xpl_Status and the configuration is what it was: the mode is not the caller's, or the file
// is missing or no image of this switch.
int restoreConfig();

// Takes the administrative mode of the switch for the calling thread. Returns 0, or an xpl_Status: somebody
// has it.
int reqAdminMode();

// Gives back what the calling thread took by reqAdminMode(). Returns 0, or an xpl_Status and the mode is
// whose it was.
int releaseAdminMode();

// Where this machine keeps a file that the switch knows by an absolute path: on a switch that path itself.
// Writes the place, NUL-terminated, into `place` and makes sure that its directory exists. Returns 0, or an
// xpl_Status: the place does not fit, or the directory cannot be made.
int locateSwitchFile(const char* switchPath, char* place, std::size_t sizeBytes);

// Bytes that a place takes at most, terminator included.
constexpr std::size_t kPlaceSize = 4096;

#endif
