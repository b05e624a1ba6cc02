// A thread that looks at things when their time has come.
#ifndef AGENT_HTTP_ALARM_H
#define AGENT_HTTP_ALARM_H

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace cimd
{

// Rings once at the start and from then on whenever it was asked to.
class Alarm
{
  public:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;
    static constexpr Time kNever = Time::max();

    // @param ring  Runs on the alarm's thread, never twice at once, and must not throw. Gets the time and
    //              gives back when to ring next, kNever if there is no need.
    explicit Alarm(std::function<Time(Time now)> ring);
    ~Alarm() { stop(); }
    Alarm(const Alarm&) = delete;
    Alarm& operator=(const Alarm&) = delete;

    // Rings no more. Waits for a ring that is running.
    void stop();

    // Makes sure that it rings at `time` or earlier. Cheap if it would anyway; from any thread.
    void ringBy(Time time);

  private:
    void run();

    const std::function<Time(Time)> _ring;
    std::mutex _mutex;
    std::condition_variable _changed;
    std::atomic<Clock::rep> _next; // when it rings
    bool _stopping = false;
    std::thread _thread; // last: it uses the others
};

} // namespace cimd

#endif
