// Threads that may call back into the CIM server, because they inherit their creator's thread context.
#ifndef CIMPLE_THREAD_H
#define CIMPLE_THREAD_H

#include <cimple/config.h>
#include <pthread.h>

CIMPLE_NAMESPACE_BEGIN

typedef void* (*Thread_Proc)(void* arg);

// A copyable name of a thread. Destroying it neither joins nor detaches.
//
// If the creator has a Thread_Context, the new thread runs under a child of it from before `proc` is called
// until after it ends, however it ends.
class CIMPLE_CIMPLE_LINKAGE Thread
{
  public:
    Thread();

    static int create_joinable(Thread& thread, Thread_Proc proc, void* arg); // 0, else an errno value
    static int create_detached(Thread& thread, Thread_Proc proc, void* arg); // 0, else an errno value
    static void exit(void* return_value);                                    // ends the calling thread
    static int join(Thread& thread, void*& return_value);                    // 0, else an errno value
    static bool equal(const Thread& t1, const Thread& t2);
    static Thread self();

  private:
    pthread_t _id;
    bool _valid; // false: names no thread
};

CIMPLE_NAMESPACE_END

#endif
