/* CMPI: operating system services of the broker. */
#ifndef CMPIOS_H
#define CMPIOS_H

#include <time.h>

#include "cmpidt.h"
#include "cmpipl.h"

/* POSIX semantics: int results are 0 or an errno value. */
struct _CMPIBrokerExtFT
{
    CMPIVersion ftVersion;
    char* (*resolveFileName)(const char* libName);
    CMPI_THREAD_TYPE (*newThread)(CMPIThreadFunc start, void* parm, int detached);
    int (*joinThread)(CMPI_THREAD_TYPE thread, CMPI_THREAD_RETURN* retval);
    int (*exitThread)(CMPI_THREAD_RETURN return_code);
    int (*cancelThread)(CMPI_THREAD_TYPE thread);
    int (*threadSleep)(CMPIUint32 msec);
    int (*threadOnce)(int* once, CMPIThreadOnceFunc function);
    int (*createThreadKey)(CMPI_THREAD_KEY_TYPE* key, CMPIThreadKeyCleanupFunc cleanup);
    int (*destroyThreadKey)(CMPI_THREAD_KEY_TYPE key);
    void* (*getThreadSpecific)(CMPI_THREAD_KEY_TYPE key);
    int (*setThreadSpecific)(CMPI_THREAD_KEY_TYPE key, void* value);
    CMPI_MUTEX_TYPE (*newMutex)(int opt);
    void (*destroyMutex)(CMPI_MUTEX_TYPE mutex);
    void (*lockMutex)(CMPI_MUTEX_TYPE mutex);
    void (*unlockMutex)(CMPI_MUTEX_TYPE mutex);
    CMPI_COND_TYPE (*newCondition)(int opt);
    void (*destroyCondition)(CMPI_COND_TYPE cond);
    int (*condWait)(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex);
    int (*timedCondWait)(CMPI_COND_TYPE cond, CMPI_MUTEX_TYPE mutex, struct timespec* wait);
    int (*signalCondition)(CMPI_COND_TYPE cond);
};

#endif
