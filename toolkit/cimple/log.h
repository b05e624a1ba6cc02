// The toolkit's log file, off unless the run-time environment asks for it.
#ifndef CIMPLE_LOG_H
#define CIMPLE_LOG_H

#include <cimple/String.h>
#include <cstdarg>

CIMPLE_NAMESPACE_BEGIN

enum Log_Level
{
    LL_FATAL,
    LL_ERR,
    LL_WARN,
    LL_INFO,
    LL_DBG
};

// Appends "yyyy/mm/dd hh:mm:ss LEVEL: file(line): text" to $CIMPLE_HOME/.cimple/messages. The level is read
// once from the line LOG_LEVEL=<FATAL|ERR|WARN|INFO|DBG> of $CIMPLE_HOME/.cimplerc; without it nothing is
// ever written.
void log(Log_Level level, const char* file, size_t line, const char* format, ...) CIMPLE_PRINTF_ATTR(4, 5);
void vlog(Log_Level level, const char* file, size_t line, const char* format, va_list args)
    CIMPLE_PRINTF_ATTR(4, 0);

// Reads the settings now instead of at the first message. The name is not used.
void open_log(const char* name);

// Switches logging at run time: 0, or -1 if it is in that state already.
int log_enable(boolean state);

// Whether a message of this level would be written; what the macros ask before they format anything.
bool log_wanted(Log_Level level);

#define CIMPLE_LOG_AT(LEVEL, ARGS)                                                                           \
    do                                                                                                       \
    {                                                                                                        \
        if (cimple::log_wanted(cimple::LEVEL))                                                               \
            cimple::Log_Call(cimple::LEVEL, __FILE__, __LINE__).write ARGS;                                  \
    } while (0)

#define CIMPLE_FATAL(ARGS) CIMPLE_LOG_AT(LL_FATAL, ARGS)
#define CIMPLE_ERR(ARGS) CIMPLE_LOG_AT(LL_ERR, ARGS)
#define CIMPLE_WARN(ARGS) CIMPLE_LOG_AT(LL_WARN, ARGS)
#define CIMPLE_INFO(ARGS) CIMPLE_LOG_AT(LL_INFO, ARGS)
#define CIMPLE_DBG(ARGS) CIMPLE_LOG_AT(LL_DBG, ARGS)

// Carries the place of a log macro to its doubly parenthesised arguments.
class Log_Call
{
  public:
    Log_Call(Log_Level level, const char* file, size_t line) : _level(level), _file(file), _line(line) {}
    void write(const char* format, ...) const CIMPLE_PRINTF_ATTR(2, 3);

  private:
    Log_Level _level;
    const char* _file;
    size_t _line;
};

CIMPLE_NAMESPACE_END

#endif
