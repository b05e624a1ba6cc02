// The module's log: one call for all providers, and the hook by which the hosting server receives the lines.
#ifndef SUPPORT_CIM_LOG_H
#define SUPPORT_CIM_LOG_H

// Levels of cim_log. A line is written when its level is not below the configured one.
constexpr int kLogTrace = 1;    // entry to every provider operation, constructor and destructor
constexpr int kLogInfo = 2;     // what was done to the switch, failures that are part of normal work
constexpr int kLogCritical = 4; // an operation failed

// True when lines of this level are written. For callers whose arguments are costly to make.
bool cim_log_enabled(int level);

// Writes one line, formatted as by printf. May be called from any thread; never throws.
[[gnu::format(printf, 2, 3)]] void cim_log(int level, const char* format, ...);

// Receives each written line without its closing line feed (inner ones stay). `text` is valid during the call
// only. Called on the thread that logs, with the provider's locks held: it must neither block nor call back
// into the module.
typedef void (*cim_log_sink)(int level, const char* text);

// Sets the lowest level that is written and who receives it; a null sink means standard error, whatever it
// is. It is the host that decides. Until its first call critical lines go to standard error where somebody
// reads it, and to syslog elsewhere (support/default_log.h). May be called at any time from any thread; a
// line being written meanwhile still goes to the sink before. Exported, so that the server that loads the
// module can connect the module's log to its own.
extern "C" [[gnu::visibility("default")]] void cim_log_configure(int level, cim_log_sink sink);

#endif
