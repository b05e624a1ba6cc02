// A one-time event that threads of a test wait for.
#pragma once

#include <condition_variable>
#include <mutex>

namespace adapter_test
{

class Latch
{
  public:
    // `count` arrivals open it.
    explicit Latch(int count = 1) : _missing(count) {}

    void arrive()
    {
        std::lock_guard<std::mutex> lock(_mutex);
        _missing--;
        _changed.notify_all();
    }
    void wait()
    {
        std::unique_lock<std::mutex> lock(_mutex);
        _changed.wait(lock, [&] { return _missing <= 0; });
    }
    void arriveAndWait()
    {
        arrive();
        wait();
    }

  private:
    std::mutex _mutex;
    std::condition_variable _changed;
    int _missing;
};

} // namespace adapter_test
