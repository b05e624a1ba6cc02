// The calling thread's last error message.
#ifndef CIMPLE_ERROR_H
#define CIMPLE_ERROR_H

#include <cimple/String.h>
#include <cstdarg>

#define CIMPLE_ERROR(ARGS)                                                                                   \
    do                                                                                                       \
    {                                                                                                        \
        cimple::Error::set ARGS;                                                                             \
    } while (0)

CIMPLE_NAMESPACE_BEGIN

class CIMPLE_CIMPLE_LINKAGE Error
{
  public:
    static void set(const char* format, ...) CIMPLE_PRINTF_ATTR(1, 2);
    static const char* get(); // "" if none; valid until the thread's next call
    static void clear();
    static void set_prefix(const char* prefix); // stands before messages set from now on by this thread
};

CIMPLE_NAMESPACE_END

#endif
