// The bounds on everything a client can make the agent hold or do, in one table.
#pragma once

#include <chrono>
#include <cstddef>

namespace cimd
{

/** The defaults suit a switch: a handful of management stations, little memory. Tests pass smaller ones. */
struct Limits
{
    std::size_t headBytes = 32 * 1024;           ///< Request line, headers and their bookkeeping: HTTP 431.
    std::size_t bodyBytes = 1024 * 1024;         ///< A request's body: HTTP 413.
    std::size_t discardBytes = 16 * 1024 * 1024; ///< Body of a refused request still read before hanging up.
    unsigned connections = 64;                   ///< Open at once; further ones wait in the backlog.
    unsigned backlog = 128;                      ///< Connections the kernel keeps waiting.
    unsigned workers = 8;                        ///< Threads that run operations.
    unsigned queuedRequests = 64;                ///< Waiting for a worker: HTTP 503 beyond.
    unsigned idleSeconds = 60;                   ///< A connection without traffic is closed.
    std::chrono::seconds stopGrace{30};          ///< Time that requests in flight get at stop.
    unsigned xmlDepth = 64;                      ///< Nested elements in a request: HTTP 400.
    std::size_t parameters = 64; ///< Of one operation or method: CIM status 4, as are the next three.
    std::size_t pathKeys = 64;   ///< Keys of one path.
    std::size_t instanceProperties = 1024; ///< Properties of one instance, names in one PropertyList.
    unsigned embeddedDepth = 8;            ///< Embedded objects inside embedded objects.
};

} // namespace cimd
