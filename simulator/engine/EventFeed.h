// The switch's events as lines for those who watch them beside their receiver.
#ifndef SIMULATOR_ENGINE_EVENTFEED_H
#define SIMULATOR_ENGINE_EVENTFEED_H

#include "simulator/model/SwitchEvent.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace simulator
{

// Its lock is a leaf.
class EventFeed
{
  public:
    // Sees what happens while it lives. Of more than so many events that it has not taken, the oldest are
    // lost, and a line in their place says how many.
    class Watch
    {
      public:
        static constexpr std::size_t kMostLines = 10000;

        explicit Watch(EventFeed& feed);
        ~Watch();
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;

        // What has happened since the last call, a line each; empty when nothing came in that time.
        std::string next(std::chrono::milliseconds patience);

      private:
        friend class EventFeed;
        EventFeed& _feed;
        std::deque<std::string> _lines;
        std::size_t _lost = 0;
    };

    void put(const std::vector<SwitchEvent>& events);

  private:
    std::mutex _mutex;
    std::condition_variable _came;
    std::set<Watch*> _watches;
};

} // namespace simulator

#endif
