// Lets many threads pass at once and one close the way behind them.
#ifndef TOOLKIT_ADAPTER_GATE_H
#define TOOLKIT_ADAPTER_GATE_H

#include <condition_variable>
#include <mutex>

namespace cimple_cmpi
{

// Threads that pass are counted; close() waits until the others have left and keeps new ones out until
// open(). A thread inside may pass again at any time, so that a call may lead to another one through the CIM
// server.
class Gate
{
  public:
    class Pass
    {
      public:
        enum Manner
        {
            kWait,  // until the gate is open
            kNoWait // give up if it is closed
        };

        Pass(Gate& gate, Manner manner);
        ~Pass();
        Pass(const Pass&) = delete;
        Pass& operator=(const Pass&) = delete;

        // Whether the gate let the thread in.
        explicit operator bool() const { return _entered; }

      private:
        Gate& _gate;
        Pass* _outer; // this thread's pass before this one, of whichever gate
        bool _entered;

        friend class Gate;
    };

    explicit Gate(bool open) : _closed(!open) {}
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;

    // Closes; waits for another thread that has closed it to open it again first. Passes of the calling
    // thread are not waited for.
    void close();
    void open();

    // Whether the calling thread is inside.
    bool entered() const { return passesOfThisThread() != 0; }

  private:
    unsigned passesOfThisThread() const;

    std::mutex _mutex;
    std::condition_variable _changed;
    unsigned _inside = 0;
    bool _closed;
};

} // namespace cimple_cmpi

#endif
