// A bounded pool of threads that run operations, so that no operation runs on an I/O thread.
#ifndef AGENT_HTTP_WORKERPOOL_H
#define AGENT_HTTP_WORKERPOOL_H

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <list>
#include <mutex>
#include <thread>

namespace cimd
{

// Tasks start in the order of submission. At most `workers` run and `queued` wait. All members may be called
// from any thread.
class WorkerPool
{
  public:
    // A thread of the pool, as its task knows it.
    class Worker
    {
        friend class WorkerPool;
        std::thread thread;
        bool hasPlace = false; // one that counts as taken
        bool isWrittenOff = false;
        bool hasReturned = false;
    };
    using Task = std::function<void(Worker& worker)>;

    WorkerPool(unsigned workers, unsigned queued);
    ~WorkerPool() { join(); }
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    // Has a task run, which must not throw; false when all places are taken, and after join().
    bool submit(Task task);

    // Gives the place of the running task back ahead of its end, so that whoever learns of its outcome finds
    // the place free. For the task itself.
    void giveBack(Worker& worker);

    // Counts no longer on a thread, which gives its place back and is replaced. It ends when its task does.
    // To be called once for a thread and while its task runs.
    // @return how many are written off and have not ended.
    unsigned writeOff(Worker& worker);

    struct Load
    {
        std::size_t waiting = 0; ///< tasks without a thread
        std::size_t running = 0; ///< tasks with one, but for the next
        unsigned hung = 0;       ///< written off and not ended
    };
    Load load();

    // Runs what was submitted, then waits for all threads to end, written off or not. Tasks may go on to use
    // the pool meanwhile.
    void join();

  private:
    explicit WorkerPool(std::size_t capacity) : _capacity(capacity) {}
    void add();
    void run(Worker& self);
    void joinReturned();
    void freePlace(Worker& worker);

    const std::size_t _capacity;
    std::mutex _mutex;
    std::condition_variable _wake;
    std::deque<Task> _tasks;
    std::size_t _running = 0; // that have not given their place back
    unsigned _writtenOff = 0;
    bool _stopping = false;
    std::list<Worker> _workers;
};

} // namespace cimd

#endif
