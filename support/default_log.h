// Where the module's lines go while the hosting server has not said where.
#ifndef SUPPORT_DEFAULT_LOG_H
#define SUPPORT_DEFAULT_LOG_H

#include <cstdio>

// Takes what syslog(3) takes.
typedef void (*syslog_call)(int priority, const char* format, ...);

// Writes the line to `standardError` when somebody reads or keeps what is written there: when it is a
// terminal, a file or a pipe. Otherwise (it is closed, a device such as /dev/null, or a socket) calls
// `toSyslog`, with the facility "daemon" and the line behind "vrax: ". Looks anew at each line: servers
// detach at any time.
//
// A socket does not count as read. It may be the journal's, which syslog reaches as well and with the line's
// priority; but it may also be a client's connection, in a server that closed standard error and got its
// number for the next socket that it opened.
//
// The name stands in the line, and openlog is not called: the process's name for syslog is the server's to
// set.
void writeDefaultLog(int level, const char* text, std::FILE* standardError, syslog_call toSyslog);

#endif
