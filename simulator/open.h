// Starting and saving the simulated switch from a program that hosts the platform library.
#ifndef SIMULATOR_OPEN_H
#define SIMULATOR_OPEN_H

#include <stddef.h>

// Both return 0, or -1 with a text in `message` (cut to messageSize bytes, always terminated; may be null)
// and nothing is changed. They may be called at any time and from any thread that holds nothing of the data
// cache.
extern "C"
{

    // Replaces the fabric by that of a scenario file. When it was never called, the first platform call opens
    // the scenario file that the environment variable VRAX_SCENARIO names, or, without it, the built-in
    // scenario; a file that cannot be used ends the process with a message on standard error.
    int vraxsim_open(const char* scenarioPath, char* message, size_t messageSize);

    // Writes the durable part of the fabric as a scenario file, in one step: configuration, names, switches,
    // nodes and links, but no counters.
    int vraxsim_save(const char* scenarioPath, char* message, size_t messageSize);

    // Starts from the durable part that the file holds, when it exists, and from now on writes to it what
    // vraxsim_save would, before each call that changes something returns. A null path ends that.
    int vraxsim_keep(const char* scenarioPath, char* message, size_t messageSize);

    // Takes commands (see switchctl) at a Unix socket with this path, which only the user of the process can
    // use. A null path ends that; so does the end of the process.
    int vraxsim_listen(const char* socketPath, char* message, size_t messageSize);
}

#endif
