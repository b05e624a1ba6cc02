// The requests being answered, kept in memory that outlives a crash of the process that answers them.
#ifndef AGENT_RUN_INFLIGHT_H
#define AGENT_RUN_INFLIGHT_H

#include "agent/run/SharedArray.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace cimd
{

// A fixed number of places in a mapping that is shared with processes forked later. A request that finds no
// free place is answered without being recorded. All members may be called from any thread.
class InFlight
{
    struct Slot;

  public:
    // Throws std::system_error when there is no memory.
    explicit InFlight(std::size_t slots);
    ~InFlight();
    InFlight(const InFlight&) = delete;
    InFlight& operator=(const InFlight&) = delete;

    struct Request
    {
        std::string operation; ///< Long texts are cut, as in the next two.
        std::string className; ///< Empty until the request was read that far.
        std::string peer;
        std::chrono::milliseconds age;
        bool isCulprit; ///< The process crashed on this request's thread.

        // "GetInstance VRAX_FCPort: 192.0.2.7:49152: in flight for 0.003 s, crashed here"
        std::string text() const;
    };

    // A request that comes or goes meanwhile may be missing or have mixed texts.
    std::vector<Request> list() const;
    // Frees all places; for the survivor of a process that took them.
    void clear();

    // Marks the request of the calling thread as the one that the process crashed on. Can be called from a
    // signal handler.
    static void markCulprit() noexcept;

    // Holds a place for the scope of a request; lives on the thread that answers it.
    class Entry
    {
      public:
        // Records nothing for a null table, which outlives the entry.
        Entry(InFlight* table, std::string_view operation, std::string_view peer);
        ~Entry();
        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

        // Says which class the request is about.
        void about(std::string_view className);

      private:
        Slot* const _slot;
        Slot* const _outer; // of this thread's request that this one is part of
    };

  private:
    Slot* take();

    const SharedArray<Slot> _slots;
    const std::chrono::steady_clock::time_point _start;
    std::atomic<std::size_t> _next{0}; // where the search for a free place begins
};

} // namespace cimd

#endif
