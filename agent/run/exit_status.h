// What cimd's exit status means; the serving process tells its supervisor in the same words.
#ifndef AGENT_RUN_EXIT_STATUS_H
#define AGENT_RUN_EXIT_STATUS_H

namespace cimd
{

constexpr int kExitUnfinished = 1; ///< A request in flight did not finish within the grace at stop.
constexpr int kExitNotStarted = 2; ///< Options, files or addresses are wrong: trying again does not help.
constexpr int kExitHung = 4;       ///< Too many operations never came back from their providers.

} // namespace cimd

#endif
